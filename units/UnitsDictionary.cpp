#include "units/UnitsDictionary.h"

namespace lumivard::platform::data {

namespace {

struct tRow {
    const char* name;
    units::tUnit unit;
};

constexpr tRow _kpUnitLUT[] = {
#define LVP_UNIT(enumerator, identifier, name) {name, units::enumerator},
#include "lumivard/platform/data/units/UnitTable.inc"
#undef LVP_UNIT
    {nullptr, units::kNoUnit},
};

}  // namespace

UnitsDictionary::UnitsDictionary() {
    for (const tRow* row = _kpUnitLUT; row->name; ++row) {
        _byName.emplace(row->name, row->unit);
        _byUnit.emplace(row->unit, row->name);  // does nothing for an alias: the first name of an identifier stays
    }
}

units::tUnit UnitsDictionary::unit(const char* name) const {
    if (!name) return units::kNoUnit;
    const auto found = _byName.find(name);
    return found == _byName.end() ? units::kNoUnit : found->second;
}

const char* UnitsDictionary::unit(units::tUnit unit) const {
    const auto found = _byUnit.find(unit);
    return found == _byUnit.end() ? nullptr : found->second;
}

}  // namespace lumivard::platform::data
