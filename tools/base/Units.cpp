#include "tools/base/Units.h"

#include <set>
#include <unordered_map>

#include "tools/base/ExitStatus.h"
#include "tools/base/Nearest.h"

namespace lvp::tool {

namespace units = lumivard::platform::data::units;

namespace {

std::string_view trimmed(std::string_view name) {
    return name.substr(0, name.find_last_not_of(' ') + 1);
}

struct tEntry {
    tUnit unit;
    const char* name;
};

constexpr tEntry kEntries[] = {
#define LVP_UNIT(enumerator, identifier, name) {units::enumerator, name},
#include "lumivard/platform/data/units/UnitTable.inc"
#undef LVP_UNIT
};

std::vector<tUnitRow> rows() {
    std::vector<tUnitRow> rows;
    std::set<tUnit> known;
    for (const tEntry& entry : kEntries) {
        rows.push_back({entry.unit, trimmed(entry.name), known.insert(entry.unit).second});
    }
    return rows;
}

}  // namespace

const std::vector<tUnitRow>& allUnits() {
    static const std::vector<tUnitRow> all = rows();
    return all;
}

std::string unitName(tUnit unit) {
    static const auto names = [] {
        std::unordered_map<int, std::string_view> made;
        for (const tUnitRow& row : allUnits()) made.emplace(row.unit, row.name);
        return made;
    }();
    if (unit == units::kNoUnit) return {};
    const auto found = names.find(unit);
    if (found != names.end()) return std::string(found->second);
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4)
        text += "0123456789abcdef"[(static_cast<unsigned int>(unit) >> shift) & 15];
    return text;
}

std::string_view groupName(tUnitGroup group) {
    for (const tUnitRow& row : allUnits()) {
        if (units::group(row.unit) == group) return row.name;
    }
    return {};
}

tUnit unitNamed(const std::string& name) {
    const std::string wanted = lower(trimmed(name));
    for (const tUnitRow& row : allUnits()) {
        if (row.name == trimmed(name)) return row.unit;
    }
    for (const tUnitRow& row : allUnits()) {
        if (lower(row.name) == wanted) return row.unit;
    }
    const std::string near = listed(nearestUnits(name, 3));
    throw Failure(kWrongUsage, "there is no unit \"" + name + "\"" +
                                   (near.empty() ? ": lvp-data unit shows them all" : "; near to it: " + near));
}

std::vector<std::string> nearestUnits(std::string_view text, std::size_t most) {
    std::vector<std::string> names;
    for (const tUnitRow& row : allUnits()) names.emplace_back(row.name);
    return nearest(text, names, most);
}

}  // namespace lvp::tool
