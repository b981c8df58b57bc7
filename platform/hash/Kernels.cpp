#include "lumivard/platform/core/hash/Kernels.h"

#include <cstdint>
#include <cstring>
#include <cwchar>

namespace lumivard::platform::core {

namespace {

std::uint32_t littleEndian16(const unsigned char* bytes) {
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8;
}

std::uint32_t littleEndian32(const unsigned char* bytes) {
    return littleEndian16(bytes) | littleEndian16(bytes + 2) << 16;
}

}  // namespace

unsigned long tMurmur2Kernel::hash(const wchar_t* key) const {
    constexpr std::uint32_t kMultiplier = 0x5BD1E995;
    const unsigned long size = std::wcslen(key);
    const auto* bytes = reinterpret_cast<const unsigned char*>(key);
    std::uint64_t state = size;
    unsigned long left = size;
    for (; left >= 4; left -= 4, bytes += 4) {
        std::uint32_t block = littleEndian32(bytes) * kMultiplier;
        block ^= block >> 24;
        state = state * kMultiplier ^ block * kMultiplier;
    }
    if (left > 2) state ^= static_cast<std::uint64_t>(bytes[2]) << 16;
    if (left > 1) state ^= static_cast<std::uint64_t>(bytes[1]) << 8;
    if (left > 0) state = (state ^ bytes[0]) * kMultiplier;
    state = (state ^ state >> 13) * kMultiplier;
    return state ^ state >> 15;
}

bool tMurmur2Kernel::equal(const wchar_t* a, const wchar_t* b) const {
    return std::wcscmp(a, b) == 0;
}

unsigned long tSFHKernel::hash(const void* data, unsigned long size) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    std::uint64_t state = size;
    unsigned long left = size;
    for (; left >= 4; left -= 4, bytes += 4) {
        state += littleEndian16(bytes);
        state = (state & 0xFFFFFFFF) ^ state << 16 ^ static_cast<std::uint64_t>(littleEndian16(bytes + 2)) << 11;
        state += state >> 11;
    }
    if (left == 3) {
        state += littleEndian16(bytes);
        state ^= static_cast<std::uint64_t>(bytes[2]) << 18 ^ state << 16;
        state += state >> 11;
    } else if (left == 2) {
        state += littleEndian16(bytes);
        state ^= state << 11;
        state += state >> 17;
    } else if (left == 1) {
        state += bytes[0];
        state ^= state << 10;
        state += state >> 1;
    }
    state ^= state << 3;
    state += state >> 5;
    state ^= state << 4;
    state += state >> 17;
    state ^= state << 25;
    state += state >> 6;
    return state;
}

unsigned long tSFHKernel::operator()(const char* key) const {
    return hash(key, std::strlen(key));
}

}  // namespace lumivard::platform::core
