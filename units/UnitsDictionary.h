#pragma once

#include <map>

#include "lumivard/platform/core/hash/Compare.h"
#include "lumivard/platform/data/units/tUnit.h"

namespace lumivard::platform::data {

/// Translates between the names of units, which documents carry, and their identifiers, which records carry. It only
/// labels: it holds no factors and converts no values.
///
/// Seven identifiers have two names. Both are read; the one that stands first in the table is written.
///
/// Threads: it never changes once it is built, so any number may read it. A lookup costs one search of a tree, and
/// allocates nothing.
class UnitsDictionary {
public:
    UnitsDictionary();

    /// The identifier of exactly this name, byte by byte, blanks and commas included; `kNoUnit` for any other text and
    /// for null.
    units::tUnit unit(const char* name) const;

    /// The name under which an identifier is written, in ASCII, alive as long as the process; null for `kNoUnit` and
    /// for whatever is no identifier.
    const char* unit(units::tUnit unit) const;

private:
    std::map<const char*, units::tUnit, core::tCharCompareLess> _byName;
    std::map<units::tUnit, const char*> _byUnit;
};

}  // namespace lumivard::platform::data
