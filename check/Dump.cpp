#include "lumivard/platform/data/check/Dump.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

#include "lumivard/platform/core/string/WideString.h"
#include "record/Anatomy.h"
#include "record/Container.h"
#include "record/Guard.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"

namespace lumivard::platform::data {

using check::Dump;
using check::Field;
using core::storage::datastore::IDataStore;

namespace {

/// What a field of the fixed part says.
enum class tSays : unsigned char { kNumber, kOffset, kHexadecimal, kKind, kType, kNothing };

struct tPart {
    const char* name;
    unsigned int position;
    unsigned int size;
    tSays says;
};

constexpr std::array<const char*, 6> kKinds{"root", "primitive", "table", "list", "container", "localized names"};
constexpr std::array<const char*, 3> kTypes{"node", "group", "link"};

constexpr unsigned int kWord = 4;
constexpr std::size_t kEntries = 1000;  // of a list, one by one
using Record::Container;
using Record::Entity;
using Record::Locale;
using Record::Offsets;
using Record::Primitive;
using Record::Root;
using Record::Table;

constexpr tPart kEntity[] = {{"kind", 0, 1, tSays::kKind},
                             {"parent", Entity::kParent, kWord, tSays::kOffset},
                             {"refs", Entity::kRefs, kWord, tSays::kNumber},
                             {"locale", Entity::kLocale, kWord, tSays::kOffset},
                             {"flags", Entity::kFlags, 1, tSays::kHexadecimal}};

constexpr tPart kRoot[] = {{"children", Root::kChildren, kWord, tSays::kOffset},
                           {"name length", Root::kNameLength, kWord, tSays::kNumber},
                           {"zeros", Root::kNameLength + kWord, 2, tSays::kNothing}};

constexpr tPart kContainer[] = {
    {"children", Container::kChildren, kWord, tSays::kOffset}, {"type", Container::kKind, 1, tSays::kType},
    {"name length", Container::kName, kWord, tSays::kNumber},  {"base length", Container::kBase, kWord, tSays::kNumber},
    {"info length", Container::kInfo, kWord, tSays::kNumber},  {"zeros", Container::kInfo + kWord, 1, tSays::kNothing}};

constexpr tPart kTable[] = {
    {"children", Table::kChildren, kWord, tSays::kOffset}, {"zeros", Table::kReserved, kWord, tSays::kNothing},
    {"defaults", Table::kDefaults, kWord, tSays::kOffset}, {"name length", Table::kName, kWord, tSays::kNumber},
    {"base length", Table::kBase, kWord, tSays::kNumber},  {"zeros", Table::kBase + kWord, 2, tSays::kNothing}};

constexpr tPart kPrimitive[] = {{"zeros", Primitive::kReserved, kWord, tSays::kNothing},
                                {"unit", Primitive::kUnits, kWord, tSays::kHexadecimal},
                                {"value kind", Primitive::kValueType, kWord, tSays::kNumber},
                                {"value locale length", Primitive::kValueLocale, kWord, tSays::kNumber},
                                {"name length", Primitive::kName, kWord, tSays::kNumber},
                                {"base length", Primitive::kBase, kWord, tSays::kNumber},
                                {"value length", Primitive::kValue, kWord, tSays::kNumber},
                                {"zeros", Primitive::kValue + kWord, 2, tSays::kNothing}};

constexpr tPart kList[] = {{"kind", 0, 1, tSays::kKind}, {"zeros", 1, 3, tSays::kNothing}};

constexpr tPart kLocale[] = {{"kind", 0, 1, tSays::kKind},
                             {"length", Locale::kLength, kWord, tSays::kNumber},
                             {"unused", Locale::kLength + kWord, 3, tSays::kNothing}};

std::span<const tPart> partsOf(Record::tType kind) {
    switch (kind) {
        case Record::kRoot:
            return kRoot;
        case Record::kPrimitive:
            return kPrimitive;
        case Record::kTable:
            return kTable;
        case Record::kOffsets:
            return kList;
        case Record::kContainer:
            return kContainer;
        case Record::kLocale:
            return kLocale;
    }
    return {};
}

/// The name of a section, by the name of the field that holds its length: "name" for "name length".
const char* sectionOf(Record::tType kind, unsigned int field) {
    if (kind == Record::kLocale) return "payload";
    static constexpr std::array<const char*, 5> kNames{"value locale", "name", "base", "value", "info"};
    for (const tPart& part : partsOf(kind)) {
        if (part.position != field) continue;
        for (const char* name : kNames) {
            if (std::string(part.name) == std::string(name) + " length") return name;
        }
    }
    return "section";
}

std::string hexadecimal(std::uint32_t number) {
    std::string text;
    for (; number != 0 || text.empty(); number >>= 4) text.insert(text.begin(), "0123456789abcdef"[number & 15]);
    return "0x" + text;
}

std::wstring wideOf(std::span<const char> bytes) {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text;
}

std::string quoted(const std::wstring& text) {
    return std::string(1, '"').append(core::string::WideString(text.c_str()).string()).append(1, '"');
}

/// Texts that end with a zero each.
std::string textsOf(std::span<const char> bytes) {
    const std::wstring text = wideOf(bytes);
    std::string joined;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(L'\0', begin), text.size());
        if (!joined.empty()) joined += ' ';
        joined += quoted(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return joined;
}

std::string meaningOf(tSays says, std::span<const char> bytes) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
    switch (says) {
        case tSays::kNumber:
            return std::to_string(number);
        case tSays::kOffset:
            return number == IDataStore::BADOFF ? "none" : std::to_string(number);
        case tSays::kHexadecimal:
            return hexadecimal(number);
        case tSays::kKind:
            return number < kKinds.size() ? kKinds[number] : "unknown";
        case tSays::kType:
            return number < kTypes.size() ? kTypes[number] : "unknown";
        case tSays::kNothing:
            return {};
    }
    return {};
}

/// Fills the parts of a dump, one behind the other.
class Dissection {
public:
    explicit Dissection(Dump& dump) : _dump(dump), _all(dump.bytes.data(), dump.bytes.size()) {}

    void fixed(std::span<const tPart> parts) {
        for (const tPart& part : parts) {
            if (part.position + part.size > _all.size()) return;
            add(part.name, part.size, meaningOf(part.says, _all.subspan(part.position, part.size)));
        }
    }
    void entries() {
        for (std::size_t shown = 0; _all.size() - _end >= kWord && shown < kEntries; ++shown) {
            add("entry", kWord, meaningOf(tSays::kOffset, _all.subspan(_end, kWord)));
        }
        const std::size_t left = (_all.size() - _end) / kWord;
        if (left != 0) add("entries", left * kWord, std::to_string(left) + " more");
    }
    void section(Record::tType kind, const Record::tSection& section) {
        if (section.bytes.empty()) return;
        const bool isValue = kind == Record::kPrimitive && section.field == Primitive::kValue;
        std::string meaning;
        if (kind == Record::kLocale) {
            meaning = textsOf(section.bytes);
        } else if (!isValue) {
            meaning = quoted(wideOf(section.bytes));
        }
        add(sectionOf(kind, section.field), section.bytes.size(), std::move(meaning));
    }
    void rest() {
        if (_end < _all.size()) add("rest", _all.size() - _end, {});
    }

private:
    void add(const char* name, std::size_t size, std::string meaning) {
        _dump.parts.push_back({name, _end, size, std::move(meaning)});
        _end += size;
    }

    Dump& _dump;
    std::span<const char> _all;
    std::size_t _end = 0;
};

}  // namespace

Dump check::dump(IDataStore& store, unsigned int offset) {
    const Record::Guard guard(&store);
    const Record::Base record(&store, offset, Record::kInPlace);
    Dump dump;
    dump.bytes.assign(record.bytes(), record.size());
    dump.there = !dump.bytes.empty();
    const auto kind = record.type();
    dump.kind = dump.there && kind < kKinds.size() ? kKinds[kind] : "unknown";
    Dissection dissection(dump);
    if (dump.there && partsOf(kind).empty()) dissection.fixed(std::span(kEntity).first(1));
    const bool isEntity = kind == Record::kRoot || Record::isChild(kind);
    if (isEntity) dissection.fixed(kEntity);
    if (!isEntity || dump.bytes.size() >= Entity::kHeader) dissection.fixed(partsOf(kind));
    if (Record::Anatomy::fits(record)) {
        if (kind == Record::kOffsets) dissection.entries();
        const Record::Anatomy anatomy(record);
        for (const Record::tSection& section : anatomy.sections()) dissection.section(kind, section);
    }
    dissection.rest();
    return dump;
}

}  // namespace lumivard::platform::data
