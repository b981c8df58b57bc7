#include "stores/postgres/PostgresEngine.h"

#include <algorithm>
#include <utility>

#include "stores/postgres/Schema.h"

namespace lumivard::platform::stores {

using namespace postgres;

namespace {

constexpr char kFind[] = "SELECT id, epoch, next_off, version FROM lvp_store WHERE name = $1";
constexpr char kBegin[] = "BEGIN";
constexpr char kBeginReading[] = "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY";
constexpr char kCommit[] = "COMMIT";
constexpr char kRollBack[] = "ROLLBACK";
constexpr char kLock[] = "SELECT epoch, next_off, version, low_epoch FROM lvp_store WHERE id = $1 FOR UPDATE";
constexpr char kPeek[] = "SELECT epoch, next_off, version, low_epoch FROM lvp_store WHERE id = $1";
constexpr char kChanged[] = "SELECT DISTINCT unnest(offs) FROM lvp_change WHERE store = $1 AND epoch > $2 ORDER BY 1";
constexpr char kLoad[] = "SELECT body FROM lvp_record WHERE store = $1 AND off = $2 ORDER BY chunk";
constexpr char kErase[] = "DELETE FROM lvp_record WHERE store = $1 AND off = ANY($2)";
constexpr char kPut[] =
    "INSERT INTO lvp_record(store, off, chunk, body) SELECT $1, * FROM unnest($2::bigint[], $3::int[], $4::bytea[]) ON "
    "CONFLICT(store, off, chunk) DO UPDATE SET body = EXCLUDED.body";
constexpr char kNote[] = "INSERT INTO lvp_change(store, epoch, writer, offs) VALUES($1, $2, $3, $4)";
constexpr char kMove[] = "UPDATE lvp_store SET epoch = $2, next_off = $3, version = $4 WHERE id = $1";
constexpr char kWriter[] = "SELECT writer FROM lvp_change WHERE store = $1 AND epoch = $2";

constexpr char kFenced[] = "23505";  // a key that there is already

}  // namespace

/// A batch as it is sent, which may have to be sent again.
struct PostgresEngine::tPrepared {
    Header header;
    std::int64_t token;
    std::vector<std::int64_t> changed;   // all offsets
    std::vector<std::int64_t> outdated;  // of records that are gone, or have fewer chunks than before
    std::vector<std::int64_t> offsets;   // of each chunk
    std::vector<std::int32_t> chunks;
    std::vector<std::vector<std::byte>> copies;
    std::vector<std::span<const std::byte>> bodies;
};

PostgresEngine::PostgresEngine(Settings settings, tMode mode) : _settings(std::move(settings)), _mode(mode) {
    _connect(_until());
}

void PostgresEngine::_connect(tTime until) {
    _inTransaction = false;
    _connection.emplace(_settings.location, until);
    const tStatement find{kFind, {text(_settings.store)}};
    const Rows found = _connection->run(std::span(&find, 1), until).front();
    if (found.count() == 0) throw EngineError("there is no store \"" + _settings.store + "\" in the database");
    if (_store != 0) return;
    _store = found.number(0, 0);
    _epoch = found.number(0, 1);
    _header = {static_cast<unsigned long long>(found.number(0, 2)), static_cast<unsigned int>(found.number(0, 3))};
}

Engine::Header PostgresEngine::header() {
    return _header;
}

// Whatever a transaction that cannot be used was begun for, it is ended.
std::optional<Engine::News> PostgresEngine::guardTaken() {
    try {
        return _take();
    } catch (...) {
        _inTransaction = true;
        guardReleased();
        throw;
    }
}

// A connection that was lost meanwhile is made anew, since nothing is under way on it.
std::optional<Engine::News> PostgresEngine::_take() {
    const tTime until = _until();
    const std::int64_t known = _epoch;
    News news;
    if (_connection) {
        try {
            news = _begin(until);
            return _epoch == known ? std::nullopt : std::optional(std::move(news));
        } catch (const ConnectionLost&) {
            _connection.reset();
        }
    }
    _connect(until);
    news = _begin(until);
    return _epoch == known ? std::nullopt : std::optional(std::move(news));
}

Engine::News PostgresEngine::_begin(tTime until) {
    const bool writes = _mode == tMode::kWrite;
    const tStatement statements[] = {{writes ? kBegin : kBeginReading, {}},
                                     {writes ? kLock : kPeek, {number(_store)}},
                                     {kChanged, {number(_store), number(_epoch)}}};
    const std::vector<Rows> rows = _connection->run(statements, until);
    _inTransaction = true;
    if (rows[1].count() == 0) throw EngineError("the store is not there any more");
    const std::int64_t epoch = rows[1].number(0, 0);
    if (epoch < _epoch) throw EngineError("the server is behind what was seen of the store: it may be one of before");
    News news;
    news.header = {static_cast<unsigned long long>(rows[1].number(0, 1)),
                   static_cast<unsigned int>(rows[1].number(0, 2))};
    news.everything = _epoch < rows[1].number(0, 3);
    for (std::size_t i = 0; i < rows[2].count(); ++i) {
        news.offsets.push_back(static_cast<unsigned int>(rows[2].number(i, 0)));
        _long.erase(news.offsets.back());
    }
    if (news.everything) _long.clear();
    _epoch = epoch;
    _header = news.header;
    return news;
}

void PostgresEngine::guardReleased() noexcept {
    if (!std::exchange(_inTransaction, false) || !_connection) return;
    try {
        const tStatement end{kRollBack, {}};
        _connection->run(std::span(&end, 1), _until());
    } catch (...) {
        _connection.reset();  // which ends the transaction as well
    }
}

std::optional<std::span<const std::byte>> PostgresEngine::load(unsigned int offset) {
    if (!_inTransaction) throw EngineError("there is no connection to the server");
    const tStatement statement{kLoad, {number(_store), number(offset)}};
    const Rows rows = _connection->run(std::span(&statement, 1), _until()).front();
    if (rows.count() == 0) return std::nullopt;
    _loaded.clear();
    for (std::size_t i = 0; i < rows.count(); ++i) {
        const auto bytes = rows.bytes(i, 0);
        _loaded.insert(_loaded.end(), bytes.begin(), bytes.end());
    }
    if (rows.count() > 1) _long[offset] = static_cast<std::int32_t>(rows.count());
    return std::span<const std::byte>(_loaded);
}

PostgresEngine::tPrepared PostgresEngine::_prepare(const Batch& batch) {
    tPrepared made;
    made.header = batch.header;
    made.token = static_cast<std::int64_t>(std::uint64_t{_random()} << 32 | _random());
    for (const unsigned int offset : batch.offsets) {
        made.changed.push_back(offset);
        const Change change = batch.change(offset);
        const std::size_t count = std::max<std::size_t>(1, (change.bytes.size() + kChunk - 1) / kChunk);
        const auto before = _long.find(offset);
        if (change.erased || (before != _long.end() && static_cast<std::size_t>(before->second) > count)) {
            made.outdated.push_back(offset);
        }
        for (std::size_t chunk = 0; !change.erased && chunk < count; ++chunk) {
            made.offsets.push_back(offset);
            made.chunks.push_back(static_cast<std::int32_t>(chunk));
            const std::size_t begin = chunk * kChunk;
            made.bodies.push_back(
                change.bytes.subspan(begin, std::min<std::size_t>(kChunk, change.bytes.size() - begin)));
        }
        if (change.erased || count == 1) {
            _long.erase(offset);
        } else {
            _long[offset] = static_cast<std::int32_t>(count);
        }
    }
    return made;
}

void PostgresEngine::commit(const Batch& batch) {
    if (!_inTransaction) throw EngineError("there is no connection to the server");
    const tPrepared made = _prepare(batch);
    const tTime until = _until();
    try {
        _send(made, until);
    } catch (const ConnectionLost&) {
        _settle(made, until);
    }
    ++_epoch;
    _header = batch.header;
}

void PostgresEngine::_send(const tPrepared& made, tTime until) {
    std::vector<tStatement> statements;
    if (!made.outdated.empty()) statements.push_back({kErase, {number(_store), numbers(made.outdated)}});
    if (!made.offsets.empty()) {
        statements.push_back({kPut, {number(_store), numbers(made.offsets), places(made.chunks), blobs(made.bodies)}});
    }
    statements.push_back({kNote, {number(_store), number(_epoch + 1), number(made.token), numbers(made.changed)}});
    statements.push_back({kMove,
                          {number(_store), number(_epoch + 1), number(static_cast<std::int64_t>(made.header.extent)),
                           number(made.header.version)}});
    statements.push_back({kCommit, {}});
    _inTransaction = false;
    try {
        _connection->run(statements, until);
    } catch (const Refused& refusal) {
        _inTransaction = true;  // to be rolled back
        if (refusal.state() == kFenced) throw EngineConflict("somebody else has changed the store in between");
        throw;
    }
    if (_connection->warned()) throw ConnectionLost("the server has warned that the commit may not be durable");
}

// Whether a commit was done of which no answer came. Who holds the store's row knows that nobody is at work on it any
// more, the server's own process of the old connection included.
void PostgresEngine::_settle(const tPrepared& made, tTime until) {
    const std::int64_t known = _epoch;
    for (;;) {
        try {
            _connection.reset();
            _connect(until);
            const tStatement statements[] = {
                {kBegin, {}}, {kLock, {number(_store)}}, {kWriter, {number(_store), number(known + 1)}}};
            const std::vector<Rows> rows = _connection->run(statements, until);
            _inTransaction = true;
            const Rows& writer = rows[2];
            if (writer.count() != 0 && writer.number(0, 0) == made.token) {
                guardReleased();
                return;
            }
            if (rows[1].count() == 0 || rows[1].number(0, 0) != known) {
                guardReleased();
                throw EngineConflict("the connection was lost, and somebody else has changed the store since");
            }
            _send(made, until);
            return;
        } catch (const ConnectionLost& lost) {
            if (std::chrono::steady_clock::now() < until) continue;
            throw EngineError(std::string("it is not known whether the commit was done: ") + lost.what());
        }
    }
}

}  // namespace lumivard::platform::stores
