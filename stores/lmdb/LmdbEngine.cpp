#include "stores/lmdb/LmdbEngine.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/FileCreation.h"
#include "stores/lmdb/HeaderFormat.h"
#include "stores/lmdb/OlderMeta.h"
#include "stores/lmdb/StoredValue.h"
#include "stores/lmdb/Verification.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;

constexpr unsigned long long kSmallestMap = 1ULL << 30;  // address space, not memory

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

std::span<const std::byte> bytesOf(const MDB_val& value) {
    return {static_cast<const std::byte*>(value.mv_data), value.mv_size};
}

}  // namespace

LmdbEngine::LmdbEngine(const fs::path& path, tMode mode, const Settings& settings) : _mode(mode), _process(::getpid()) {
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
    if (settings.verify || lmdb::isShort(report)) lmdb::requireSound(verify(false));
    _openDatabase();
}

FileReport LmdbEngine::verify(bool values) {
    constexpr int kMostTries = 100;
    for (int tries = 0; tries < kMostTries; ++tries) {
        if (auto report = lmdb::verifyAll(_file->descriptor(), mdb_txn_id(_snapshot.get()), values)) return *report;
        _renew();  // two commits have come since the snapshot was taken
    }
    throw EngineError("others change it faster than it can be examined");
}

void LmdbEngine::forEachRecord(const std::function<void(std::uint64_t, std::span<const std::byte>)>& visit) {
    _requireUsable();
    const lmdb::Cursor cursor = lmdb::openCursor(_snapshot, _records);
    MDB_val keyBytes{};
    MDB_val value{};
    int status = mdb_cursor_get(cursor.get(), &keyBytes, &value, MDB_FIRST);
    for (; status == MDB_SUCCESS; status = mdb_cursor_get(cursor.get(), &keyBytes, &value, MDB_NEXT)) {
        std::uint64_t key = 0;
        std::memcpy(&key, keyBytes.mv_data, std::min(keyBytes.mv_size, sizeof key));
        if (key != header::kKey) visit(key, storedValue::contents(key, bytesOf(value), _format));
    }
    if (status != MDB_NOTFOUND) lmdb::check(status);
}

LmdbEngine::~LmdbEngine() {
    if (::getpid() == _process) return;
    // A child made by fork(): what it would tidy up here is shared with its parent, which goes on using it.
    static_cast<void>(_snapshot.release());
    static_cast<void>(_environment.release());
}

Engine::Header LmdbEngine::header() {
    const auto value = _get(header::kKey);
    if (!value) throw EngineError(header::kMissing);
    return header::decode(*value, value->size()).header;
}

std::optional<std::span<const std::byte>> LmdbEngine::load(unsigned int offset) {
    const auto value = _get(offset);
    if (value) return storedValue::contents(offset, *value, _format);
    _requireGap(offset);
    return std::nullopt;
}

void LmdbEngine::commit(const Batch& batch) {
    _requireUsable();
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
    if (::getpid() != _process) throw EngineError("it was opened by the parent of this process and is of no use here");
    if (!_mapped) throw EngineError("its file could not be mapped into memory");
}

std::optional<std::span<const std::byte>> LmdbEngine::_get(std::uint64_t key) const {
    _requireUsable();
    MDB_val keyBytes{sizeof key, &key};
    MDB_val value{};
    const int status = mdb_get(_snapshot.get(), _records, &keyBytes, &value);
    if (status == MDB_NOTFOUND) return std::nullopt;
    lmdb::check(status);
    return bytesOf(value);
}

// A record whose key was changed by something else is not found by its number. It lies where that number would be, and
// has a checksum that its new key does not fit: so both neighbours of a record that is missing have to be sound.
void LmdbEngine::_requireGap(std::uint64_t key) {
    if (_gap.first <= key && key < _gap.second) return;
    const lmdb::Cursor cursor = lmdb::openCursor(_snapshot, _records);
    MDB_val keyBytes{sizeof key, &key};
    MDB_val value{};
    const auto soundKey = [&] {
        std::uint64_t found = 0;
        std::memcpy(&found, keyBytes.mv_data, std::min(keyBytes.mv_size, sizeof found));
        storedValue::contents(found, bytesOf(value), _format);
        return found;
    };
    std::pair<std::uint64_t, std::uint64_t> gap{0, 0};
    lmdb::check(mdb_cursor_get(cursor.get(), &keyBytes, &value, MDB_SET_RANGE));  // there is always the header
    gap.second = soundKey();
    const int status = mdb_cursor_get(cursor.get(), &keyBytes, &value, MDB_PREV);
    if (status == MDB_SUCCESS) gap.first = soundKey() + 1;
    if (status != MDB_NOTFOUND) lmdb::check(status);
    if (key < gap.first || key >= gap.second) throw EngineError("it is damaged: its records are out of order");
    _gap = gap;
}

// One attempt at a whole batch. Gives LMDB's status: with any but MDB_SUCCESS nothing has been written.
int LmdbEngine::_write(const Batch& batch) {
    lmdb::Transaction transaction = lmdb::begin(_environment, 0);
    const auto put = [&](std::uint64_t key, std::span<const std::byte> bytes) {
        return lmdb::put(transaction, _records, key, bytes, _format);
    };
    const auto remove = [&](std::uint64_t key) {
        MDB_val keyBytes{sizeof key, &key};
        const int status = mdb_del(transaction.get(), _records, &keyBytes, nullptr);
        return status == MDB_NOTFOUND ? MDB_SUCCESS : status;
    };
    for (const Change& change : batch.changes) {
        const int status = change.erased ? remove(change.offset) : put(change.offset, change.bytes);
        if (status != MDB_SUCCESS) return status;
    }
    const auto value = header::encode({batch.header, mdb_txn_id(transaction.get()), _format});
    if (const int status = put(header::kKey, value); status != MDB_SUCCESS) return status;
    MDB_stat statistics = {};
    lmdb::check(mdb_stat(transaction.get(), _records, &statistics));
    const lmdb::OlderMeta older(_file->descriptor(), mdb_txn_id(transaction.get()), statistics.ms_psize);
    const int status = lmdb::commit(std::move(transaction));
    if (status != MDB_SUCCESS) older.restore();
    return status;
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
}

// Moves the snapshot to the last commit. A reader's map follows when the writer has outgrown it.
void LmdbEngine::_renew() {
    _gap = {};
    mdb_txn_reset(_snapshot.get());
    int status = mdb_txn_renew(_snapshot.get());
    for (; status == MDB_MAP_RESIZED; status = mdb_txn_renew(_snapshot.get())) _followMap();
    lmdb::check(status);
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
