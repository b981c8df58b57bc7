#pragma once

#include <lmdb.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace lumivard::platform::stores::lmdb {

/// Handles of LMDB that close themselves, and its status codes as exceptions. What it does itself is told in lmdb.h.

struct CloseEnvironment {
    void operator()(MDB_env* environment) const noexcept { mdb_env_close(environment); }
};
struct AbortTransaction {
    void operator()(MDB_txn* transaction) const noexcept { mdb_txn_abort(transaction); }
};
struct CloseCursor {
    void operator()(MDB_cursor* cursor) const noexcept { mdb_cursor_close(cursor); }
};
using Environment = std::unique_ptr<MDB_env, CloseEnvironment>;
using Transaction = std::unique_ptr<MDB_txn, AbortTransaction>;
using Cursor = std::unique_ptr<MDB_cursor, CloseCursor>;

/// How many handles on one file there may be in all processes: 64 bytes each in the lock file, and enough for every
/// process that a machine is likely to run.
inline constexpr unsigned int kMostReaders = 1022;

/// The length of the lock file, in bytes, as LMDB makes it.
inline constexpr off_t kLockFileLength = 64 * (kMostReaders + 2);

/// Throws `EngineError` with the cause in plain words unless `status` is MDB_SUCCESS.
void check(int status);

/// Opens the single file `path` as an environment. `flags` come on top of MDB_NOSUBDIR and MDB_NOTLS; `mapSize` is in
/// bytes. An empty file is laid out as a new environment unless `flags` has MDB_RDONLY.
Environment openEnvironment(const std::filesystem::path& path, unsigned int flags, std::size_t mapSize);

/// Begins a transaction; `flags` is 0 or MDB_RDONLY.
Transaction begin(const Environment& environment, unsigned int flags);

/// Opens a cursor, which must be closed before its transaction ends.
Cursor openCursor(const Transaction& transaction, MDB_dbi database);

/// Puts a record's contents under its key, with what the format of the file adds to them; `flags` as for
/// mdb_cursor_put. Gives LMDB's status. Cheap for keys that rise, of which the cursor knows the page.
int put(const Cursor& cursor, std::uint64_t key, std::span<const std::byte> contents, std::uint32_t format,
        unsigned int flags = 0);

/// Moves a cursor and gives the key and the value that it has come to, or LMDB's status.
struct Entry {
    int status = MDB_SUCCESS;
    std::uint64_t key = 0;
    std::span<const std::byte> value{};
};
Entry move(const Cursor& cursor, MDB_cursor_op operation, std::uint64_t key = 0) noexcept;

/// Ends a transaction durably and gives LMDB's status.
int commit(Transaction transaction) noexcept;

}  // namespace lumivard::platform::stores::lmdb
