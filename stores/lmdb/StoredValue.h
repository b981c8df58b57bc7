#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace lumivard::platform::stores::storedValue {

/// How a record's bytes, and the header's, lie in the file since format 2: behind them stands a checksum, so that a
/// record that the disk or somebody else has changed is told from one that we have written. The key is counted in, so
/// that a record in the place of another shows too.
///
///     +----------------------------+------------------+
///     | contents                   | CRC-32C, u32     |   of the 8 bytes of the key and the contents
///     +----------------------------+------------------+
///
/// In format 1 there are the contents alone.
constexpr std::size_t kChecksum = sizeof(std::uint32_t);

/// How many bytes stand behind the contents in a file of that format.
constexpr std::size_t trailer(std::uint32_t format) {
    return format >= 2 ? kChecksum : 0;
}

/// The checksum that belongs behind these contents.
std::uint32_t checksum(std::uint64_t key, std::span<const std::byte> contents) noexcept;

/// The contents of a stored value. Throws `EngineError` when they are not what was written.
std::span<const std::byte> contents(std::uint64_t key, std::span<const std::byte> value, std::uint32_t format);

/// Writes a value of `contents.size() + trailer(format)` bytes to `value`.
void put(std::byte* value, std::uint64_t key, std::span<const std::byte> contents, std::uint32_t format) noexcept;

}  // namespace lumivard::platform::stores::storedValue
