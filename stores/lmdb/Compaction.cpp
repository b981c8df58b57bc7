#include "stores/lmdb/Compaction.h"

#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/FileCreation.h"
#include "stores/lmdb/HeaderFormat.h"
#include "stores/lmdb/LockFile.h"
#include "stores/lmdb/NewFile.h"
#include "stores/lmdb/Progress.h"
#include "stores/lmdb/Verification.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kPrivate = 0600;                      // until it is known who else may read it
constexpr std::size_t kBatch = std::size_t{16} << 20;  // bytes of records in one transaction, all of which is in memory

/// Writes records by rising offset to the environment of a new file, and the header behind them.
class Copy {
public:
    explicit Copy(const lmdb::Environment& environment) : _environment(environment) { _begin(); }

    void add(std::uint64_t key, std::span<const std::byte> contents) {
        if (contents.size() > LmdbEngine::kLongest) {
            throw EngineError("record " + std::to_string(key) + " is too long for the newest format");
        }
        lmdb::check(lmdb::put(_cursor, key, contents, header::kFormat, MDB_APPEND));
        _pending += contents.size();
        if (_pending < kBatch) return;
        _commit();
        _begin();
    }

    void finish(const Engine::Header& header) {
        putHeader(_transaction, _records, header);
        _commit();
    }

private:
    void _begin() {
        _transaction = lmdb::begin(_environment, 0);
        _records = makeRecords(_transaction);
        _cursor = lmdb::openCursor(_transaction, _records);
        _pending = 0;
    }

    void _commit() {
        _cursor.reset();
        lmdb::check(lmdb::commit(std::move(_transaction)));
    }

    const lmdb::Environment& _environment;
    lmdb::Transaction _transaction;
    MDB_dbi _records = 0;
    lmdb::Cursor _cursor;
    std::size_t _pending = 0;
};

// What it needs is less than this: a checksum more in each record, and pages that are as full as records come in order.
std::size_t mapSizeFor(const FileReport& report) {
    constexpr unsigned long long kLeast = 1 << 20;
    return static_cast<std::size_t>(kLeast + 4 * report.length);
}

void copyRecords(LmdbEngine& source, const FileReport& report, const fs::path& target, const tProgress& progress) {
    // Nobody knows the new file yet, and all of it is made durable at the end.
    const auto environment = lmdb::openEnvironment(target, MDB_NOLOCK | MDB_NOSYNC, mapSizeFor(report));
    Copy copy(environment);
    unsigned long long done = 0;
    source.forEachRecord([&](std::uint64_t key, std::span<const std::byte> bytes) {
        copy.add(key, bytes);
        goOn(progress, ++done, report.records);
    });
    copy.finish(source.header());
}

// Gives a file the list of those who have rights besides its owner and its group, where the other has one. False where
// that cannot be done.
bool copyAccessList(int from, int to) {
    constexpr char kName[] = "system.posix_acl_access";
    std::array<char, XATTR_SIZE_MAX> list{};
    const ssize_t size = ::fgetxattr(from, kName, list.data(), list.size());
    if (size < 0) return errno == ENODATA || errno == EOPNOTSUPP;
    return ::fsetxattr(to, kName, list.data(), static_cast<std::size_t>(size), 0) == 0;
}

// The owner too, as far as the process may give files away. Rights of a group that it cannot name go to no other; nor
// do those of a list that it cannot give, in place of which the group would have them.
void copyRights(int from, int to) {
    constexpr mode_t kRights = 0777;
    constexpr mode_t kOfGroup = 0070;
    constexpr auto kSameOwner = static_cast<uid_t>(-1);
    struct stat status = {};
    if (::fstat(from, &status) != 0) throw EngineError(systemReason(errno));
    const bool given = ::fchown(to, status.st_uid, status.st_gid) == 0 || ::fchown(to, kSameOwner, status.st_gid) == 0;
    const bool listed = copyAccessList(from, to);
    const mode_t rights = status.st_mode & kRights & (given && listed ? kRights : ~kOfGroup);
    if (::fchmod(to, rights) != 0) throw EngineError(systemReason(errno));
}

}  // namespace

void compactStoreFile(const fs::path& path, LmdbEngine::Settings settings) {
    const fs::path real = realPath(path);
    std::error_code error;
    if (!fs::exists(real, error)) throw EngineError("there is no such file");
    LmdbEngine source(real, tMode::kWrite, settings);
    const FileReport report = source.verify(true, settings.progress);
    lmdb::requireSound(report);
    source.file().takeAlone();  // to say so before the work, should there be readers
    source.file().share();

    NewFile copy(real.parent_path(), kPrivate);
    copyRecords(source, report, copy.path(), settings.progress);
    copyRights(source.file().descriptor(), copy.descriptor());
    copy.makeDurable();

    // The lock file counts the transactions of the old file. Who opens that one from now on waits, and then finds that
    // it has lost its name; who opens the new one makes a lock file for it.
    source.file().takeAlone();
    ::unlink(LockFile::nameFor(real).c_str());
    copy.replace(real);
    NewFile::makeNamesDurable(real.parent_path());
}

}  // namespace lumivard::platform::stores
