#include "record/Entity.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "record/Container.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"

namespace lumivard::platform::data::Record {

std::string_view textOf(std::span<const char> section) {
    const std::size_t length = section.size() / sizeof(wchar_t);
    std::size_t end = 0;
    for (wchar_t character; end < length; ++end) {
        std::memcpy(&character, section.data() + end * sizeof(wchar_t), sizeof(wchar_t));
        if (character == L'\0') break;
    }
    return {section.data(), end * sizeof(wchar_t)};
}

bool isChildCalled(std::span<const char> record, std::string_view name) {
    if (record.size() < Entity::kHeader) return false;
    const auto word = [record](std::size_t position) {
        unsigned int value;
        std::memcpy(&value, record.data() + position, sizeof(value));
        return value;
    };
    const auto kind = static_cast<tType>(record.front());
    if (!isChild(kind)) return false;
    std::size_t begin = kind == kPrimitive ? Primitive::kFixed : kind == kTable ? Table::kFixed : Container::kFixed;
    const std::size_t field = kind == kPrimitive ? Primitive::kName : kind == kTable ? Table::kName : Container::kName;
    if (record.size() < begin) return name.empty();
    if (kind == kPrimitive) begin += std::min<std::size_t>(word(Primitive::kValueLocale), record.size() - begin);
    const std::size_t length = std::min<std::size_t>(word(field), record.size() - begin);
    if (length < name.size()) return false;
    wchar_t next = L'\0';
    if (length - name.size() >= sizeof(next)) std::memcpy(&next, record.data() + begin + name.size(), sizeof(next));
    return next == L'\0' && std::memcmp(record.data() + begin, name.data(), name.size()) == 0;
}

std::wstring wide(std::span<const char> section) {
    const std::string_view bytes = textOf(section);
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    if (!bytes.empty()) std::memcpy(text.data(), bytes.data(), bytes.size());
    return text;
}

Entity::Entity(IDataStore* store, std::uint64_t size, tType type) : Base(store, size, type) {
    parent(BADOFF);
    locale(BADOFF);
}

unsigned int Entity::children() const {
    return type() == kPrimitive ? BADOFF : word(kChildren, BADOFF);
}

std::wstring Entity::name() const {
    return wide(nameBytes());
}

std::string_view Entity::nameBytes() const {
    return textOf(nameSection());
}

std::span<const char> Entity::nameSection() const {
    switch (type()) {
        case kRoot:
            return section(Root::kName, Root::kNameLength);
        case kPrimitive:
            return section(Primitive::kFixed + section(Primitive::kFixed, Primitive::kValueLocale).size(),
                           Primitive::kName);
        case kTable:
            return section(Table::kFixed, Table::kName);
        case kContainer:
            return section(Container::kFixed, Container::kName);
        default:
            return {};
    }
}

std::span<const char> Entity::section(std::size_t begin, unsigned int field) const {
    if (begin > size()) return {};
    return {bytes() + begin, static_cast<std::size_t>(std::min<std::uint64_t>(word(field), size() - begin))};
}

bool Entity::name(const char* section, std::uint64_t length, tTouches touches) {
    switch (type()) {
        case kPrimitive:
            return replaceSection(Primitive::kSections, Primitive::kName, section, length, touches);
        case kTable:
            return replaceSection(Table::kSections, Table::kName, section, length, touches);
        case kContainer:
            return replaceSection(Container::kSections, Container::kName, section, length, touches);
        default:
            return false;
    }
}

void Entity::ref() {
    if (whole()) writeWord(kRefs, refs() + 1, false, tTouches::kItself);
}

void Entity::unref() {
    if (whole()) writeWord(kRefs, refs() - 1, false, tTouches::kItself);
}

std::span<const char> Entity::section(const tSections& sections, unsigned int field) const {
    if (size() < sections.header) return {};
    std::size_t begin = sections.header;
    for (const unsigned int each : sections.lengths) {
        const auto found = section(begin, each);
        if (each == field) return found;
        begin += found.size();
    }
    return section(sections.header, sections.lengths.front());
}

std::wstring Entity::sectionText(const tSections& sections, unsigned int field) const {
    return wide(section(sections, field));
}

bool Entity::replaceSection(const tSections& sections, unsigned int field, const char* data, std::uint64_t length,
                            tTouches touches) {
    const auto known = std::find(sections.lengths.begin(), sections.lengths.end(), field);
    if (size() < sections.header || known == sections.lengths.end()) return false;
    std::uint64_t newSize = sections.header + length;
    eachSection(sections, [&](const tSection& each) {
        if (each.field != field) newSize += each.bytes.size();
    });
    if (newSize > std::numeric_limits<unsigned int>::max()) return false;

    const auto total = static_cast<unsigned int>(newSize);
    const unsigned int capacity = allocator(total);
    auto* fresh = room(capacity);
    std::memcpy(fresh, bytes(), sections.header);
    char* end = fresh + sections.header;
    eachSection(sections, [&](const tSection& each) {
        const bool replaced = each.field == field;
        const auto count = static_cast<unsigned int>(replaced ? length : each.bytes.size());
        const char* source = replaced ? data : each.bytes.data();
        if (count != 0 && source) std::memcpy(end, source, count);
        if (count != 0 && !source) std::memset(end, 0, count);
        std::memcpy(fresh + each.field, &count, sizeof(count));
        end += count;
    });
    adopt(fresh, total, capacity);
    update(true, touches);
    return true;
}

void Entity::putName(const tSections& sections, unsigned int field, const wchar_t* name) {
    const std::uint64_t length = textSection(name);
    putWord(field, static_cast<unsigned int>(length));
    std::memcpy(buffer() + sections.header, name, length);
}

}  // namespace lumivard::platform::data::Record
