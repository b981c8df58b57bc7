#include "design/Table.h"

#include <utility>

#include "record/Offsets.h"
#include "record/Table.h"

namespace lumivard::platform::data::Design {

namespace {

// Where the two halves of a group's pair stand in the list of defaults.
constexpr unsigned int kPair = 2;
constexpr unsigned int kUnit = 0;
constexpr unsigned int kKind = 1;

}  // namespace

Table::Table(IDataStore* store, unsigned int offset, bool lazy) {
    Record::Table record(store, offset, Record::kInPlace);
    open(store, record);
    _base = record.text(Record::Table::kBase);
    _children = record.children();
    loadDefaults(record);
    if (!lazy) populate();
    record.ref();
}

Table::Table(IDataStore* store, const wchar_t* name) {
    Record::Table record(store, name);
    open(store, record);
    record.ref();
}

Table::~Table() {
    release();
}

void Table::loadDefaults(const Record::Table& record) {
    unsigned int list = record.defaults();
    decltype(_groups) groups;
    if (Record::peek(_store, list) == Record::kOffsets) {
        const std::vector<unsigned int> pairs = Record::Offsets(_store, list, Record::kInPlace).get();
        for (unsigned int i = 0; i < pairs.size(); i += kPair) {
            groups.emplace(units::group(static_cast<units::tUnit>(pairs[i])), i / kPair);
        }
    } else {
        list = BADOFF;
    }
    _defaults = list;
    _groups = std::move(groups);
}

bool Table::defaults(units::tUnit unit, metadata::tValue type) {
    if (unit == 0 || type == 0) return false;
    if (Record::peek(_store, _defaults) != Record::kOffsets || _groups.count(units::group(unit)) == 0) {
        // Another object may have made the list since this one was opened, or another one in its place, or added to it.
        Record::Table record(_store, _offset, Record::kInPlace);
        loadDefaults(record);
        if (_defaults == BADOFF) {
            const unsigned int list = Record::Offsets(_store).offset();
            record.writeDefaults(list);
            _defaults = list;
        }
    }
    const auto known = _groups.find(units::group(unit));
    const auto pair = known == _groups.end() ? static_cast<unsigned int>(_groups.size()) : known->second;
    Record::Offsets list(_store, _defaults, Record::kInPlace);
    // Both halves at once: half a pair would be left where the store fails between them.
    const unsigned int halves[] = {static_cast<unsigned int>(unit), static_cast<unsigned int>(type)};
    if (!list.set(kPair * pair, halves)) return false;
    _groups.emplace(units::group(unit), pair);
    return true;
}

std::vector<units::tUnitGroup> Table::groups() const {
    std::vector<units::tUnitGroup> groups;
    groups.reserve(_groups.size());
    for (const auto& [group, index] : _groups) groups.push_back(group);
    return groups;
}

metadata::tValue Table::valuetype(units::tUnitGroup group) const {
    return static_cast<metadata::tValue>(entry(group, kKind));
}

units::tUnit Table::units(units::tUnitGroup group) const {
    return static_cast<units::tUnit>(entry(group, kUnit));
}

unsigned int Table::entry(units::tUnitGroup group, unsigned int which) const {
    const auto place = _groups.find(group);
    if (group == 0 || place == _groups.end()) return 0;
    const unsigned int list = Record::Table(_store, _offset, Record::kInPlace).defaults();
    if (list == BADOFF) return 0;
    const unsigned int value = Record::Offsets(_store, list, Record::kInPlace).get(kPair * place->second + which);
    return value == BADOFF ? 0 : value;
}

}  // namespace lumivard::platform::data::Design
