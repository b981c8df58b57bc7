#pragma once

#include <string>
#include <vector>

#include "lumivard/platform/data/metadata/IPrimitive.h"
#include "lumivard/platform/data/units/tUnit.h"
#include "tools/base/Values.h"

namespace lvp::tool {

/// A value as it was typed: bytes of a kind, and the unit, if one was named.
struct tTyped {
    std::vector<char> bytes;
    lumivard::platform::data::units::tUnit unit = lumivard::platform::data::units::kNoUnit;
};

/// Reads the words of a value, of which the last one may be a unit where the kind is one of numbers; `unit`, if it is
/// not empty, names it too. What cannot be read is a failure of `kWrongUsage`.
tTyped typedValue(tValue kind, std::vector<std::string> words, const std::string& unit);

/// Gives a primitive that value and no more, in place of the one or of the URI that it has. False when it is too long.
bool put(lumivard::platform::data::metadata::IPrimitive& primitive, const tTyped& value);

}  // namespace lvp::tool
