#pragma once

#include <filesystem>

#include "stores/lmdb/LmdbEngine.h"

namespace lumivard::platform::stores {

/// Puts a file in the place of the store file `path` that holds the same and nothing else, in the newest format.
///
/// The copy is made beside the file, from one state of it that was measured in whole, and is durable before it takes
/// the name: a process or machine that dies leaves the old file or the new one. Readers may come and go while it is
/// made; at the end nobody else may have the file open. Throws `EngineError`, with the old file in its place unless the
/// very last step failed, which makes the name durable.
void compactStoreFile(const std::filesystem::path& path, LmdbEngine::Settings settings);

}  // namespace lumivard::platform::stores
