#include "record/Locale.h"

#include <cstring>
#include <limits>

namespace lumivard::platform::data::Record {

Locale::Locale(IDataStore* store) : Base(store, std::uint64_t{kPayload}, kLocale) {
    update(true);
}

std::wstring Locale::payload() const {
    std::wstring payload;
    if (type() != kLocale) return payload;
    eachSection(kSections, [&](const tSection& section) {
        payload.resize(section.bytes.size() / sizeof(wchar_t));
        std::memcpy(payload.data(), section.bytes.data(), payload.size() * sizeof(wchar_t));
    });
    return payload;
}

bool Locale::payload(std::uint64_t length, const char* data) {
    if (length > std::numeric_limits<unsigned int>::max() - kPayload) return false;
    const auto total = static_cast<unsigned int>(kPayload + length);
    const unsigned int capacity = allocator(total);
    auto* fresh = room(capacity);
    std::memset(fresh, 0, kPayload);
    if (length != 0) std::memcpy(fresh + kPayload, data, length);
    adopt(fresh, total, capacity);
    putByte(0, kLocale);
    putWord(kLength, static_cast<unsigned int>(length));
    update(true, tTouches::kItself);
    return true;
}

}  // namespace lumivard::platform::data::Record
