#include "stores/lmdb/LmdbEngine.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "stores/core/Failure.h"
#include "stores/core/RecordHeap.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/FileCreation.h"
#include "stores/lmdb/Forks.h"
#include "stores/lmdb/HeaderFormat.h"
#include "stores/lmdb/OlderMeta.h"
#include "stores/lmdb/StoredValue.h"
#include "stores/lmdb/Verification.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;

constexpr unsigned long long kSmallestMap = 1ULL << 30;  // address space, not memory

constexpr char kOfParent[] = "it was opened by the parent of this process and is of no use here";

std::size_t firstMapSize(const LmdbEngine::Settings& settings, unsigned long long fileSize) {
    if (settings.mapSize != 0) return settings.mapSize;
    return static_cast<std::size_t>(std::max(kSmallestMap, std::min(fileSize, kSmallestMap << 16) * 4));
}

fs::path findOrCreate(const fs::path& path, tMode mode, std::optional<long> fileSystem) {
    const fs::path real = realPath(path);
    std::error_code ignored;
    if (mode == tMode::kWrite && !fs::exists(real, ignored)) createStoreFile(real, fileSystem);
    return real;
}

// On a page the records lie from its end to its beginning. No processor guesses that in time for the first ones, and
// the checksum waits for every byte.
void prefetchFollowing(std::span<const std::byte> value) {
    constexpr std::size_t kLine = 64;
    constexpr std::size_t kAhead = 1024;
    for (std::size_t at = 0; at < std::min<std::size_t>(value.size(), 256); at += kLine)
        __builtin_prefetch(value.data() - kAhead + at);
}

// Removes a record, which need not be there.
int remove(const lmdb::Cursor& cursor, std::uint64_t key) {
    const int status = lmdb::move(cursor, MDB_SET, key).status;
    if (status == MDB_NOTFOUND) return MDB_SUCCESS;
    return status == MDB_SUCCESS ? mdb_cursor_del(cursor.get(), 0) : status;
}

// The key behind that of the last record; where something stands behind the header, which is not ours, no record comes
// behind that key.
int findEnd(const lmdb::Cursor& cursor, std::uint64_t& end) {
    end = header::kKey;
    lmdb::Entry entry = lmdb::move(cursor, MDB_LAST);
    if (entry.status != MDB_SUCCESS || entry.key != header::kKey) return entry.status;
    entry = lmdb::move(cursor, MDB_PREV);
    if (entry.status != MDB_SUCCESS && entry.status != MDB_NOTFOUND) return entry.status;
    end = entry.status == MDB_SUCCESS ? entry.key + 1 : 0;
    return MDB_SUCCESS;
}

// Whether there are records in a batch that come to stand behind that key.
bool appendsTo(std::uint64_t end, const Engine::Batch& batch) {
    const auto first = std::lower_bound(batch.offsets.begin(), batch.offsets.end(), end);
    return std::any_of(first, batch.offsets.end(), [&](unsigned int offset) { return !batch.change(offset).erased; });
}

}  // namespace

LmdbEngine::LmdbEngine(const fs::path& path, tMode mode, const Settings& settings) : _mode(mode), _process(::getpid()) {
    forks::watch();
    const fs::path real = findOrCreate(path, mode, settings.fileSystem);
    _file.emplace(real, mode, settings.fileSystem);
    const FileReport report = lmdb::verifyHeader(_file->descriptor());
    lmdb::requireSound(report);
    _format = report.format;
    _lock.emplace(real, *_file);
    _environment =
        lmdb::openEnvironment(real, mode == tMode::kRead ? MDB_RDONLY : 0, firstMapSize(settings, report.length));
    mdb_filehandle_t descriptor = -1;
    lmdb::check(mdb_env_get_fd(_environment.get(), &descriptor));
    if (!_file->same(descriptor)) throw EngineError("another file was put in its place at this moment");
    int dead = 0;
    lmdb::check(mdb_reader_check(_environment.get(), &dead));  // processes that died reading hold no space any more
    _beginReading();
    if (mode == tMode::kWrite) _takeOverFromDeadWriter();
    // Pages behind the end of the file would end the process when they are read: see that none of them is in use.
    if (settings.verify || lmdb::isShort(report)) lmdb::requireSound(verify(false, settings.progress));
    _openDatabase();
}

FileReport LmdbEngine::verify(bool values, const tProgress& progress) {
    constexpr int kMostTries = 100;
    for (int tries = 0; tries < kMostTries; ++tries) {
        if (auto report = lmdb::verifyAll(_file->descriptor(), mdb_txn_id(_snapshot.get()), values, progress)) {
            return *report;
        }
        _renew();  // two commits have come since the snapshot was taken
    }
    throw EngineError("others change it faster than it can be examined");
}

void LmdbEngine::forEachRecord(const std::function<void(std::uint64_t, std::span<const std::byte>)>& visit) {
    _requireUsable();
    _next = kNoKey;
    lmdb::Entry entry = lmdb::move(_cursor, MDB_FIRST);
    for (; entry.status == MDB_SUCCESS; entry = lmdb::move(_cursor, MDB_NEXT)) {
        if (entry.key != header::kKey) visit(entry.key, storedValue::contents(entry.key, entry.value, _format));
    }
    if (entry.status != MDB_NOTFOUND) lmdb::check(entry.status);
}

LmdbEngine::~LmdbEngine() {
    if (::getpid() == _process) return;
    // A child made by fork(): what it would tidy up here is shared with its parent, which goes on using it.
    static_cast<void>(_cursor.release());
    static_cast<void>(_snapshot.release());
    static_cast<void>(_environment.release());
}

Engine::Header LmdbEngine::header() {
    _requireUsable();
    const auto value = _get(header::kKey);
    if (!value) throw EngineError(header::kMissing);
    return header::decode(*value, value->size()).header;
}

std::optional<std::span<const std::byte>> LmdbEngine::load(unsigned int offset) {
    _requireUsable();
    const auto value = _get(offset);
    if (value) return storedValue::contents(offset, *value, _format);
    _requireGap(offset);
    return std::nullopt;
}

// The pages of a snapshot stay as they are. In a map the address sanitizer could not see who reads beyond a record.
bool LmdbEngine::lends() const noexcept {
    return !RecordHeap::kWatched;
}

void LmdbEngine::commit(const Batch& batch) {
    _requireUsable();
    if (::getpid() != _process) throw EngineError(kOfParent);  // however it became a process of its own
    int status = _write(batch);
    for (; status == MDB_MAP_FULL; status = _write(batch)) _growMap();
    lmdb::check(status);
    _renew();
}

std::optional<Engine::News> LmdbEngine::guardTaken() {
    if (_mode == tMode::kWrite) return std::nullopt;
    _requireUsable();
    MDB_envinfo info = {};
    lmdb::check(mdb_env_info(_environment.get(), &info));
    if (info.me_last_txnid == _told) return std::nullopt;
    _renew();
    // A writer that died may have left its number ahead of the state that there is, until the next writer comes.
    if (mdb_txn_id(_snapshot.get()) == _told) return std::nullopt;
    News news{header(), true, {}};
    _told = mdb_txn_id(_snapshot.get());
    return news;
}

void LmdbEngine::_requireUsable() const {
    if (_forks != forks::count()) throw EngineError(kOfParent);
    if (!_mapped) throw EngineError("its file could not be mapped into memory");
}

// Whoever goes through a file asks for one record after the other: the next one is where the cursor goes in one step,
// and others on its page cost no search through the tree.
std::optional<std::span<const std::byte>> LmdbEngine::_get(std::uint64_t key) {
    if (key == _next) {
        const lmdb::Entry entry = lmdb::move(_cursor, MDB_NEXT);
        if (entry.status == MDB_SUCCESS && entry.key == key) {
            ++_next;
            prefetchFollowing(entry.value);
            return entry.value;
        }
    }
    _next = kNoKey;
    const lmdb::Entry entry = lmdb::move(_cursor, MDB_SET, key);
    if (entry.status == MDB_NOTFOUND) return std::nullopt;
    lmdb::check(entry.status);
    _next = key + 1;
    return entry.value;
}

// A record whose key was changed by something else is not found by its number. It lies where that number would be, and
// has a checksum that its new key does not fit: so both neighbours of a record that is missing have to be sound.
void LmdbEngine::_requireGap(std::uint64_t key) {
    if (_gap.first <= key && key < _gap.second) return;
    _next = kNoKey;
    std::pair<std::uint64_t, std::uint64_t> gap{0, 0};
    const lmdb::Entry after = lmdb::move(_cursor, MDB_SET_RANGE, key);
    lmdb::check(after.status);  // there is always the header
    storedValue::contents(after.key, after.value, _format);
    gap.second = after.key;
    const lmdb::Entry before = lmdb::move(_cursor, MDB_PREV);
    if (before.status == MDB_SUCCESS) {
        storedValue::contents(before.key, before.value, _format);
        gap.first = before.key + 1;
    }
    if (before.status != MDB_NOTFOUND) lmdb::check(before.status);
    if (key < gap.first || key >= gap.second) throw EngineError("it is damaged: its records are out of order");
    _gap = gap;
}

// One attempt at a whole batch. Gives LMDB's status: with any but MDB_SUCCESS nothing has been written.
int LmdbEngine::_write(const Batch& batch) {
    lmdb::Transaction transaction = lmdb::begin(_environment, 0);
    const std::size_t number = mdb_txn_id(transaction.get());
    if (const int status = _writeRecords(transaction, batch); status != MDB_SUCCESS) return status;
    const lmdb::OlderMeta older(_file->descriptor(), number, _pageSize);
    const int status = lmdb::commit(std::move(transaction));
    if (status != MDB_SUCCESS) older.restore();
    return status;
}

// The header has the largest of all keys, so that each new record would be put before it and split a page in two
// halves, of which the first is never filled. So it goes first, if there are new records, and comes back behind them.
int LmdbEngine::_writeRecords(const lmdb::Transaction& transaction, const Batch& batch) const {
    const lmdb::Cursor cursor = lmdb::openCursor(transaction, _records);
    std::uint64_t end = 0;
    if (const int status = findEnd(cursor, end); status != MDB_SUCCESS) return status;
    const bool appends = appendsTo(end, batch);
    if (appends) {
        if (const int status = remove(cursor, header::kKey); status != MDB_SUCCESS) return status;
    }
    for (const unsigned int offset : batch.offsets) {
        const Change change = batch.change(offset);
        const unsigned int flags = offset >= end ? MDB_APPEND : 0;
        const int status =
            change.erased ? remove(cursor, offset) : lmdb::put(cursor, offset, change.bytes, _format, flags);
        if (status != MDB_SUCCESS) return status;
    }
    const auto value = header::encode({batch.header, mdb_txn_id(transaction.get()), _format});
    return lmdb::put(cursor, header::kKey, value, _format, appends ? MDB_APPEND : 0);
}

void LmdbEngine::_beginReading() {
    MDB_txn* made = nullptr;
    int status = mdb_txn_begin(_environment.get(), nullptr, MDB_RDONLY, &made);
    for (; status == MDB_MAP_RESIZED; status = mdb_txn_begin(_environment.get(), nullptr, MDB_RDONLY, &made)) {
        _followMap();
    }
    lmdb::check(status);
    _snapshot.reset(made);
    _told = mdb_txn_id(made);
}

// A writer that died between its last two steps has left a number in the lock file by which its newest state is not
// found: LMDB sets it right when somebody else writes.
void LmdbEngine::_takeOverFromDeadWriter() {
    lmdb::begin(_environment, 0);
    _renew();
}

void LmdbEngine::_openDatabase() {
    unsigned int flags = 0;
    lmdb::check(mdb_dbi_open(_snapshot.get(), nullptr, 0, &_records));
    lmdb::check(mdb_dbi_flags(_snapshot.get(), _records, &flags));
    if (flags != MDB_INTEGERKEY) throw EngineError(header::kMissing);
    MDB_stat statistics = {};
    lmdb::check(mdb_stat(_snapshot.get(), _records, &statistics));
    _pageSize = statistics.ms_psize;
    _cursor = lmdb::openCursor(_snapshot, _records);
}

// Moves the snapshot to the last commit. A reader's map follows when the writer has outgrown it.
void LmdbEngine::_renew() {
    _gap = {};
    _next = kNoKey;
    mdb_txn_reset(_snapshot.get());
    int status = mdb_txn_renew(_snapshot.get());
    for (; status == MDB_MAP_RESIZED; status = mdb_txn_renew(_snapshot.get())) _followMap();
    lmdb::check(status);
    if (_cursor) lmdb::check(mdb_cursor_renew(_snapshot.get(), _cursor.get()));
}

// Doubles the map. The snapshot, which points into it, is put down and taken up again at the same commit.
void LmdbEngine::_growMap() {
    const std::size_t size = _mapSize() * 2;
    // LMDB gives up the old map before it asks for the new one: see first whether there is room, while reading still
    // works.
    void* const room = ::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (room == MAP_FAILED) throw EngineError("its file needs more address space than there is");
    ::munmap(room, size);
    mdb_txn_reset(_snapshot.get());
    _setMapSize(size);
    _renew();
}

void LmdbEngine::_setMapSize(std::size_t size) {
    _mapped = mdb_env_set_mapsize(_environment.get(), size) == MDB_SUCCESS;
    _requireUsable();
}

std::size_t LmdbEngine::_mapSize() const {
    MDB_envinfo info = {};
    lmdb::check(mdb_env_info(_environment.get(), &info));
    return info.me_mapsize;
}

// Lets the map follow the file, which another process has made longer. A damaged file may claim any length.
void LmdbEngine::_followMap() {
    const std::size_t before = _mapSize();
    _setMapSize(0);
    if (_mapSize() <= before) throw EngineError("it is damaged");
}

}  // namespace lumivard::platform::stores
