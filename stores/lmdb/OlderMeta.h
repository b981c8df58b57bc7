#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>

#include "stores/lmdb/PageFormat.h"

namespace lumivard::platform::stores::lmdb {

/// The older of a file's two descriptions of itself, as it is before a transaction puts its own in that place.
///
/// When LMDB cannot write the new one, it gives the place its old number again and leaves the rest, which would then
/// describe a state that was never committed; nobody could tell that from a number that was damaged.
class OlderMeta {
public:
    /// Reads it for a transaction about to be committed. Throws `EngineError` when the disk fails.
    OlderMeta(int descriptor, std::size_t transaction, std::size_t pageSize);

    /// Puts it back, as far as the disk does it: it has just failed.
    void restore() const noexcept;

private:
    const int _descriptor;
    const off_t _position;
    std::array<std::byte, page::kMetaEnd> _bytes{};
};

}  // namespace lumivard::platform::stores::lmdb
