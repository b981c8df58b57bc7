#pragma once

namespace lumivard::platform::fuzz {

/// What is taken out of the reading of records where `PlantFaults.cmake` has made a choice of it.
enum class tFault {
    kNone,
    kByte,       ///< a byte is read wherever it lies
    kWord,       ///< and so is a number of 32 bits
    kSection,    ///< a section is as long as its length field claims
    kFixedPart,  ///< a record has the sections of its kind however short it is
    kName,       ///< a name is compared wherever it should lie
    kList,       ///< a record is a list however short it is
    kOverwrite,  ///< values are written wherever they should go
    kValues,     ///< values are copied wherever they should lie
    kCircle,     ///< a way along the owners has no end where they stand in a circle
    kCopies      ///< what stands below itself is copied without end
};

/// The one that is taken out in this process.
inline tFault plantedFault = tFault::kNone;

inline bool planted(tFault fault) {
    return fault == plantedFault;
}

}  // namespace lumivard::platform::fuzz
