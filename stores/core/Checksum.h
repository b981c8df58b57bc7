#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace lumivard::platform::stores {

/// The CRC-32C of `bytes` (Castagnoli's polynomial, as RFC 3720, appendix B.4, computes it), going on from `before`,
/// the checksum of what comes before them; 0 is that of nothing. Any change of up to 32 bits in a row is seen, and any
/// other but for one in 2^32. Cost: O(bytes), with the processor's own instruction where it has one.
std::uint32_t crc32c(std::span<const std::byte> bytes, std::uint32_t before = 0) noexcept;

/// The same by tables alone, for processors without the instruction.
std::uint32_t crc32cByTables(std::span<const std::byte> bytes, std::uint32_t before = 0) noexcept;

}  // namespace lumivard::platform::stores
