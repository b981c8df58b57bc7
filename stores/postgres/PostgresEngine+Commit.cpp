// How changes are stored, and what became of a commit of which no answer came.
#include <algorithm>
#include <new>
#include <utility>

#include "stores/postgres/PostgresEngine.h"
#include "stores/postgres/Schema.h"
#include "stores/postgres/Statements.h"

namespace lumivard::platform::stores {

using namespace pq;

namespace {

using std::chrono::steady_clock;

constexpr char kFenced[] = "23505";  // a key that there is already

constexpr char kUnknown[] = "it is not known whether it was done: ";

// What goes into one statement: some rows, and some bytes beyond which no other row comes.
constexpr std::size_t kMostRows = 1000;
constexpr std::size_t kMostBytes = 1 << 20;

// Of all that has changed the numbers are one value, which may take a gigabyte.
constexpr std::size_t kMostRecords = 60'000'000;

// How often what is not remembered any more is deleted from the list of changes.
constexpr std::int64_t kTrimEvery = 256;

}  // namespace

/// A batch as it is sent, which may have to be sent again. The bytes are the core's.
struct PostgresEngine::tPrepared {
    struct tChunk {
        std::int64_t offset;
        std::int32_t number;
        std::span<const std::byte> bytes;
    };

    Header header;
    std::int64_t token;
    bool sent = false;                                           // whether it may have been done
    std::vector<std::int64_t> changed;                           // all offsets
    std::vector<std::int64_t> erased;                            // of records that are gone
    std::vector<std::pair<std::int64_t, std::int32_t>> cut;      // records that have fewer chunks now
    std::vector<tChunk> chunks;                                  // that differ
    std::unordered_map<unsigned int, std::int32_t> chunkCounts;  // of the records that have several, or had
};

PostgresEngine::tPrepared PostgresEngine::_prepare(const Batch& batch) {
    if (batch.offsets.size() > kMostRecords) throw EngineError("more records have changed than one flush can name");
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
        if (before > 1 || count > 1) made.chunkCounts.emplace(offset, static_cast<std::int32_t>(count));
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
    try {
        tPrepared made = _prepare(batch);
        _store(made);
    } catch (const EngineConflict&) {
        throw;
    } catch (...) {
        _hasFailed = true;
        throw;
    }
}

void PostgresEngine::_store(tPrepared& made) {
    _long.reserve(_long.size() + made.chunkCounts.size());
    try {
        if (!_connection || !_begun) throw ConnectionLost("the connection was lost");
        _send(made);
    } catch (const ConnectionLost& lost) {
        _settle(made, lost.what());
    }
    // It is done: nothing may fail from here on.
    while (!made.chunkCounts.empty()) {
        auto counted = made.chunkCounts.extract(made.chunkCounts.begin());
        _long.erase(counted.key());
        if (counted.mapped() > 1) _long.insert(std::move(counted));
    }
    ++_state.epoch;
    _token = made.token;
    _header = made.header;
}

// As one pipeline. What takes long is cut into pieces, of each of which the server says when it is done.
void PostgresEngine::_post(tPrepared& made) {
    const tPatience patience = _patience();
    const std::int64_t epoch = _state.epoch + 1;
    for (std::size_t begin = 0; begin < made.erased.size(); begin += kMostRows) {
        const auto some = std::span(made.erased).subspan(begin, std::min(kMostRows, made.erased.size() - begin));
        _connection->add({sql::kErase, {number(_id), numbers(some)}}, patience);
    }
    for (const auto& [offset, count] : made.cut) {
        _connection->add({sql::kCut, {number(_id), number(offset), number(count)}}, patience);
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
        _connection->add({sql::kPut, {number(_id), numbers(offsets), places(chunks), blobs(bodies)}}, patience);
    }
    _connection->add({sql::kNote, {number(_id), number(epoch), number(made.token), numbers(made.changed)}}, patience);
    _connection->add(
        {sql::kMove,
         {number(_id), number(epoch), number(made.token), number(static_cast<std::int64_t>(made.header.extent)),
          number(made.header.version), number(kLayout)}},
        patience);
    if (epoch % std::min<std::int64_t>(kTrimEvery, _settings.history) == 0 && epoch > _settings.history) {
        const std::int64_t low = epoch - _settings.history;
        _connection->add({sql::kTrim, {number(_id), number(low)}}, patience);
        _connection->add({sql::kRaise, {number(_id), number(low)}}, patience);
    }
    made.sent = true;
    _connection->add({sql::kCommit, {}}, patience);
    _connection->send(patience);
}

// Where guards are kept, the next transaction is asked for at once: it is begun by the time it is wanted, or when who
// waits for it meanwhile has had it.
void PostgresEngine::_send(tPrepared& made) {
    const bool again = steady_clock::now() < _since + _settings.keep;
    bool done = false;
    try {
        _post(made);
        if (again) _postBegin(_state.epoch + 1);
        const tPatience patience = _patience();
        _connection->drain(again ? 4 : 1, patience);
        done = _connection->collect(patience).back().done() == sql::kCommit;
    } catch (const Refused& refusal) {
        _drop();
        if (refusal.state() == kFenced) throw EngineConflict(kOvertaken);
        throw;
    } catch (const std::bad_alloc& failure) {
        _drop();  // a part of it may be on its way
        if (!made.sent) throw;
        throw ConnectionLost(failure.what());
    }
    if (_connection->warned() || !done) {
        throw ConnectionLost("the server has warned that the commit may not be durable");
    }
    _begun = false;
    const std::lock_guard lock(_watch->mutex);
    _stage = again ? tStage::kAsked : tStage::kNone;
    _keepUntil = _since + _settings.keep;
}

// Whether a commit was done of which no answer came. Who holds the store's row knows that nobody is at work on it any
// more, the server's own process of the old connection included. That a commit is seen does not mean that it is on the
// standbys, too: that is sure when one that came after it is.
void PostgresEngine::_settle(tPrepared& made, std::string reason) {
    const tTime until = _patience().until;
    const std::int64_t known = _state.epoch;
    for (;; std::this_thread::sleep_for(kPause)) {
        bool settled = false;
        try {
            _drop();
            _connect(until);
            const tStatement look[] = {
                {sql::kBegin, {}}, {sql::kLock, {number(_id)}}, {sql::kWriter, {number(_id), number(known + 1)}}};
            const std::vector<Rows> rows = _connection->run(look, {until});
            const Rows& store = rows[1];
            const Rows& writer = rows[2];
            if (writer.count() != 0 && writer.number(0, 0) == made.token) {
                const tStatement again[] = {{sql::kTouch, {number(_id)}}, {sql::kCommit, {}}};
                _connection->run(again, {until});
                if (_connection->warned()) throw ConnectionLost("the server has warned that it may not be durable");
                const std::lock_guard lock(_watch->mutex);
                _stage = tStage::kNone;
                return;
            }
            if (store.count() == 0 || store.number(0, 0) != known) {
                settled = true;
                _overtaken = true;
                const bool isForgotten = store.count() != 0 && store.number(0, 2) > known;
                if (made.sent && isForgotten) throw EngineError(std::string(kUnknown) + "too much was stored since");
                throw EngineConflict(kOvertaken);
            }
            settled = true;
            made.sent = false;
            _since = steady_clock::now();
            _send(made);
            return;
        } catch (const ConnectionLost& lost) {
            if (steady_clock::now() < until) reason = lost.what();  // else it was the deadline that ended it
        } catch (const EngineError& error) {
            if (settled) {
                _drop();
                throw;
            }
            reason = error.what();
        } catch (...) {
            _drop();
            throw;
        }
        if (steady_clock::now() + kPause >= until) {
            _drop();
            if (!made.sent) throw EngineConflict("nothing was stored: " + reason);
            throw EngineError(kUnknown + reason);
        }
    }
}

}  // namespace lumivard::platform::stores
