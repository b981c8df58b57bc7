#include "stores/lmdb/Environment.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <string>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/FileDescriptor.h"
#include "stores/lmdb/PageFormat.h"
#include "stores/lmdb/PageReader.h"
#include "stores/lmdb/StoredValue.h"

namespace lumivard::platform::stores::lmdb {
namespace {

// 64 bytes each in the lock file: enough for every process that a machine is likely to run.
constexpr unsigned int kMostReaders = 1022;

constexpr off_t kLockFile = 64 * (kMostReaders + 2);  // bytes, as LMDB makes it

constexpr char kLockSuffix[] = "-lock";  // LMDB's

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

// Whether a file that has the name of a lock file is a store. What else it may hold is what a lock file may hold after
// the machine has died.
bool isStoreFile(int descriptor) {
    std::array<std::byte, page::kMetaEnd> bytes{};
    if (!PageReader(descriptor).read(0, bytes)) return false;
    const page::Meta meta = page::meta(bytes);
    return meta.page == 0 && meta.flags == page::kMeta && meta.magic == page::kMagic;
}

}  // namespace

void check(int status) {
    if (status != MDB_SUCCESS) throw EngineError(reason(status));
}

Environment openEnvironment(const std::filesystem::path& path, unsigned int flags, std::size_t mapSize) {
    MDB_env* made = nullptr;
    check(mdb_env_create(&made));
    Environment environment(made);
    check(mdb_env_set_maxreaders(made, kMostReaders));
    check(mdb_env_set_mapsize(made, mapSize));
    check(mdb_env_open(made, path.c_str(), flags | MDB_NOSUBDIR | MDB_NOTLS, kFileMode));
    // The one descriptor of LMDB's that a program started from here would inherit.
    mdb_filehandle_t descriptor = -1;
    check(mdb_env_get_fd(made, &descriptor));
    if (::fcntl(descriptor, F_SETFD, FD_CLOEXEC) != 0) check(errno);
    return environment;
}

void requireRoomForLockName(const std::filesystem::path& path) {
    const std::size_t longest = NAME_MAX - std::strlen(kLockSuffix);
    if (path.filename().string().size() <= longest) return;
    throw EngineError("its name has more than " + std::to_string(longest) +
                      " bytes, and there must be room for that of its lock file");
}

void reserveLockFile(const std::filesystem::path& path) {
    const std::string name = path.string() + kLockSuffix;
    const std::string shown = std::filesystem::path(name).filename().string();
    const FileDescriptor descriptor(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kFileMode));
    if (!descriptor) {
        if (errno == EROFS) return;
        throw EngineError("its lock file \"" + shown + "\" cannot be opened for writing: " + systemReason(errno));
    }
    if (isStoreFile(descriptor.get())) throw EngineError("its lock file would be \"" + shown + "\", which is a store");
    // Not posix_fallocate(): where the system cannot do it, that one writes, and others may be at work in the file.
    const int error = ::fallocate(descriptor.get(), 0, 0, kLockFile) == 0 ? 0 : errno;
    if (error != EOPNOTSUPP && error != ENOSYS && error != EINTR) check(error);
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

int put(const Transaction& transaction, MDB_dbi database, std::uint64_t key, std::span<const std::byte> contents,
        std::uint32_t format, unsigned int flags) {
    MDB_val keyBytes{sizeof key, &key};
    MDB_val value{contents.size() + storedValue::trailer(format), nullptr};
    const int status = mdb_put(transaction.get(), database, &keyBytes, &value, flags | MDB_RESERVE);
    if (status == MDB_SUCCESS) storedValue::put(static_cast<std::byte*>(value.mv_data), key, contents, format);
    return status;
}

int commit(Transaction transaction) noexcept {
    return mdb_txn_commit(transaction.release());
}

}  // namespace lumivard::platform::stores::lmdb
