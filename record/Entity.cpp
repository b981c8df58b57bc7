#include "record/Entity.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "lumivard/platform/core/memory/PooledHeap.h"
#include "record/Container.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"

namespace lumivard::platform::data::Record {

Entity::Entity(IDataStore* store, std::uint64_t size, tType type) : Base(store, size, type) {
    parent(BADOFF);
    locale(BADOFF);
}

unsigned int Entity::children() const {
    return type() == kPrimitive ? BADOFF : word(kChildren, BADOFF);
}

std::wstring Entity::name() const {
    switch (type()) {
        case kRoot:
            return sectionText(Root::kSections, Root::kNameLength);
        case kPrimitive:
            return sectionText(Primitive::kSections, Primitive::kName);
        case kTable:
            return sectionText(Table::kSections, Table::kName);
        case kContainer:
            return sectionText(Container::kSections, Container::kName);
        default:
            return {};
    }
}

bool Entity::name(const char* section, std::uint64_t length) {
    switch (type()) {
        case kPrimitive:
            return replaceSection(Primitive::kSections, Primitive::kName, section, length);
        case kTable:
            return replaceSection(Table::kSections, Table::kName, section, length);
        case kContainer:
            return replaceSection(Container::kSections, Container::kName, section, length);
        default:
            return false;
    }
}

void Entity::ref() {
    if (!whole()) return;
    refs(refs() + 1);
    update(false);
}

void Entity::unref() {
    if (!whole()) return;
    refs(refs() - 1);
    update(false);
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
    const auto bytes = section(sections, field);
    if (bytes.empty()) return {};
    return text(static_cast<std::uint64_t>(bytes.data() - this->bytes()), bytes.size());
}

bool Entity::replaceSection(const tSections& sections, unsigned int field, const char* data, std::uint64_t length) {
    const auto known = std::find(sections.lengths.begin(), sections.lengths.end(), field);
    if (size() < sections.header || known == sections.lengths.end()) return false;
    std::uint64_t newSize = sections.header + length;
    for (const unsigned int each : sections.lengths) {
        if (each != field) newSize += section(sections, each).size();
    }
    if (newSize > std::numeric_limits<unsigned int>::max()) return false;

    const auto total = static_cast<unsigned int>(newSize);
    const unsigned int capacity = allocator(total);
    auto* fresh = static_cast<char*>(core::memory::PooledHeap::malloc(capacity));
    std::memcpy(fresh, bytes(), sections.header);
    char* end = fresh + sections.header;
    for (const unsigned int each : sections.lengths) {
        const std::span<const char> kept = section(sections, each);
        const auto count = static_cast<unsigned int>(each == field ? length : kept.size());
        const char* source = each == field ? data : kept.data();
        if (count != 0 && source) std::memcpy(end, source, count);
        if (count != 0 && !source) std::memset(end, 0, count);
        std::memcpy(fresh + each, &count, sizeof(count));
        end += count;
    }
    adopt(fresh, total, capacity);
    update(true);
    return true;
}

void Entity::putName(const tSections& sections, unsigned int field, const wchar_t* name) {
    const std::uint64_t length = textSection(name);
    putWord(field, static_cast<unsigned int>(length));
    std::memcpy(buffer() + sections.header, name, length);
}

}  // namespace lumivard::platform::data::Record
