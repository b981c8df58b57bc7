#include "tests/check/FieldFaults.h"
#include "tests/support/Offsets.h"

#include <algorithm>
#include <cstring>

#include "tests/support/StoredRecords.h"
#include "units/UnitsDictionary.h"

namespace lumivard::platform::test_support {

namespace {

using test_support::BADOFF;
constexpr unsigned int kValueKinds = 24;

unsigned int number(const std::string& bytes, std::size_t position, std::size_t width) {
    unsigned int value = 0;
    std::memcpy(&value, bytes.data() + position, width);
    return value;
}

bool isUnit(unsigned int value) {
    static const data::UnitsDictionary dictionary;
    return dictionary.unit(static_cast<data::units::tUnit>(value)) != nullptr;
}

bool isCharacter(unsigned int value) {
    return value < 0xD800 || (value > 0xDFFF && value <= 0x10FFFF);
}

/// The size of an element of a kind of value.
unsigned int elementOf(unsigned int kind) {
    if (kind >= 2 && kind <= 6) return 4;
    if (kind == 10 || kind == 11) return 2;
    if (kind == 12 || kind == 13 || kind == 16) return 4;
    if (kind == 14 || kind == 15 || (kind >= 17 && kind <= 23)) return 8;
    return 1;
}

struct tForm {
    std::size_t fixed;
    std::vector<std::size_t> lengths;
    std::vector<std::pair<std::size_t, std::size_t>> zeros;
};

const tForm& formOf(char kind) {
    static const tForm root{24, {18}, {{22, 2}}};
    static const tForm primitive{44, {26, 30, 34, 38}, {{14, 4}, {42, 2}}};
    static const tForm table{36, {26, 30}, {{18, 4}, {34, 2}}};
    static const tForm list{4, {}, {{1, 3}}};
    static const tForm container{32, {19, 23, 27}, {{31, 1}}};
    static const tForm locale{8, {1}, {}};
    const tForm* const all[] = {&root, &primitive, &table, &list, &container, &locale};
    return *all[static_cast<unsigned char>(kind)];
}

}  // namespace

FieldFaults::FieldFaults(IDataStore& store, std::mt19937_64& random) : _store(store), _random(random) {
    for (unsigned int offset = 0; offset < store.extent(); ++offset) {
        const std::string bytes = stored::bytes(&store, offset);
        if (bytes.empty()) continue;
        _records.push_back(offset);
        if (bytes[0] == 2) _defaults.insert(number(bytes, 22, 4));
    }
}

tFault FieldFaults::draw() {
    for (;;) {
        const unsigned int offset = _records[below(_records.size())];
        const std::string bytes = stored::bytes(&_store, offset);
        if (below(12) == 0) return wholeRecord(offset, bytes);
        const std::vector<tField> fields = fieldsOf(offset, bytes);
        const tField& field = fields[below(fields.size())];
        const unsigned int before = number(bytes, field.position, field.width);
        const unsigned int mask = field.width == 4 ? BADOFF : (1u << (8 * field.width)) - 1;
        const unsigned int after = value(offset, before) & mask;
        if (after == before || isLegal(bytes, field, before, after)) continue;
        tFault fault{offset, bytes, bytes, {}};
        std::memcpy(fault.after.data() + field.position, &after, field.width);
        fault.words = "record " + std::to_string(offset) + " of kind " + std::to_string(bytes[0]) + ": " + field.name +
                      " at " + std::to_string(field.position) + " from " + std::to_string(before) + " to " +
                      std::to_string(after);
        return fault;
    }
}

tFault FieldFaults::wholeRecord(unsigned int offset, const std::string& bytes) {
    tFault fault{offset, bytes, bytes, {}};
    std::size_t size = below(3) == 0 ? bytes.size() + 1 + below(9) : below(bytes.size());
    // A default less is right by chance.
    if (_defaults.contains(offset) && size < bytes.size() && size % 8 == 4) ++size;
    fault.after.resize(size, static_cast<char>(below(2)));
    fault.words = "record " + std::to_string(offset) + " of kind " + std::to_string(bytes[0]) + " of " +
                  std::to_string(bytes.size()) + " bytes has " + std::to_string(size);
    return fault;
}

std::vector<FieldFaults::tField> FieldFaults::fieldsOf(unsigned int offset, const std::string& bytes) const {
    std::vector<tField> fields;
    const auto add = [&](const char* name, std::size_t position, std::size_t width, tRole role = tRole::kOne) {
        fields.push_back({name, position, width, role, 0});
    };
    const char kind = bytes[0];
    const bool isEntity = kind != 3 && kind != 5;
    add("kind", 0, 1);
    if (isEntity) {
        add("parent", 1, 4);
        add("refs", 5, 4);
        add("locale", 9, 4);
        add("flags", 13, 1, tRole::kFlags);
        if (kind != 1) add("children", 14, 4);
    }
    if (kind == 4) add("type", 18, 1, tRole::kContainerType);
    if (kind == 2) add("defaults", 22, 4);
    if (kind == 1) {
        add("unit", 18, 4, tRole::kUnit);
        add("value kind", 22, 4, tRole::kValueKind);
    }
    const tForm& form = formOf(kind);
    for (const auto& [position, width] : form.zeros) add("zeros", position, width);
    std::size_t begin = form.fixed;
    for (const std::size_t position : form.lengths) {
        add("length", position, 4);
        const std::size_t end = begin + number(bytes, position, 4);
        const bool isText = kind != 5 && (position != 38 || (bytes[13] & 8));
        if (isText) addText(fields, bytes, begin, end);
        for (std::size_t at = begin; kind == 5 && at < end; at += 4)
            fields.push_back({"texts", at, 4, tRole::kText, 0});
        begin = end;
    }
    for (std::size_t at = 4; kind == 3 && at < bytes.size(); at += 4) {
        const bool isDefault = _defaults.contains(offset);
        const tRole role = at % 8 == 4 ? tRole::kDefaultUnit : tRole::kValueKind;
        fields.push_back({"entry", at, 4, isDefault ? role : tRole::kOne, 0});
    }
    return fields;
}

void FieldFaults::addText(std::vector<tField>& fields, const std::string& bytes, std::size_t begin,
                          std::size_t end) const {
    // Texts are long and all alike: a few of their characters.
    for (std::size_t at = begin; at < end; at += 4) {
        const bool isLast = number(bytes, at, 4) == 0;
        if (at == begin || isLast) fields.push_back({"text", at, 4, tRole::kText, end});
    }
}

unsigned int FieldFaults::value(unsigned int offset, unsigned int before) {
    const unsigned int other = _records[below(_records.size())];
    const unsigned int few = static_cast<unsigned int>(below(8));
    const unsigned int choices[] = {0,
                                    few,
                                    BADOFF,
                                    BADOFF - 1,
                                    before + 1 + few,
                                    before - 1 - few,
                                    offset,
                                    before << 1,
                                    before + 4,
                                    1u << below(32),
                                    other,
                                    other,
                                    other,
                                    0x110000,
                                    0xD800,
                                    static_cast<unsigned int>(_random())};
    return choices[below(std::size(choices))];
}

bool FieldFaults::isLegal(const std::string& bytes, const tField& field, unsigned int before,
                          unsigned int after) const {
    const char kind = bytes[0];
    switch (field.role) {
        case tRole::kOne:
            return false;
        case tRole::kFlags:
            // A value may be a URI by chance.
            return (after & ~0x0Fu) == 0 && (kind == 1 || (after & 8) == 0);
        case tRole::kContainerType:
            return after <= 2;
        case tRole::kUnit:
            return after == 0 || isUnit(after);
        case tRole::kDefaultUnit:
            return isUnit(after);
        case tRole::kValueKind: {
            if (after == 0 || after > kValueKinds) return false;
            if (kind == 3 || (bytes[13] & 8)) return true;
            return number(bytes, 38, 4) % elementOf(after) == 0;
        }
        case tRole::kText:
            break;
    }
    if (!isCharacter(after)) return false;
    if (kind == 5) return before != 0 && after != 0;  // otherwise one text more, or one less
    if (before != 0 && after != 0) return true;
    const auto behind = bytes.begin() + static_cast<std::ptrdiff_t>(field.position) + 4;
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(field.end);
    // An end that comes sooner, or later, where there are zeros enough.
    return behind == end ? after == 0 : std::all_of(behind, end, [](char byte) { return byte == 0; });
}

void FieldFaults::plant(IDataStore& store, const tFault& fault) {
    store.update(fault.offset, fault.after.data(), static_cast<unsigned int>(fault.after.size()), true);
}

void FieldFaults::undo(IDataStore& store, const tFault& fault) {
    store.update(fault.offset, fault.before.data(), static_cast<unsigned int>(fault.before.size()), true);
}

}  // namespace lumivard::platform::test_support
