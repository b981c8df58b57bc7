#include "stores/lmdb/Environment.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/StoredValue.h"

namespace lumivard::platform::stores::lmdb {
namespace {

constexpr mdb_mode_t kFileMode = 0666;  // less what the process's umask takes away

std::string reason(int status) {
    switch (status) {
        case MDB_INVALID:
        case MDB_VERSION_MISMATCH:
            return "it is not a store file, or it is damaged";
        case MDB_CORRUPTED:
        case MDB_PAGE_NOTFOUND:
            return "it is damaged";
        case MDB_PANIC:
            return "an earlier failure has left it unusable until it is opened again";
        case MDB_READERS_FULL:
            return "too many others are reading it";
        default:
            return status > 0 ? systemReason(status) : mdb_strerror(status);
    }
}

}  // namespace

void check(int status) {
    if (status != MDB_SUCCESS) throw EngineError(reason(status));
}

Environment openEnvironment(const std::filesystem::path& path, unsigned int flags, std::size_t mapSize) {
    // Whoever comes first sets up the lock file. If that one dies over it, who has waited finds nothing in it that
    // makes sense: another try sets it up.
    constexpr int kMostTries = 10;
    for (int tries = 1;; ++tries) {
        MDB_env* made = nullptr;
        check(mdb_env_create(&made));
        Environment environment(made);
        check(mdb_env_set_maxreaders(made, kMostReaders));
        check(mdb_env_set_mapsize(made, mapSize));
        const int status = mdb_env_open(made, path.c_str(), flags | MDB_NOSUBDIR | MDB_NOTLS, kFileMode);
        const bool senseless = status == MDB_INVALID || status == MDB_VERSION_MISMATCH;
        if (senseless && tries < kMostTries) continue;
        check(status);
        // The one descriptor of LMDB's that a program started from here would inherit.
        mdb_filehandle_t descriptor = -1;
        check(mdb_env_get_fd(made, &descriptor));
        if (::fcntl(descriptor, F_SETFD, FD_CLOEXEC) != 0) check(errno);
        return environment;
    }
}

Transaction begin(const Environment& environment, unsigned int flags) {
    MDB_txn* transaction = nullptr;
    check(mdb_txn_begin(environment.get(), nullptr, flags, &transaction));
    return Transaction(transaction);
}

Cursor openCursor(const Transaction& transaction, MDB_dbi database) {
    MDB_cursor* cursor = nullptr;
    check(mdb_cursor_open(transaction.get(), database, &cursor));
    return Cursor(cursor);
}

int put(const Cursor& cursor, std::uint64_t key, std::span<const std::byte> contents, std::uint32_t format,
        unsigned int flags) {
    MDB_val keyBytes{sizeof key, &key};
    MDB_val value{contents.size() + storedValue::trailer(format), nullptr};
    const int status = mdb_cursor_put(cursor.get(), &keyBytes, &value, flags | MDB_RESERVE);
    if (status == MDB_SUCCESS) storedValue::put(static_cast<std::byte*>(value.mv_data), key, contents, format);
    return status;
}

Entry move(const Cursor& cursor, MDB_cursor_op operation, std::uint64_t key) noexcept {
    MDB_val keyBytes{sizeof key, &key};
    MDB_val value{};
    const int status = mdb_cursor_get(cursor.get(), &keyBytes, &value, operation);
    if (status != MDB_SUCCESS) return {status};
    Entry entry;
    if (keyBytes.mv_size == sizeof entry.key) {
        std::memcpy(&entry.key, keyBytes.mv_data, sizeof entry.key);
    } else {  // in a file that is not ours
        std::memcpy(&entry.key, keyBytes.mv_data, std::min(keyBytes.mv_size, sizeof entry.key));
    }
    entry.value = {static_cast<const std::byte*>(value.mv_data), value.mv_size};
    return entry;
}

int commit(Transaction transaction) noexcept {
    return mdb_txn_commit(transaction.release());
}

}  // namespace lumivard::platform::stores::lmdb
