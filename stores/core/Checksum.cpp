#include "stores/core/Checksum.h"

#include <array>
#include <cstring>

#if defined(__x86_64__)
#include <nmmintrin.h>
#endif

namespace lumivard::platform::stores {
namespace {

constexpr std::uint32_t kPolynomial = 0x82F63B78;  // 0x1EDC6F41 with its bits in reverse order

// Eight bytes in one step ("slicing by 8", M. Kounavis and F. Berry, 2005): table k tells what a byte becomes that k
// more bytes follow.
using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr Tables makeTables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? kPolynomial : 0);
        tables[0][byte] = crc;
    }
    for (std::size_t table = 1; table < tables.size(); ++table) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t crc = tables[table - 1][byte];
            tables[table][byte] = (crc >> 8) ^ tables[0][crc & 0xFF];
        }
    }
    return tables;
}

constexpr Tables kTables = makeTables();

std::uint32_t step(std::uint32_t crc, std::byte byte) {
    return (crc >> 8) ^ kTables[0][(crc ^ std::to_integer<std::uint32_t>(byte)) & 0xFF];
}

#if defined(__x86_64__)
__attribute__((target("sse4.2"))) std::uint32_t crc32cByInstruction(std::span<const std::byte> bytes,
                                                                    std::uint32_t before) noexcept {
    std::uint64_t crc = ~before;
    for (; bytes.size() >= 8; bytes = bytes.subspan(8)) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, bytes.data(), sizeof eight);
        crc = _mm_crc32_u64(crc, eight);
    }
    auto rest = static_cast<std::uint32_t>(crc);
    if (bytes.size() >= 4) {  // records mostly end so
        std::uint32_t four = 0;
        std::memcpy(&four, bytes.data(), sizeof four);
        rest = _mm_crc32_u32(rest, four);
        bytes = bytes.subspan(4);
    }
    for (const std::byte byte : bytes) rest = _mm_crc32_u8(rest, std::to_integer<unsigned char>(byte));
    return ~rest;
}
#endif

}  // namespace

std::uint32_t crc32cByTables(std::span<const std::byte> bytes, std::uint32_t before) noexcept {
    std::uint32_t crc = ~before;
    for (; bytes.size() >= 8; bytes = bytes.subspan(8)) {
        std::uint32_t next = 0;
        for (std::size_t at = 0; at < 8; ++at) {
            const std::uint32_t mixed = at < 4 ? (crc >> (8 * at)) & 0xFF : 0;
            next ^= kTables[7 - at][mixed ^ std::to_integer<std::uint32_t>(bytes[at])];
        }
        crc = next;
    }
    for (const std::byte byte : bytes) crc = step(crc, byte);
    return ~crc;
}

std::uint32_t crc32c(std::span<const std::byte> bytes, std::uint32_t before) noexcept {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("sse4.2")) return crc32cByInstruction(bytes, before);
#endif
    return crc32cByTables(bytes, before);
}

}  // namespace lumivard::platform::stores
