#pragma once

#include <string>
#include <vector>

namespace lumivard::platform::stores {

/// Something that is wrong with a store file, below its records.
struct FileFault {
    /// What kind of fault, by a name that stays: "container.length" (the file is shorter than what it holds),
    /// "container.meta" (its description of itself), "container.page" (a page, or a reference to one),
    /// "container.order" (keys out of order or out of place), "container.shared" (a page used twice),
    /// "container.free" (the list of free pages), "container.count" (a number of entries), "container.header" (the
    /// store's header), "container.checksum" (a stored record is not as it was written).
    std::string code;

    std::string text;                 ///< what was found, as a part of a sentence
    unsigned long long position = 0;  ///< where in the file, in bytes
};

/// What an examination of a store file has found.
struct FileReport {
    unsigned int format = 0;            ///< the number of the file's format; 0 where that could not be read
    unsigned long long length = 0;      ///< of the file, in bytes
    unsigned long long pageSize = 0;    ///< in bytes
    unsigned long long pages = 0;       ///< in use or free
    unsigned long long freePages = 0;   ///< that `compact` would give back
    unsigned long long records = 0;     ///< stored, without the header
    unsigned long long faultCount = 0;  ///< all faults that were found
    std::vector<FileFault> faults;      ///< the first 1,000 of them
};

}  // namespace lumivard::platform::stores
