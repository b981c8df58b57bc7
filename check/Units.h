#pragma once

#include "units/UnitsDictionary.h"

namespace lumivard::platform::data::Check {

/// Whether a number is a unit, or none.
inline bool isUnit(unsigned int number) {
    static const UnitsDictionary dictionary;
    return number == 0 || dictionary.unit(static_cast<units::tUnit>(number)) != nullptr;
}

}  // namespace lumivard::platform::data::Check
