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
constexpr unsigned int kLastKind = 5;  // of records

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
        const std::vector<tPlace> places = fieldsOf(offset, bytes);
        const tPlace& place = places[below(places.size())];
        const unsigned int before = number(bytes, place.position, place.width);
        const unsigned int mask = place.width == 4 ? BADOFF : (1u << (8 * place.width)) - 1;
        const unsigned int after = value(offset, before) & mask;
        if (after == before || isLegal(bytes, place, before, after)) continue;
        tFault fault{offset, bytes, bytes, {}, place.field, before, after};
        std::memcpy(fault.after.data() + place.position, &after, place.width);
        fault.words = "record " + std::to_string(offset) + " of kind " + std::to_string(bytes[0]) + ": " + place.name +
                      " at " + std::to_string(place.position) + " from " + std::to_string(before) + " to " +
                      std::to_string(after);
        return fault;
    }
}

tFault FieldFaults::wholeRecord(unsigned int offset, const std::string& bytes) {
    tFault fault{offset, bytes, bytes, {}, tField::kWholeRecord};
    std::size_t size = below(3) == 0 ? bytes.size() + 1 + below(9) : below(bytes.size());
    // A default less is right by chance.
    if (_defaults.contains(offset) && size < bytes.size() && size % 8 == 4) ++size;
    fault.after.resize(size, static_cast<char>(below(2)));
    fault.words = "record " + std::to_string(offset) + " of kind " + std::to_string(bytes[0]) + " of " +
                  std::to_string(bytes.size()) + " bytes has " + std::to_string(size);
    return fault;
}

tSign FieldFaults::signOf(const tFault& fault) {
    switch (fault.field) {
        case tField::kKind:  // one of another kind shows as many things, where it is or where it is named
            if (fault.is > kLastKind) return {{"record.kind"}, {fault.offset}};
            return {{}, neighbours(fault)};
        case tField::kWholeRecord:
            return signOfWholeRecord(fault);
        case tField::kLocale:
        case tField::kChildren:
        case tField::kDefaults:
        case tField::kEntry:
            return signOfReference(fault);
        case tField::kParent:
            return {{"graph.parent-differs"}, {fault.offset}};
        case tField::kRefs:
            return {{"live.stale-count"}, {fault.offset}};
        case tField::kFlags:  // one of them makes a URI of a value, or a value of a URI
            return {{"record.flags", "record.text-character", "record.text-end", "record.text-length",
                     "record.text-rest", "record.value-size"},
                    {fault.offset}};
        case tField::kContainerType:
            return {{"record.container-type"}, {fault.offset}};
        case tField::kUnit:
            return {{"record.unit"}, {fault.offset}};
        case tField::kValueKind:
            return {{"record.value-kind", "record.value-size"}, {fault.offset}};
        case tField::kZeros:
            return {{"record.reserved"}, {fault.offset}};
        case tField::kLength:
            return {{"record.section-past-end", "record.rest"}, {fault.offset}};
        case tField::kText:
            return {{"record.text-character", "record.text-end", "record.text-rest", "record.locale-pairs"},
                    {fault.offset}};
        case tField::kDefaultUnit:
        case tField::kDefaultKind:
            return {{"record.default-pairs"}, {fault.offset}};
    }
    return {};
}

/// A reference to nothing leaves what it named to nobody; one to what another has makes a second owner; any other leads
/// nowhere.
tSign FieldFaults::signOfReference(const tFault& fault) {
    const std::string target = stored::bytes(&_store, fault.is);
    const char kind = target.empty() ? '\x7F' : target[0];
    if (fault.field == tField::kEntry) {
        if (kind != 1 && kind != 2 && kind != 4) return {{"reference.entry"}, {fault.offset}};
        // Where the only way to its first place led through the entry that is gone, this one is its only place.
        tSign sign{{"graph.cycle", "graph.listed-twice", "graph.parent-differs"}, {fault.offset, fault.is}};
        addOwners(sign, fault.is);
        return sign;
    }
    if (fault.is == BADOFF) return {{"live.unattached"}, {fault.was}};
    const bool isNames = fault.field == tField::kLocale;
    if (kind == (isNames ? 5 : 3)) {
        tSign sign{{"reference.shared"}, {fault.offset}};
        addOwners(sign, fault.is);
        return sign;
    }
    if (isNames) return {{"reference.locale"}, {fault.offset}};
    return {{fault.field == tField::kDefaults ? "reference.defaults" : "reference.children"}, {fault.offset}};
}

tSign FieldFaults::signOfWholeRecord(const tFault& fault) {
    if (fault.after.empty()) return {{}, neighbours(fault)};
    if (fault.before[0] != 3) return {{"record.short", "record.section-past-end", "record.rest"}, {fault.offset}};
    return {{"record.short", "record.list-size", "record.default-pairs", "reference.entry", "live.unattached"},
            neighbours(fault)};
}

/// The records that a record names, but for its parent.
std::vector<unsigned int> FieldFaults::namedIn(unsigned int offset, const std::string& bytes) const {
    std::vector<unsigned int> named;
    for (const tPlace& place : fieldsOf(offset, bytes)) {
        const bool isReference = place.field == tField::kLocale || place.field == tField::kChildren ||
                                 place.field == tField::kDefaults || place.field == tField::kEntry;
        if (isReference) named.push_back(number(bytes, place.position, place.width));
    }
    return named;
}

/// The record, what it names, and what names it.
std::set<unsigned int> FieldFaults::neighbours(const tFault& fault) {
    tSign sign{{}, {fault.offset}};
    for (const unsigned int named : namedIn(fault.offset, fault.before)) sign.places.insert(named);
    addOwners(sign, fault.offset);
    return sign.places;
}

void FieldFaults::addOwners(tSign& sign, unsigned int record) {
    if (_owners.empty()) {
        for (const unsigned int owner : _records) {
            for (const unsigned int named : namedIn(owner, stored::bytes(&_store, owner)))
                _owners.emplace(named, owner);
        }
    }
    const auto [begin, end] = _owners.equal_range(record);
    for (auto owner = begin; owner != end; ++owner) sign.places.insert(owner->second);
}

std::vector<FieldFaults::tPlace> FieldFaults::fieldsOf(unsigned int offset, const std::string& bytes) const {
    std::vector<tPlace> fields;
    const auto add = [&](const char* name, std::size_t position, std::size_t width, tField field) {
        fields.push_back({name, position, width, field, 0});
    };
    const char kind = bytes[0];
    const bool isEntity = kind != 3 && kind != 5;
    add("kind", 0, 1, tField::kKind);
    if (isEntity) {
        add("parent", 1, 4, tField::kParent);
        add("refs", 5, 4, tField::kRefs);
        add("locale", 9, 4, tField::kLocale);
        add("flags", 13, 1, tField::kFlags);
        if (kind != 1) add("children", 14, 4, tField::kChildren);
    }
    if (kind == 4) add("type", 18, 1, tField::kContainerType);
    if (kind == 2) add("defaults", 22, 4, tField::kDefaults);
    if (kind == 1) {
        add("unit", 18, 4, tField::kUnit);
        add("value kind", 22, 4, tField::kValueKind);
    }
    const tForm& form = formOf(kind);
    for (const auto& [position, width] : form.zeros) add("zeros", position, width, tField::kZeros);
    std::size_t begin = form.fixed;
    for (const std::size_t position : form.lengths) {
        add("length", position, 4, tField::kLength);
        const std::size_t end = begin + number(bytes, position, 4);
        const bool isText = kind != 5 && (position != 38 || (bytes[13] & 8));
        if (isText) addText(fields, bytes, begin, end);
        for (std::size_t at = begin; kind == 5 && at < end; at += 4)
            fields.push_back({"texts", at, 4, tField::kText, 0});
        begin = end;
    }
    for (std::size_t at = 4; kind == 3 && at < bytes.size(); at += 4) {
        const bool isDefault = _defaults.contains(offset);
        const tField field = at % 8 == 4 ? tField::kDefaultUnit : tField::kDefaultKind;
        add("entry", at, 4, isDefault ? field : tField::kEntry);
    }
    return fields;
}

void FieldFaults::addText(std::vector<tPlace>& fields, const std::string& bytes, std::size_t begin,
                          std::size_t end) const {
    // Texts are long and all alike: a few of their characters.
    for (std::size_t at = begin; at < end; at += 4) {
        const bool isLast = number(bytes, at, 4) == 0;
        if (at == begin || isLast) fields.push_back({"text", at, 4, tField::kText, end});
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

bool FieldFaults::isLegal(const std::string& bytes, const tPlace& place, unsigned int before,
                          unsigned int after) const {
    const char kind = bytes[0];
    switch (place.field) {
        case tField::kFlags:
            // A value may be a URI by chance.
            return (after & ~0x0Fu) == 0 && (kind == 1 || (after & 8) == 0);
        case tField::kContainerType:
            return after <= 2;
        case tField::kUnit:
            return after == 0 || isUnit(after);
        case tField::kDefaultUnit:
            return isUnit(after);
        case tField::kDefaultKind:
            return after != 0 && after <= kValueKinds;
        case tField::kValueKind: {
            if (after == 0 || after > kValueKinds) return false;
            return (bytes[13] & 8) || number(bytes, 38, 4) % elementOf(after) == 0;
        }
        case tField::kText:
            break;
        default:  // there is one right value
            return false;
    }
    if (!isCharacter(after)) return false;
    if (kind == 5) return before != 0 && after != 0;  // otherwise one text more, or one less
    if (before != 0 && after != 0) return true;
    const auto behind = bytes.begin() + static_cast<std::ptrdiff_t>(place.position) + 4;
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(place.end);
    // An end that comes sooner, or later, where there are zeros enough.
    return behind == end ? after == 0 : std::all_of(behind, end, [](char byte) { return byte == 0; });
}

void FieldFaults::plant(IDataStore& store, const tFault& fault) {
    store.update(fault.offset, fault.after.data(), static_cast<unsigned int>(fault.after.size()), true);
}

void FieldFaults::undo(IDataStore& store, const tFault& fault) {
    store.update(fault.offset, fault.before.data(), static_cast<unsigned int>(fault.before.size()), true);
}

std::string plantFields(IDataStore& store, std::mt19937_64& random, unsigned int most) {
    FieldFaults faults(store, random);
    std::vector<tFault> drawn;
    for (std::uint64_t i = random() % most + 1; i > 0; --i) drawn.push_back(faults.draw());
    std::string words;
    for (const tFault& fault : drawn) {
        FieldFaults::plant(store, fault);
        words += fault.words + "\n";
    }
    return words;
}

}  // namespace lumivard::platform::test_support
