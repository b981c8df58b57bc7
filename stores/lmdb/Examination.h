#pragma once

#include <filesystem>

#include "stores/lmdb/LmdbEngine.h"

namespace lumivard::platform::stores {

/// Examines a store file as `stores::verify` tells. Throws `EngineError` where it cannot be opened at all.
FileReport verifyStoreFile(const std::filesystem::path& path, bool values, LmdbEngine::Settings settings);

}  // namespace lumivard::platform::stores
