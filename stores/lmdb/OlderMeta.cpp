#include "stores/lmdb/OlderMeta.h"

#include <unistd.h>

#include <cerrno>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/PageReader.h"

namespace lumivard::platform::stores::lmdb {

OlderMeta::OlderMeta(int descriptor, std::size_t transaction, std::size_t pageSize)
    : _descriptor(descriptor), _position(static_cast<off_t>(transaction % 2 * pageSize)) {
    if (!PageReader(descriptor).read(static_cast<std::uint64_t>(_position), _bytes)) {
        throw EngineError(systemReason(EIO));
    }
}

void OlderMeta::restore() const noexcept {
    // And to the disk, before anybody builds on the older state: the new one may have got there although it was not
    // said.
    if (::pwrite(_descriptor, _bytes.data(), _bytes.size(), _position) > 0) static_cast<void>(::fdatasync(_descriptor));
}

}  // namespace lumivard::platform::stores::lmdb
