#pragma once

#include <filesystem>
#include <optional>

#include "stores/engine/Engine.h"
#include "stores/lmdb/Environment.h"

namespace lumivard::platform::stores {

/// Makes the database of a store in a new environment, or opens it there.
MDB_dbi makeRecords(const lmdb::Transaction& transaction);

/// Puts a header of the newest format behind all records. The last transaction of every change of a file has to do so.
void putHeader(const lmdb::Transaction& transaction, MDB_dbi records, const Engine::Header& header);

/// Makes an empty store file at `path`, unless something appears there first; that is left alone then.
///
/// The file is laid out, made durable and closed under another name in the same folder, and gets its own name as the
/// last step: nobody ever sees half a store, and of two who create at once one makes the file that both will find. When
/// the process dies on the way, a file ".lvp-store-*.new" may be left in the folder. `fileSystem` as for `FileHandle`.
/// Throws `EngineError`; nothing is left at `path` then, unless the very last step failed, which makes the name
/// durable.
void createStoreFile(const std::filesystem::path& path, std::optional<long> fileSystem = std::nullopt);

}  // namespace lumivard::platform::stores
