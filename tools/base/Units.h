#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lumivard/platform/data/units/tUnit.h"
#include "lumivard/platform/data/units/tUnitGroup.h"

// The dictionary of units, as people ask it.
namespace lvp::tool {

using lumivard::platform::data::units::tUnit;
using lumivard::platform::data::units::tUnitGroup;

/// A row of the dictionary. Several rows may have one number, of which the first names it in documents.
struct tUnitRow {
    tUnit unit;
    std::string_view name;  ///< as documents have it, without the blanks at the end that some have
    bool first;             ///< of its number
};

const std::vector<tUnitRow>& allUnits();

/// The name of a unit; empty for none, and a number in hexadecimal digits for one that the dictionary does not have.
std::string unitName(tUnit unit);

/// The name of a group: that of its first unit.
std::string_view groupName(tUnitGroup group);

/// The unit of a name, large and small letters being the same. An unknown one is a failure of `kWrongUsage` that tells
/// the nearest names.
tUnit unitNamed(const std::string& name);

/// The names that are nearest to a text, at most `most` of them.
std::vector<std::string> nearestUnits(std::string_view text, std::size_t most);

}  // namespace lvp::tool
