#include <cstring>
#include <iterator>
#include <string>

#include "tests/fuzz/Targets.h"
#include "units/UnitsDictionary.h"

namespace lumivard::platform::fuzz {

using data::UnitsDictionary;
using data::units::tUnit;

namespace {

struct Row {
    const char* name;
    tUnit unit;
};

constexpr Row kRows[] = {
#define LVP_UNIT(enumerator, identifier, name) {name, data::units::enumerator},
#include "lumivard/platform/data/units/UnitTable.inc"
#undef LVP_UNIT
};

/// What the table says of a name, found the slow way.
tUnit unitOf(const char* name) {
    for (const Row& row : kRows) {
        if (std::strcmp(row.name, name) == 0) return row.unit;
    }
    return data::units::kNoUnit;
}

/// The name that stands first for a unit; null for none.
const char* nameOf(tUnit unit) {
    for (const Row& row : kRows) {
        if (row.unit == unit) return row.name;
    }
    return nullptr;
}

void checkName(const UnitsDictionary& units, const char* name) {
    const tUnit unit = units.unit(name);
    require(unit == unitOf(name), "a unit's name is understood as the table says");
    if (unit == data::units::kNoUnit) return;
    const char* written = units.unit(unit);
    require(written != nullptr, "a unit that has a name is written");
    require(units.unit(written) == unit, "a unit's written name leads back to it");
}

void checkNumber(const UnitsDictionary& units, tUnit unit) {
    const char* written = units.unit(unit);
    const char* expected = nameOf(unit);
    require((written != nullptr) == (expected != nullptr), "exactly the units of the table have names");
    if (!written) return;
    require(std::strcmp(written, expected) == 0, "a unit is written by the first of its names");
    require(units.unit(written) == unit, "a unit's written name leads back to it");
}

}  // namespace

int fuzzUnits(const std::uint8_t* data, std::size_t size) {
    static const UnitsDictionary units;
    checkName(units, std::string(data, data + size).c_str());
    if (size == 0) return 0;
    checkName(units, kRows[data[0] % std::size(kRows)].name);
    int number = 0;
    std::memcpy(&number, data, size < sizeof(number) ? size : sizeof(number));
    checkNumber(units, static_cast<tUnit>(number));
    return 0;
}

}  // namespace lumivard::platform::fuzz
