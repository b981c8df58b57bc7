#pragma once

/// Units of measurement, as labels on values.
namespace lumivard::platform::data::units {

/// A unit of measurement, as a label on values: nothing here converts a value from one unit to another.
///
/// A unit is the number of its group, times 0x1000, plus its position in the group, counted from 1. All units of a
/// group measure one quantity, such as length or pressure. These numbers are what a store keeps, so they never change.
/// Seven of them have two enumerators: `kCubicMeter` and `kStere`, for instance.
///
/// Documents carry units by name: the enumerator without its `k`, apart from the few names that hold a comma or blanks,
/// which `UnitTable.inc` shows.
enum tUnit : int {
    kNoUnit = 0,  ///< not the same as `kUnitless`, which is a unit
#define LVP_UNIT(enumerator, identifier, name) enumerator = identifier,
#include "lumivard/platform/data/units/UnitTable.inc"
#undef LVP_UNIT
};

}  // namespace lumivard::platform::data::units
