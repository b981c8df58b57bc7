#include "units/UnitsDictionary.h"

#include <cstdint>
#include <cstring>
#include <iterator>

namespace lumivard::platform::data {

namespace {

struct tRow {
    const char* name;
    units::tUnit unit;
};

constexpr tRow kpUnits[] = {
#define LVP_UNIT(enumerator, identifier, name) {name, units::enumerator},
#include "lumivard/platform/data/units/UnitTable.inc"
#undef LVP_UNIT
};
static_assert(std::size(kpUnits) < 1024, "the places are more than twice as many");

/// Spreads the bits of a number over the upper ones of 64.
constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;

std::size_t placeOf(std::uint64_t number) {
    return static_cast<std::size_t>(number * kSpread >> 53);  // 11 bits are left: below 2048
}

std::size_t placeOf(const char* name) {
    std::uint64_t hash = 0;
    for (; *name; ++name) hash = hash * 31 + static_cast<unsigned char>(*name);
    return placeOf(hash);
}

std::size_t placeOf(units::tUnit unit) {
    return placeOf(std::uint64_t{static_cast<unsigned int>(unit)});
}

/// The place of the row of which `fits` holds, or the free place where it would stand.
template <class Places, class Fits>
std::size_t find(const Places& places, std::size_t place, Fits fits) {
    while (places[place] != 0 && !fits(kpUnits[places[place] - 1])) place = (place + 1) % places.size();
    return place;
}

template <class Places>
const tRow* rowAt(const Places& places, std::size_t place) {
    return places[place] == 0 ? nullptr : &kpUnits[places[place] - 1];
}

auto named(const char* name) {
    return [name](const tRow& row) { return std::strcmp(row.name, name) == 0; };
}

auto identifiedBy(units::tUnit unit) {
    return [unit](const tRow& row) { return row.unit == unit; };
}

}  // namespace

UnitsDictionary::UnitsDictionary() {
    unsigned short number = 0;
    for (const tRow& row : kpUnits) {
        ++number;
        _byName[find(_byName, placeOf(row.name), named(row.name))] = number;
        auto& place = _byUnit[find(_byUnit, placeOf(row.unit), identifiedBy(row.unit))];
        if (place == 0) place = number;  // of an alias the first name of the identifier stays
    }
}

units::tUnit UnitsDictionary::unit(const char* name) const {
    if (!name) return units::kNoUnit;
    const tRow* row = rowAt(_byName, find(_byName, placeOf(name), named(name)));
    return row ? row->unit : units::kNoUnit;
}

const char* UnitsDictionary::unit(units::tUnit unit) const {
    const tRow* row = rowAt(_byUnit, find(_byUnit, placeOf(unit), identifiedBy(unit)));
    return row ? row->name : nullptr;
}

}  // namespace lumivard::platform::data
