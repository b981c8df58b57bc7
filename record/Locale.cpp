#include "record/Locale.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "lumivard/platform/core/memory/PooledHeap.h"

namespace lumivard::platform::data::Record {

Locale::Locale(IDataStore* store) : Base(store, std::uint64_t{kPayload}, kLocale) {
    update(true);
}

std::wstring Locale::payload() const {
    if (type() != kLocale || size() <= kPayload) return {};
    const std::size_t characters = std::min(word(kLength), size() - kPayload) / sizeof(wchar_t);
    std::wstring payload(characters, L'\0');
    std::memcpy(payload.data(), bytes() + kPayload, characters * sizeof(wchar_t));
    return payload;
}

bool Locale::payload(std::uint64_t length, const char* data) {
    if (length > std::numeric_limits<unsigned int>::max() - kPayload) return false;
    const auto total = static_cast<unsigned int>(kPayload + length);
    const unsigned int capacity = allocator(total);
    auto* fresh = static_cast<char*>(core::memory::PooledHeap::malloc(capacity));
    std::memset(fresh, 0, kPayload);
    if (length != 0) std::memcpy(fresh + kPayload, data, length);
    adopt(fresh, total, capacity);
    putByte(0, kLocale);
    putWord(kLength, static_cast<unsigned int>(length));
    update(true);
    return true;
}

}  // namespace lumivard::platform::data::Record
