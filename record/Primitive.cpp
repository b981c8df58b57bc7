#include "record/Primitive.h"

namespace lumivard::platform::data::Record {

Primitive::Primitive(IDataStore* store, unsigned int valuetype, const wchar_t* name)
    : Property(store, kFixed + textSection(name), kPrimitive) {
    putWord(kValueType, valuetype);
    putName(kSections, kName, name);
    update(true);
}

Primitive::tParts Primitive::parts() const {
    tParts parts;
    std::span<const char>* const places[] = {&parts.valueLocale, &parts.name, &parts.base, &parts.value};
    std::size_t number = 0;
    eachSection(kSections, [&](const tSection& section) { *places[number++] = section.bytes; });
    return parts;
}

std::span<const char> Primitive::value() const {
    std::size_t begin = kFixed;
    for (const unsigned int field : {kValueLocale, kName, kBase}) begin += Entity::section(begin, field).size();
    return Entity::section(begin, kValue);
}

bool Primitive::writeValue(std::uint64_t start, const char* data, std::uint64_t length) {
    const std::span<const char> value = this->value();
    if (start > value.size() || length > value.size() - start) return false;
    const auto position = static_cast<std::uint64_t>(value.data() - bytes()) + start;
    return write(position, data, length, true, tTouches::kItself);
}

}  // namespace lumivard::platform::data::Record
