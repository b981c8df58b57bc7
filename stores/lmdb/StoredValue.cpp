#include "stores/lmdb/StoredValue.h"

#include <cstring>

#include "stores/core/Checksum.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores::storedValue {

std::uint32_t checksum(std::uint64_t key, std::span<const std::byte> contents) noexcept {
    return crc32c(contents, crc32c(std::as_bytes(std::span(&key, 1))));
}

std::span<const std::byte> contents(std::uint64_t key, std::span<const std::byte> value, std::uint32_t format) {
    if (trailer(format) == 0) return value;
    if (value.size() < kChecksum) throw EngineError("it is damaged");
    const auto contents = value.first(value.size() - kChecksum);
    std::uint32_t stored = 0;
    std::memcpy(&stored, contents.data() + contents.size(), sizeof stored);
    if (stored != checksum(key, contents)) throw EngineError("it is damaged: its checksum is another one");
    return contents;
}

void put(std::byte* value, std::uint64_t key, std::span<const std::byte> contents, std::uint32_t format) noexcept {
    if (!contents.empty()) std::memcpy(value, contents.data(), contents.size());
    if (trailer(format) == 0) return;
    const std::uint32_t sum = checksum(key, contents);
    std::memcpy(value + contents.size(), &sum, sizeof sum);
}

}  // namespace lumivard::platform::stores::storedValue
