#pragma once

#include <cstdint>

#include "lumivard/platform/stores/FileOptions.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores {

/// Tells who listens, if anybody does, how far long work is. Throws `EngineError` when it is to end.
inline void goOn(const tProgress& progress, std::uint64_t done, std::uint64_t total) {
    if (progress && !progress(done, total)) throw EngineError("it was told to stop");
}

}  // namespace lumivard::platform::stores
