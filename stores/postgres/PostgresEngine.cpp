#include "stores/postgres/PostgresEngine.h"

#include <unistd.h>

#include <algorithm>
#include <bit>
#include <utility>

#include "stores/postgres/Hosts.h"
#include "stores/postgres/Schema.h"
#include "stores/postgres/Statements.h"

namespace lumivard::platform::stores {

using namespace pq;

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr char kFenced[] = "23505";  // a key that there is already
constexpr char kNoTable[] = "42P01";
constexpr char kLocked[] = "55P03";  // after a wait that was too long

constexpr char kWaited[] = "the server did not answer in time: somebody else may have its guard";

constexpr char kOvertaken[] = "the connection was lost, and somebody else has changed the store since";

// Between two attempts to reach a server.
constexpr milliseconds kPause{20};
constexpr milliseconds kLongestPause{320};

// For how long a connection on which a transaction is kept is taken for alive when it was found so.
constexpr milliseconds kTrust{1};

// Records that are read ahead of one that was asked for, and the most when one after the other is.
constexpr std::int64_t kAhead = 32;
constexpr std::int64_t kMostAhead = 1024;

// What goes into one statement: some rows, and some bytes beyond which no other row comes.
constexpr std::size_t kMostRows = 1000;
constexpr std::size_t kMostBytes = 1 << 20;

// How often what is not remembered any more is deleted from the list of changes.
constexpr std::int64_t kTrimEvery = 256;

// How records lie in the memory of this machine.
constexpr std::int64_t kLayout = 2 * sizeof(wchar_t) + (std::endian::native == std::endian::big ? 1 : 0);

unsigned int offsetOf(const Rows& rows, std::size_t row) {
    return static_cast<unsigned int>(rows.number(row, 0));
}

}  // namespace

// Does something for which a connection is needed, on another one where that is lost, as long as there is time. Servers
// that cannot be reached are left in peace longer and longer. That the deadline has ended an attempt says less than why
// the one before has failed.
template <class Attempt>
auto PostgresEngine::_persist(tTime until, Attempt attempt) {
    std::optional<ConnectionLost> before;
    milliseconds pause = kPause;
    for (;;) {
        try {
            if (!_connection) _connect(until);
            return attempt();
        } catch (const ConnectionLost& lost) {
            const bool wasThere = _connection.has_value();
            _drop();
            if (!before || steady_clock::now() < until) before = lost;
            if (steady_clock::now() + pause >= until) throw *before;
            if (wasThere) continue;
        } catch (const EngineError&) {
            throw;
        } catch (...) {
            _drop();  // of which an answer may be half read
            throw;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(2 * pause, kLongestPause);
    }
}

PostgresEngine::PostgresEngine(Settings settings, tMode mode)
    : _settings(std::move(settings)), _mode(mode), _process(::getpid()) {
    // Of several servers one may be about to become the primary.
    const tTime until = _patience().until;
    const bool isAlone = _settings.location.find(',') == std::string::npos;
    isAlone ? _connect(until) : _persist(until, [] {});
}

PostgresEngine::~PostgresEngine() {
    if (_process != ::getpid()) {
        // In a child made by fork() there is no such thread, which its traces wait for, and the connection is its
        // parent's.
        static_cast<void>(_watch.release());
        if (_connection) static_cast<void>(new Connection(std::move(*_connection)));
        return;
    }
    if (!_watch->thread.joinable()) return;
    {
        const std::lock_guard lock(_watch->mutex);
        _over = true;
    }
    _watch->wake.notify_all();
    _watch->thread.join();
}

void PostgresEngine::_refuseChild() const {
    if (_process != ::getpid()) throw EngineError("it was opened by another process, of which this one is a child");
}

// --- Servers

/// What a server says of the store.
struct PostgresEngine::tAnswer {
    tState state;
    std::int64_t store;
    std::int64_t token;
    std::int64_t low;
    std::optional<std::int64_t> knownToken;  // of the epoch that was seen
    Header header;
};

// Goes to the server with the newest state, and sets out from there if the store was not seen before.
void PostgresEngine::_connect(tTime until) {
    std::vector<Connection> servers = connectToAll(_settings.location, until);
    std::optional<tAnswer> best;
    Connection* chosen = nullptr;
    std::string reasons;
    std::exception_ptr failure;
    for (std::size_t i = 0; i < servers.size(); ++i) {
        // None takes the time of those that come after it.
        const auto left = until - steady_clock::now();
        const tTime end = steady_clock::now() + left / static_cast<int>(servers.size() - i);
        try {
            tAnswer answer = _ask(servers[i], end);
            if (best && answer.state <= best->state) continue;
            best = std::move(answer);
            chosen = &servers[i];
        } catch (const ConnectionLost& lost) {
            if (!reasons.empty()) reasons += "; ";
            reasons += lost.what();
        } catch (const EngineError&) {
            failure = std::current_exception();
        }
    }
    if (!best && failure) std::rethrow_exception(failure);
    if (!best) throw ConnectionLost(reasons);
    if (_store != 0) {
        _refuseLoss(*best);
        _state.timeline = best->state.timeline;
    } else {
        _store = best->store;
        _state = best->state;
        _token = best->token;
        _header = best->header;
    }
    _connection = std::move(*chosen);
}

// Refuses a server that takes no changes, since it may be behind.
PostgresEngine::tAnswer PostgresEngine::_ask(Connection& connection, tTime until) const {
    const tStatement ask[] = {{sql::kReadOnly, {}}, {sql::kVersion, {}}};
    const std::vector<Rows> about = connection.run(ask, {until});
    if (about[0].text(0, 0) == "on") throw ConnectionLost("the server takes no changes");
    tAnswer answer{};
    if (isPostgres(about[1].text(0, 0))) {
        // The server's own process of a connection that is gone would wait on.
        const std::string most = std::to_string(_settings.deadline.count());
        const tStatement statements[] = {{sql::kTimeline, {}}, {sql::kWaitAtMost, {text(most)}}};
        answer.state.timeline = connection.run(statements, {until}).front().number(0, 0);
    }
    const auto find = [&] {
        const tStatement statements[] = {{sql::kFind, {text(_settings.store)}},
                                         {sql::kWriter, {number(_store), number(_state.epoch)}}};
        try {
            return connection.run(statements, {until});
        } catch (const Refused& refusal) {
            if (refusal.state() != kNoTable) throw;
            throw EngineError("there are no stores in the database");
        }
    };
    const std::vector<Rows> found = find();
    const Rows& store = found[0];
    if (store.count() == 0) throw EngineError("there is no store \"" + _settings.store + "\" in the database");
    if (store.number(0, 6) > kFormat) throw EngineError("it was made by a newer version");
    _refuseLayout(store.number(0, 7));
    answer.store = store.number(0, 0);
    answer.state.epoch = store.number(0, 1);
    answer.token = store.number(0, 2);
    answer.low = store.number(0, 3);
    answer.header = {static_cast<unsigned long long>(store.number(0, 4)),
                     static_cast<unsigned int>(store.number(0, 5))};
    if (found[1].count() != 0) answer.knownToken = found[1].number(0, 0);
    return answer;
}

void PostgresEngine::_refuseLayout(std::int64_t layout) {
    if (layout == 0 || layout == kLayout) return;
    throw EngineError("it was written on a machine with another byte order or width of wide characters");
}

// A server has to have all that was seen of the store. What has become too old to be told apart is taken for the same.
void PostgresEngine::_refuseLoss(const tAnswer& answer) const {
    if (answer.store != _store) throw EngineError("the store is not there any more");
    if (answer.state.timeline < _state.timeline || answer.state.epoch < _state.epoch) {
        throw ConnectionLost("the server is behind what was seen of the store");
    }
    const bool isSame = answer.state.epoch == _state.epoch && answer.token == _token;
    const bool isLater = answer.state.epoch > _state.epoch &&
                         (_state.epoch == 0 || _state.epoch <= answer.low || answer.knownToken == _token);
    if (!isSame && !isLater) throw ConnectionLost("the server has another history than what was seen of the store");
}

// --- Guards

std::optional<Engine::News> PostgresEngine::guardTaken() {
    _refuseChild();
    bool asked = false;
    tTime askedAt;
    {
        const std::lock_guard lock(_watch->mutex);
        const tTime now = steady_clock::now();
        if (_stage == tStage::kKept && now < _keepUntil) {
            if (now - _lookedAt < kTrust || _connection->isQuiet()) {
                if (now - _lookedAt >= kTrust) _lookedAt = now;
                _stage = tStage::kOurs;
                return std::nullopt;
            }
            _drop();
        }
        asked = _stage == tStage::kAsked && _connection;
        askedAt = _takenAt;
        if (_stage == tStage::kKept && _connection) _end();
        _stage = tStage::kOurs;
        _overtaken = false;
    }
    const std::int64_t known = _state.epoch;
    const tTime until = _patience().until;
    try {
        News news = _persist(until, [&] {
            const bool wasAsked = std::exchange(asked, false);
            if (!wasAsked) _postBegin(_state.epoch);
            News made = _newsOf(_collectBegin(until));
            _takenAt = wasAsked ? askedAt : steady_clock::now();
            return made;
        });
        if (_state.epoch == known) return std::nullopt;
        return news;
    } catch (...) {
        const std::lock_guard lock(_watch->mutex);
        _end();
        throw;
    }
}

// In two pipelines, so that it shows whether the server hangs or somebody else has the guard.
void PostgresEngine::_postBegin(std::int64_t known) {
    const bool writes = _mode == tMode::kWrite;
    const tStatement begin{writes ? sql::kBegin : sql::kBeginReading, {}};
    const tStatement statements[] = {{writes ? sql::kLock : sql::kPeek, {number(_store)}},
                                     {sql::kChanged, {number(_store), number(known)}},
                                     {sql::kRenewed, {number(_store), number(known)}}};
    _connection->post(std::span(&begin, 1), _patience());
    _connection->post(statements, _patience());
}

std::vector<Rows> PostgresEngine::_collectBegin(tTime until) {
    _connection->drain(2, {until});
    _connection->collect({until});
    try {
        return _connection->collect({until});
    } catch (const ConnectionLost&) {
        if (steady_clock::now() < until || _mode == tMode::kRead) throw;
        throw ConnectionLost(kWaited);
    } catch (const Refused& refusal) {
        if (refusal.state() == kLocked) throw EngineError(kWaited);
        throw;
    }
}

Engine::News PostgresEngine::_newsOf(const std::vector<Rows>& rows) {
    const Rows& store = rows[0];
    if (store.count() == 0) throw EngineError("the store is not there any more");
    if (store.number(0, 0) < _state.epoch) throw ConnectionLost("the server is behind what was seen of the store");
    _refuseLayout(store.number(0, 5));
    _news = rows;  // whose bytes the news show
    News news;
    news.header = {static_cast<unsigned long long>(store.number(0, 3)), static_cast<unsigned int>(store.number(0, 4))};
    news.everything = _state.epoch < store.number(0, 2);
    for (std::size_t i = 0; i < rows[1].count(); ++i) {
        news.offsets.push_back(offsetOf(rows[1], i));
        _long.erase(news.offsets.back());
    }
    for (std::size_t i = 0; i < rows[2].count(); ++i) {
        news.records.push_back({offsetOf(rows[2], i), rows[2].bytes(i, 1)});
    }
    if (news.everything) _long.clear();
    _state.epoch = store.number(0, 0);
    _token = store.number(0, 1);
    _header = news.header;
    _begun = true;
    return news;
}

void PostgresEngine::guardReleased() noexcept {
    if (_process != ::getpid()) return;
    const std::lock_guard lock(_watch->mutex);
    if (_stage == tStage::kNone || !_connection) {
        _stage = tStage::kNone;
        return;
    }
    try {
        const tTime keepUntil = _takenAt + _settings.keep;
        const bool keeps = _mode == tMode::kWrite && _begun && !_overtaken && steady_clock::now() < keepUntil;
        if (_stage == tStage::kOurs && !keeps) return _end();
        if (_stage == tStage::kOurs) {
            _stage = tStage::kKept;
            _keepUntil = keepUntil;
        }
        if (!_watch->thread.joinable()) _watch->thread = std::thread([this] { _giveUp(); });
        _active = true;
        if (_keepUntil < _wakesAt) _watch->wake.notify_all();
    } catch (...) {
        _end();
    }
}

void PostgresEngine::_drop() noexcept {
    _connection.reset();
    _begun = false;
}

// Nobody waits for it: it comes before whatever is asked next.
void PostgresEngine::_end() noexcept {
    _stage = tStage::kNone;
    _begun = false;
    if (!_connection) return;
    try {
        const tStatement end{sql::kRollBack, {}};
        _connection->post(std::span(&end, 1), _patience());
    } catch (...) {
        _drop();  // which ends the transaction as well
    }
}

// Looks now and then as long as guards come and go, so that giving one back wakes nobody as a rule.
void PostgresEngine::_giveUp() {
    std::unique_lock lock(_watch->mutex);
    const auto waits = [this] { return _stage == tStage::kAsked || _stage == tStage::kKept; };
    while (!_over) {
        if (waits() && steady_clock::now() >= _keepUntil) _end();
        if (waits()) {
            _wakesAt = _keepUntil;
        } else if (std::exchange(_active, false)) {
            _wakesAt = steady_clock::now() + _settings.keep;
        } else {
            _wakesAt = tTime::max();
        }
        if (_wakesAt == tTime::max()) {
            _watch->wake.wait(lock);
        } else {
            _watch->wake.wait_until(lock, _wakesAt);
        }
    }
}

// --- Records

// Under a guard. Where the connection is lost it goes on with another one, if nobody has stored anything meanwhile.
template <class Read>
auto PostgresEngine::_read(Read read) {
    _refuseChild();
    if (_stage != tStage::kOurs) throw EngineError("there is no connection to the server");
    return _persist(_patience().until, [&] {
        if (_overtaken) throw EngineError(kOvertaken);
        if (!_begun) _resume();
        try {
            return read();
        } catch (const Refused&) {
            _drop();  // with the transaction, of which nothing is left
            throw;
        }
    });
}

void PostgresEngine::_resume() {
    const bool writes = _mode == tMode::kWrite;
    const tStatement statements[] = {{writes ? sql::kBegin : sql::kBeginReading, {}},
                                     {writes ? sql::kLock : sql::kPeek, {number(_store)}}};
    const Rows store = _connection->run(statements, _patience())[1];
    _begun = true;
    if (store.count() == 1 && store.number(0, 0) == _state.epoch && store.number(0, 1) == _token) return;
    _overtaken = true;
    throw EngineError(kOvertaken);
}

std::optional<std::span<const std::byte>> PostgresEngine::load(unsigned int offset) {
    const tStatement statement{sql::kLoad, {number(_store), number(offset)}};
    const Rows rows = _read([&] { return _connection->run(std::span(&statement, 1), _patience()).front(); });
    return _whole(offset, rows);
}

// Of a record's chunks the whole.
std::optional<std::span<const std::byte>> PostgresEngine::_whole(unsigned int offset, const Rows& rows) {
    _long.erase(offset);
    if (rows.count() == 0) return std::nullopt;
    if (rows.count() > 1) _long[offset] = static_cast<std::int32_t>(rows.count());
    _loaded.clear();
    for (std::size_t i = 0; i < rows.count(); ++i) {
        const auto bytes = rows.bytes(i, 0);
        _loaded.insert(_loaded.end(), bytes.begin(), bytes.end());
    }
    return std::span<const std::byte>(_loaded);
}

void PostgresEngine::bring(std::span<const unsigned int> offsets, const std::function<void(const Record&)>& take) {
    // Rows stand for the records that there are, in their order; those of long ones have no bytes.
    const auto takeAll = [&](const Rows& rows, const auto& asked) {
        std::size_t row = 0;
        for (const auto offset : asked) {
            const auto known = static_cast<unsigned int>(offset);
            if (row == rows.count() || offsetOf(rows, row) != known) {
                take({known, {}, true});
            } else if (const std::size_t found = row++; rows.has(found, 1)) {
                take({known, rows.bytes(found, 1)});
            }
        }
    };
    if (offsets.size() == 1) {
        // Records that were made one after the other are often asked for so: the more, the longer that goes on.
        const unsigned int offset = offsets.front();
        const auto extent = static_cast<std::int64_t>(_header.extent);
        _ahead = offset == _nextAhead ? std::clamp(_ahead * 2, kAhead, kMostAhead) : kAhead;
        _nextAhead = offset + static_cast<unsigned int>(_ahead) + 1;
        const tStatement statements[] = {{sql::kLoad, {number(_store), number(offset)}},
                                         {sql::kNear, {number(_store), number(offset), number(offset + _ahead)}}};
        const std::vector<Rows> rows = _read([&] { return _connection->run(statements, _patience()); });
        if (const auto bytes = _whole(offset, rows[0])) take({offset, *bytes});
        std::vector<unsigned int> near;
        for (auto next = std::int64_t{offset} + 1; next <= offset + _ahead && next < extent; ++next) {
            near.push_back(static_cast<unsigned int>(next));
        }
        takeAll(rows[1], near);
        return;
    }
    for (std::size_t begin = 0; begin < offsets.size(); begin += kMostRows) {
        const auto some = offsets.subspan(begin, std::min(kMostRows, offsets.size() - begin));
        std::vector<std::int64_t> asked(some.begin(), some.end());
        std::sort(asked.begin(), asked.end());
        asked.erase(std::unique(asked.begin(), asked.end()), asked.end());
        const tStatement statement{sql::kSeveral, {number(_store), numbers(asked)}};
        takeAll(_read([&] { return _connection->run(std::span(&statement, 1), _patience()).front(); }), asked);
    }
}

// --- Commits

/// A batch as it is sent, which may have to be sent again. The bytes are the core's.
struct PostgresEngine::tPrepared {
    struct tChunk {
        std::int64_t offset;
        std::int32_t number;
        std::span<const std::byte> bytes;
    };

    Header header;
    std::int64_t token;
    std::vector<std::int64_t> changed;                               // all offsets
    std::vector<std::int64_t> erased;                                // of records that are gone
    std::vector<std::pair<std::int64_t, std::int32_t>> cut;          // records that have fewer chunks now
    std::vector<tChunk> chunks;                                      // that differ
    std::vector<std::pair<unsigned int, std::int32_t>> chunkCounts;  // of the records that have several, or had
};

PostgresEngine::tPrepared PostgresEngine::_prepare(const Batch& batch) {
    tPrepared made;
    made.header = batch.header;
    made.token = static_cast<std::int64_t>(std::uint64_t{_random()} << 32 | _random());
    for (const unsigned int offset : batch.offsets) {
        made.changed.push_back(offset);
        const Change change = batch.change(offset);
        const auto known = _long.find(offset);
        const std::uint64_t before = known == _long.end() ? 1 : static_cast<std::uint64_t>(known->second);
        const std::uint64_t size = change.bytes.size();
        const std::uint64_t count = change.erased ? 0 : std::max<std::uint64_t>(1, (size + kChunk - 1) / kChunk);
        if (before > 1 || count > 1) made.chunkCounts.emplace_back(offset, static_cast<std::int32_t>(count));
        if (change.erased) {
            made.erased.push_back(offset);
            continue;
        }
        if (count < before) made.cut.emplace_back(offset, static_cast<std::int32_t>(count));
        for (std::uint64_t chunk = 0; chunk < count; ++chunk) {
            const std::uint64_t begin = chunk * kChunk;
            const std::uint64_t end = std::min<std::uint64_t>(begin + kChunk, size);
            // One that is not full may have been longer.
            const bool isFull = end == begin + kChunk;
            const bool isStored = (isFull && end <= change.from) || begin >= change.to;
            if (before > 1 && chunk < before && isStored) continue;
            made.chunks.push_back({offset, static_cast<std::int32_t>(chunk), change.bytes.subspan(begin, end - begin)});
        }
    }
    return made;
}

void PostgresEngine::commit(const Batch& batch) {
    _refuseChild();
    if (_stage != tStage::kOurs) throw EngineError("there is no connection to the server");
    if (_overtaken) throw EngineConflict(kOvertaken);
    const tPrepared made = _prepare(batch);
    try {
        if (!_connection || !_begun) throw ConnectionLost("the connection was lost");
        _send(made);
    } catch (const ConnectionLost& lost) {
        _settle(made, lost.what());
    }
    for (const auto& [offset, count] : made.chunkCounts) {
        count > 1 ? void(_long[offset] = count) : void(_long.erase(offset));
    }
    ++_state.epoch;
    _token = made.token;
    _header = batch.header;
}

// Where guards are kept, the next transaction is asked for at once: it is begun by the time it is wanted, or when who
// waits for it meanwhile has had it.
void PostgresEngine::_send(const tPrepared& made) {
    const tPatience patience = _patience();
    const std::int64_t epoch = _state.epoch + 1;
    if (!made.erased.empty()) _connection->add({sql::kErase, {number(_store), numbers(made.erased)}}, patience);
    for (const auto& [offset, count] : made.cut) {
        _connection->add({sql::kCut, {number(_store), number(offset), number(count)}}, patience);
    }
    for (std::size_t begin = 0; begin < made.chunks.size();) {
        std::vector<std::int64_t> offsets;
        std::vector<std::int32_t> chunks;
        std::vector<std::span<const std::byte>> bodies;
        std::size_t bytes = 0;
        for (; begin < made.chunks.size() && bodies.size() < kMostRows && bytes < kMostBytes; ++begin) {
            const tPrepared::tChunk& chunk = made.chunks[begin];
            offsets.push_back(chunk.offset);
            chunks.push_back(chunk.number);
            bodies.push_back(chunk.bytes);
            bytes += chunk.bytes.size();
        }
        _connection->add({sql::kPut, {number(_store), numbers(offsets), places(chunks), blobs(bodies)}}, patience);
    }
    _connection->add({sql::kNote, {number(_store), number(epoch), number(made.token), numbers(made.changed)}},
                     patience);
    _connection->add(
        {sql::kMove,
         {number(_store), number(epoch), number(made.token), number(static_cast<std::int64_t>(made.header.extent)),
          number(made.header.version), number(kLayout)}},
        patience);
    if (epoch % std::min<std::int64_t>(kTrimEvery, _settings.history) == 0 && epoch > _settings.history) {
        const std::int64_t low = epoch - _settings.history;
        _connection->add({sql::kTrim, {number(_store), number(low)}}, patience);
        _connection->add({sql::kRaise, {number(_store), number(low)}}, patience);
    }
    _connection->add({sql::kCommit, {}}, patience);
    _connection->send(patience);

    // From here on it may have been done.
    const bool again = _settings.keep.count() > 0;
    bool done = false;
    try {
        if (again) _postBegin(epoch);
        _connection->drain(again ? 3 : 1, patience);
        done = _connection->collect(patience).back().done() == sql::kCommit;
    } catch (const Refused& refusal) {
        _drop();
        if (refusal.state() == kFenced) throw EngineConflict(kOvertaken);
        throw;
    } catch (const std::bad_alloc& failure) {
        throw ConnectionLost(failure.what());
    }
    if (_connection->warned() || !done)
        throw ConnectionLost("the server has warned that the commit may not be durable");
    _begun = false;
    const std::lock_guard lock(_watch->mutex);
    _stage = again ? tStage::kAsked : tStage::kNone;
    _takenAt = steady_clock::now();
    _keepUntil = _takenAt + _settings.keep;
}

// Whether a commit was done of which no answer came. Who holds the store's row knows that nobody is at work on it any
// more, the server's own process of the old connection included. That a commit is seen does not mean that it is on the
// standbys, too: that is sure when one that came after it is.
void PostgresEngine::_settle(const tPrepared& made, std::string reason) {
    const tTime until = _patience().until;
    const std::int64_t known = _state.epoch;
    for (;; std::this_thread::sleep_for(kPause)) {
        try {
            _drop();
            _connect(until);
            const tStatement look[] = {
                {sql::kBegin, {}}, {sql::kLock, {number(_store)}}, {sql::kWriter, {number(_store), number(known + 1)}}};
            const std::vector<Rows> rows = _connection->run(look, {until});
            const Rows& store = rows[1];
            const Rows& writer = rows[2];
            if (writer.count() != 0 && writer.number(0, 0) == made.token) {
                const tStatement again[] = {{sql::kTouch, {number(_store)}}, {sql::kCommit, {}}};
                _connection->run(again, {until});
                if (_connection->warned()) throw ConnectionLost("the server has warned that it may not be durable");
                const std::lock_guard lock(_watch->mutex);
                _stage = tStage::kNone;
                return;
            }
            if (store.count() == 0 || store.number(0, 0) != known) {
                _overtaken = true;
                throw EngineConflict(kOvertaken);
            }
            _send(made);
            return;
        } catch (const ConnectionLost& lost) {
            if (steady_clock::now() < until) reason = lost.what();  // else it was the deadline that ended it
        } catch (...) {
            _drop();
            throw;
        }
        if (steady_clock::now() + kPause >= until) {
            _drop();
            throw EngineError("it is not known whether it was done: " + reason);
        }
    }
}

}  // namespace lumivard::platform::stores
