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

bool Entity::called(std::string_view name) const {
    const std::span<const char> section = nameSection();
    if (section.size() < name.size() || !std::equal(name.begin(), name.end(), section.begin())) return false;
    const auto rest = section.subspan(name.size());
    wchar_t next = L'\0';
    if (rest.size() >= sizeof(next)) std::memcpy(&next, rest.data(), sizeof(next));
    return next == L'\0';
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
    const auto known = std::find(sections.lengths.begin(), sections.lengths.end(), field);
    const unsigned int wanted = known == sections.lengths.end() ? sections.lengths.front() : field;
    std::span<const char> found;
    eachSection(sections, [&](const tSection& each) {
        if (each.field == wanted) found = each.bytes;
    });
    return found;
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
