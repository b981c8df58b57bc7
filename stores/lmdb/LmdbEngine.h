#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <utility>

#include "lumivard/platform/stores/FileOptions.h"
#include "lumivard/platform/stores/FileReport.h"
#include "lumivard/platform/stores/tMode.h"
#include "stores/engine/Engine.h"
#include "stores/lmdb/Environment.h"
#include "stores/lmdb/FileHandle.h"
#include "stores/lmdb/Forks.h"
#include "stores/lmdb/LockFile.h"
#include "stores/lmdb/StoredValue.h"

namespace lumivard::platform::stores {

/// Keeps records in one file, through LMDB; the layout of the file is told in HeaderFormat.h.
///
/// The snapshot is one long read transaction. A commit is one write transaction, and durable when it returns, since
/// nothing of LMDB's syncing and locking is relaxed. LMDB trusts the pages of its file, so the file is measured before
/// it is mapped: always its beginning and its header, every page on demand. Damage behind that, which a file has that
/// was changed by something else, is seen in each record that is read, but may also crash the process; see
/// `Settings::verify`. Threads and errors as for `Engine`, with `EngineError`.
class LmdbEngine final : public Engine {
public:
    struct Settings {
        std::size_t mapSize = 0;         ///< bytes of address space to begin with; 0: by the size of the file
        std::optional<long> fileSystem;  ///< instead of what statfs says
        bool verify = false;             ///< measures every page at opening: for files that may be damaged
        tProgress progress = {};         ///< hears of that
    };

    /// Opens the file, created before with `tMode::kWrite` if there is none. Throws `EngineError` when it is refused.
    LmdbEngine(const std::filesystem::path& path, tMode mode, const Settings& settings);
    ~LmdbEngine() override;

    /// Measures all pages of the snapshot, and with `values` the checksum of each stored record.
    FileReport verify(bool values, const tProgress& progress);

    /// Shows all records of the snapshot, by rising offset. The bytes stand during the call alone.
    void forEachRecord(const std::function<void(std::uint64_t, std::span<const std::byte>)>& visit);

    FileHandle& file() { return *_file; }

    unsigned int longestRecord() const noexcept override { return kLongest; }
    Header header() override;
    std::optional<std::span<const std::byte>> load(unsigned int offset) override;
    bool lends() const noexcept override;
    void commit(const Batch& batch) override;

    /// A reader moves to the last commit of the writer. A writer has no news: nobody else commits.
    std::optional<News> guardTaken() override;

    /// What LMDB takes for a value, less what stands behind a record.
    static constexpr unsigned int kLongest = UINT32_MAX - storedValue::kChecksum;

private:
    void _requireUsable() const;
    std::optional<std::span<const std::byte>> _get(std::uint64_t key);
    void _requireGap(std::uint64_t key);
    int _write(const Batch& batch);
    int _writeRecords(const lmdb::Transaction& transaction, const Batch& batch) const;
    void _beginReading();
    void _takeOverFromDeadWriter();
    void _openDatabase();
    void _renew();
    void _growMap();
    void _setMapSize(std::size_t size);
    std::size_t _mapSize() const;
    void _followMap();

    static constexpr std::uint64_t kNoKey = UINT64_MAX;

    const tMode _mode;
    const pid_t _process;
    const unsigned long _forks = forks::count();
    std::optional<FileHandle> _file;
    std::optional<LockFile> _lock;
    lmdb::Environment _environment;
    lmdb::Transaction _snapshot;
    MDB_dbi _records = 0;
    lmdb::Cursor _cursor;  // on the snapshot
    std::size_t _pageSize = 0;
    std::uint32_t _format = 0;
    std::size_t _told = 0;                         // the commit that guardTaken has last told of
    std::pair<std::uint64_t, std::uint64_t> _gap;  // keys from and to which the snapshot is known to have none
    std::uint64_t _next = kNoKey;                  // the key behind the one that the cursor stands at, if it does
    bool _mapped = true;
};

}  // namespace lumivard::platform::stores
