#include "record/Primitive.h"

#include <cstring>

namespace lumivard::platform::data::Record {

Primitive::Primitive(IDataStore* store, unsigned int valuetype, const wchar_t* name)
    : Property(store, kFixed + textSection(name), kPrimitive) {
    putWord(kValueType, valuetype);
    putName(kSections, kName, name);
    update(true);
}

bool Primitive::overwrite(std::uint64_t start, const char* data, std::uint64_t length) {
    const std::span<const char> value = section(kValue);
    if (start > value.size() || length > value.size() - start) return false;
    const auto position = static_cast<std::uint64_t>(value.data() - bytes()) + start;
    std::memcpy(buffer() + position, data, length);
    return true;
}

}  // namespace lumivard::platform::data::Record
