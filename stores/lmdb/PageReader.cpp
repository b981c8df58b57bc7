#include "stores/lmdb/PageReader.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores::lmdb {

std::uint64_t PageReader::length() const {
    struct stat status = {};
    if (::fstat(_descriptor, &status) != 0) throw EngineError(systemReason(errno));
    return static_cast<std::uint64_t>(status.st_size);
}

bool PageReader::read(std::uint64_t position, std::span<std::byte> bytes) const {
    constexpr std::uint64_t kFarthest = std::numeric_limits<off_t>::max();
    while (!bytes.empty()) {
        if (position > kFarthest - bytes.size()) return false;
        const ssize_t count = ::pread(_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(position));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw EngineError("it could not be read: " + systemReason(errno));
        if (count == 0) return false;
        position += static_cast<std::uint64_t>(count);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace lumivard::platform::stores::lmdb
