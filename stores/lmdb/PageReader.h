#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace lumivard::platform::stores::lmdb {

/// Reads pieces of a file by plain reads: what is not there, or has changed meanwhile, is a short read here and never a
/// fault of the memory, as it is in a mapped file.
class PageReader {
public:
    /// `descriptor` stays the caller's and is open for reading.
    explicit PageReader(int descriptor) noexcept : _descriptor(descriptor) {}

    /// The file's length in bytes at this moment. Throws `EngineError`.
    std::uint64_t length() const;

    /// Fills `bytes` from `position` on. False where the file ends before. Throws `EngineError` when the disk fails.
    bool read(std::uint64_t position, std::span<std::byte> bytes) const;

private:
    int _descriptor;
};

}  // namespace lumivard::platform::stores::lmdb
