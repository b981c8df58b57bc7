#include "stores/postgres/PostgresEngine.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "stores/postgres/Hosts.h"
#include "stores/postgres/Schema.h"
#include "stores/postgres/Statements.h"

namespace lumivard::platform::stores {

using namespace pq;

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr char kNoTable[] = "42P01";
constexpr char kLocked[] = "55P03";  // after a wait that was too long

constexpr char kWaited[] = "the server did not answer in time: somebody else may have its guard";

constexpr milliseconds kLongestPause{320};  // between two attempts to reach a server

// For how long a connection on which a transaction is kept is taken for alive when it was found so.
constexpr milliseconds kTrust{1};

// Records that are read ahead of one that was asked for, and the most when one after the other is.
constexpr std::int64_t kAhead = 32;
constexpr std::int64_t kMostAhead = 1024;

// Records that one statement asks for.
constexpr std::size_t kMostAtOnce = 1000;

constexpr char kOdd[] = "what the server has of the store is not as it should be";

// A number that has 32 bits without a sign.
unsigned int smallNumber(const Rows& rows, std::size_t row, int column) {
    const std::int64_t number = rows.number(row, column);
    if (number < 0 || number > std::int64_t{UINT32_MAX}) throw EngineError(kOdd);
    return static_cast<unsigned int>(number);
}

unsigned int offsetOf(const Rows& rows, std::size_t row) {
    return smallNumber(rows, row, 0);
}

// From the column of the next offset on.
Engine::Header headerOf(const Rows& store, int column) {
    return {smallNumber(store, 0, column), smallNumber(store, 0, column + 1)};
}

}  // namespace

// Does something for which a connection is needed, on another one where that is lost, as long as there is time. Servers
// that cannot be reached are left in peace longer and longer. That the deadline has ended an attempt says less than why
// the one before has failed.
template <class Attempt>
auto PostgresEngine::_persist(tTime until, Attempt attempt) {
    std::optional<ConnectionLost> before;
    milliseconds pause = kPause;
    for (bool isFirst = true;; isFirst = false) {
        try {
            if (!_connection) _connect(until);
            return attempt();
        } catch (const ConnectionLost& lost) {
            const bool wasThere = isFirst && _connection.has_value();
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
    if (_id != 0) {
        _refuseLoss(*best);
        _state.timeline = best->state.timeline;
    } else {
        _id = best->store;
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
                                         {sql::kWriter, {number(_id), number(_state.epoch)}}};
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
    answer.header = headerOf(store, 4);
    if (found[1].count() != 0) answer.knownToken = found[1].number(0, 0);
    return answer;
}

void PostgresEngine::_refuseLayout(std::int64_t layout) {
    if (layout == 0 || layout == kLayout) return;
    throw EngineError("it was written on a machine with another byte order or width of wide characters");
}

// A server has to have all that was seen of the store. What has become too old to be told apart is taken for the same.
void PostgresEngine::_refuseLoss(const tAnswer& answer) const {
    if (answer.store != _id) throw EngineError("the store is not there any more");
    if (answer.state.timeline < _state.timeline || answer.state.epoch < _state.epoch) {
        throw ConnectionLost("the server is behind what was seen of the store");
    }
    const bool isSame = answer.state.epoch == _state.epoch && answer.token == _token;
    const bool isLater = answer.state.epoch > _state.epoch &&
                         (_state.epoch == 0 || _state.epoch <= answer.low || answer.knownToken == _token);
    if (!isSame && !isLater) throw ConnectionLost("the server has another history than what was seen of the store");
}

// --- Guards

/// What a transaction begins with: the store, what has changed since it was seen, and some of that.
struct PostgresEngine::tBegun {
    Rows store;
    Rows changed;
    Rows renewed;
};

std::optional<Engine::News> PostgresEngine::guardTaken() {
    _refuseChild();
    bool asked = false;
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
            if (!wasAsked || _state.epoch != known) _since = steady_clock::now();
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

// In three pipelines, so that it shows whether the server hangs, somebody else has the guard, or much has changed.
void PostgresEngine::_postBegin(std::int64_t known) {
    const bool writes = _writes();
    const tStatement begin{writes ? sql::kBegin : sql::kBeginReading, {}};
    const tStatement lock{writes ? sql::kLock : sql::kPeek, {number(_id)}};
    const tStatement news[] = {{sql::kChanged, {number(_id), number(known)}},
                               {sql::kRenewed, {number(_id), number(known)}}};
    _connection->post(std::span(&begin, 1), _patience());
    _connection->post(std::span(&lock, 1), _patience());
    _connection->post(news, _patience());
}

PostgresEngine::tBegun PostgresEngine::_collectBegin(tTime until) {
    _connection->drain(3, {until});
    _connection->collect({until});
    const Rows store = [&] {
        try {
            return _connection->collect({until}).front();
        } catch (const ConnectionLost&) {
            if (steady_clock::now() < until || !_writes()) throw;
            throw ConnectionLost(kWaited);
        } catch (const Refused& refusal) {
            if (refusal.state() == kLocked) throw EngineError(kWaited);
            throw;
        }
    }();
    const std::vector<Rows> news = _connection->collect(_patience());
    return {store, news[0], news[1]};
}

Engine::News PostgresEngine::_newsOf(const tBegun& begun) {
    const Rows& store = begun.store;
    if (store.count() == 0) throw EngineError("the store is not there any more");
    if (store.number(0, 0) < _state.epoch) throw ConnectionLost("the server is behind what was seen of the store");
    _refuseLayout(store.number(0, 5));
    News news;
    news.header = headerOf(store, 3);
    news.everything = _state.epoch < store.number(0, 2);
    for (std::size_t i = 0; i < begun.changed.count(); ++i) {
        news.offsets.push_back(offsetOf(begun.changed, i));
        _long.erase(news.offsets.back());
    }
    for (std::size_t i = 0; i < begun.renewed.count(); ++i) {
        news.records.push_back({offsetOf(begun.renewed, i), begun.renewed.bytes(i, 1)});
    }
    if (news.everything) _long.clear();
    _news = begun.renewed;  // whose bytes the news show
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
        const tTime keepUntil = _since + _settings.keep;
        const bool keeps = _writes() && _begun && !_overtaken && steady_clock::now() < keepUntil;
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
        try {
            if (!_begun) _resume();
            return read();
        } catch (const Refused&) {
            _drop();  // with the transaction, of which nothing is left
            throw;
        }
    });
}

void PostgresEngine::_resume() {
    const bool writes = _writes();
    const tStatement statements[] = {{writes ? sql::kBegin : sql::kBeginReading, {}},
                                     {writes ? sql::kLock : sql::kPeek, {number(_id)}}};
    const Rows store = _connection->run(statements, _patience())[1];
    _begun = true;
    if (store.count() == 1 && store.number(0, 0) == _state.epoch && store.number(0, 1) == _token) return;
    _overtaken = true;
    throw EngineError(kOvertaken);
}

std::optional<std::span<const std::byte>> PostgresEngine::load(unsigned int offset) {
    const tStatement statement{sql::kLoad, {number(_id), number(offset)}};
    const Rows rows = _read([&] { return _connection->run(std::span(&statement, 1), _patience()).front(); });
    return _whole(offset, rows);
}

// Of a record's chunks the whole.
std::optional<std::span<const std::byte>> PostgresEngine::_whole(unsigned int offset, const Rows& rows) {
    _long.erase(offset);
    if (rows.count() == 0) return std::nullopt;
    _loaded.clear();
    for (std::size_t i = 0; i < rows.count(); ++i) {
        const auto bytes = rows.bytes(i, 1);
        const bool isLast = i + 1 == rows.count();
        if (smallNumber(rows, i, 0) != i || (isLast ? bytes.size() > kChunk : bytes.size() != kChunk)) {
            throw EngineError("of its parts some are missing, or not as they were written");
        }
        _loaded.insert(_loaded.end(), bytes.begin(), bytes.end());
    }
    if (rows.count() > 1) _long[offset] = static_cast<std::int32_t>(rows.count());
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
        if (row != rows.count()) throw EngineError(kOdd);
    };
    if (offsets.size() == 1) {
        // Records that were made one after the other are often asked for so: the more, the longer that goes on.
        const unsigned int offset = offsets.front();
        const auto extent = static_cast<std::int64_t>(_header.extent);
        _ahead = offset == _nextAhead ? std::clamp(_ahead * 2, kAhead, kMostAhead) : kAhead;
        _nextAhead = offset + static_cast<unsigned int>(_ahead) + 1;
        const tStatement statements[] = {{sql::kLoad, {number(_id), number(offset)}},
                                         {sql::kNear, {number(_id), number(offset), number(offset + _ahead)}}};
        const std::vector<Rows> rows = _read([&] { return _connection->run(statements, _patience()); });
        if (const auto bytes = _whole(offset, rows[0])) take({offset, *bytes});
        std::vector<unsigned int> near;
        for (auto next = std::int64_t{offset} + 1; next <= offset + _ahead && next < extent; ++next) {
            near.push_back(static_cast<unsigned int>(next));
        }
        takeAll(rows[1], near);
        return;
    }
    for (std::size_t begin = 0; begin < offsets.size(); begin += kMostAtOnce) {
        const auto some = offsets.subspan(begin, std::min(kMostAtOnce, offsets.size() - begin));
        std::vector<std::int64_t> asked(some.begin(), some.end());
        std::sort(asked.begin(), asked.end());
        asked.erase(std::unique(asked.begin(), asked.end()), asked.end());
        const tStatement statement{sql::kSeveral, {number(_id), numbers(asked)}};
        takeAll(_read([&] { return _connection->run(std::span(&statement, 1), _patience()).front(); }), asked);
    }
}

}  // namespace lumivard::platform::stores
