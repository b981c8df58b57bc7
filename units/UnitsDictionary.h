#pragma once

#include <array>
#include <cstddef>

#include "lumivard/platform/data/units/tUnit.h"

namespace lumivard::platform::data {

/// Translates between the names of units, which documents carry, and their identifiers, which records carry. It only
/// labels: it holds no factors and converts no values.
///
/// Seven identifiers have two names. Both are read; the one that stands first in the table is written.
///
/// Threads: it never changes once it is built, so any number may read it. A lookup costs a hash and a comparison or
/// two, and allocates nothing.
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
    /// A power of 2, more than twice as many as there are units.
    static constexpr std::size_t kPlaces = 2048;

    /// Numbers of rows of the table, counted from 1, each in the first free place from that of its hash on; 0 for a
    /// free place.
    using tPlaces = std::array<unsigned short, kPlaces>;

    tPlaces _byName{};
    tPlaces _byUnit{};
};

}  // namespace lumivard::platform::data
