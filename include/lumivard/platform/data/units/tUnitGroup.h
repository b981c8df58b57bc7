#pragma once

#include "lumivard/platform/data/units/tUnit.h"

namespace lumivard::platform::data::units {

/// A group of units that measure one quantity, written as the unit with its low 12 bits cleared: 0x2000 for the
/// lengths. The groups have no names; `group(kMeter)` is how a client writes one.
enum tUnitGroup : int {
    kNoGroup = 0  ///< that of `kNoUnit`
};

/// The group of a unit; `kNoGroup` for `kNoUnit`.
constexpr tUnitGroup group(tUnit unit) {
    return static_cast<tUnitGroup>(static_cast<unsigned int>(unit) & 0xFFFFF000u);
}

}  // namespace lumivard::platform::data::units
