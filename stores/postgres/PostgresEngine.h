#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "lumivard/platform/stores/tMode.h"
#include "stores/engine/Engine.h"
#include "stores/postgres/Connection.h"

namespace lumivard::platform::stores {

/// Keeps records in a PostgreSQL database, for many processes and machines at once; how they lie there is told in
/// Schema.h.
///
/// A guard of a writer is a transaction that holds the store's row, so that there is one writer at a time; that of a
/// reader is one that sees a single state. Each commit makes the next epoch and notes what it has changed, so that
/// others hear of it with their next guard. It also bears a token of its own: where the connection is lost while a
/// commit is under way, the token tells on the next connection whether it was done. Epoch and token together name a
/// state of the store: a server that has not that epoch, or another token for it, has lost something.
///
/// To take a guard is one round trip, and so is to commit; nobody waits for the end of a transaction that has changed
/// nothing. Where guards are kept, the next transaction is asked for along with the commit, and given up when nobody
/// has wanted it for a while; transactions follow each other so for as long as guards are kept, and no longer, so that
/// others get in.
///
/// When it is not known what became of a commit, or the server has refused one, guards are those of a reader from there
/// on: they wait for nobody.
///
/// The server may be silent for the deadline, and no longer. Threads and errors as for `Engine`; a thread of its own
/// gives up what is kept, under the mutex, and touches nothing else.
class PostgresEngine final : public Engine {
public:
    struct Settings {
        std::string location;                      ///< as libpq takes it, without the store
        std::string store;                         ///< the name of the store
        std::chrono::milliseconds deadline{5000};  ///< for each answer, and for settling what became of a commit
        std::chrono::milliseconds keep{0};         ///< for how long guards are kept that follow each other
        std::int64_t history = 10'000;             ///< commits of which it is remembered what they have changed
    };

    /// Connects. Throws `EngineError` where that fails, or where there is no such store.
    PostgresEngine(Settings settings, tMode mode);
    ~PostgresEngine() override;

    bool isShared() const noexcept override { return true; }
    Header header() override { return _header; }
    std::optional<std::span<const std::byte>> load(unsigned int offset) override;
    void bring(std::span<const unsigned int> offsets, const std::function<void(const Record&)>& take) override;
    void commit(const Batch& batch) override;
    std::optional<News> guardTaken() override;
    void guardReleased() noexcept override;

    /// Round trips to the server on this connection.
    unsigned long long trips() const noexcept { return _connection ? _connection->trips() : 0; }

private:
    struct tPrepared;
    struct tAnswer;
    struct tBegun;
    using Connection = pq::Connection;
    using Rows = pq::Rows;
    using tPatience = pq::tPatience;
    using tTime = pq::tTime;

    /// Which transaction is under way.
    enum class tStage {
        kNone,
        kAsked,  ///< it has been asked for, together with the commit before
        kKept,   ///< it waits for the next guard
        kOurs    ///< it is that of a guard, or to be ended
    };

    /// A server's state, in the order in which servers are preferred.
    struct tState {
        std::int64_t timeline = 0;  ///< that began with its promotion
        std::int64_t epoch = 0;
        auto operator<=>(const tState&) const = default;
    };

    static constexpr char kOvertaken[] = "the connection was lost, and somebody else has changed the store since";
    static constexpr std::chrono::milliseconds kPause{20};  ///< between two attempts to reach a server

    tPatience _patience() const { return tPatience::of(_settings.deadline); }
    bool _writes() const noexcept { return _mode == tMode::kWrite && !_hasFailed; }
    void _refuseChild() const;

    void _connect(tTime until);
    tAnswer _ask(Connection& connection, tTime until) const;
    void _refuseLoss(const tAnswer& answer) const;
    static void _refuseLayout(std::int64_t layout);
    template <class Attempt>
    auto _persist(tTime until, Attempt attempt);

    void _postBegin(std::int64_t known);
    tBegun _collectBegin(tTime until);
    News _newsOf(const tBegun& begun);
    void _drop() noexcept;
    void _end() noexcept;
    void _giveUp();

    template <class Read>
    auto _read(Read read);
    void _resume();
    std::optional<std::span<const std::byte>> _whole(unsigned int offset, const Rows& rows);

    tPrepared _prepare(const Batch& batch);
    void _store(tPrepared& batch);
    void _post(tPrepared& batch);
    void _send(tPrepared& batch);
    void _settle(tPrepared& batch, std::string reason);

    const Settings _settings;
    const tMode _mode;
    const int _process;
    std::optional<Connection> _connection;
    std::int64_t _id = 0;     ///< of the store
    tState _state;            ///< the newest that was seen; its epoch is that of the snapshot
    std::int64_t _token = 0;  ///< of the commit that made the epoch
    Header _header;
    bool _begun = false;      ///< whether a transaction is under way that the guard may use
    bool _overtaken = false;  ///< whether that of the guard is lost for good
    bool _hasFailed = false;  ///< whether nothing will be committed any more
    tTime _since;             ///< when the first of the transactions was begun that follow each other
    std::unordered_map<unsigned int, std::int32_t> _long;  ///< chunks of records that have several
    std::vector<std::byte> _loaded;
    std::optional<Rows> _news;    ///< whose bytes have been given out
    unsigned int _nextAhead = 0;  ///< the offset behind those that were read ahead
    std::int64_t _ahead = 0;      ///< how many that were
    std::random_device _random;

    /// The thread that gives up what is kept, and what it waits with.
    struct tWatch {
        std::mutex mutex;
        std::condition_variable wake;
        std::thread thread;
    };
    std::unique_ptr<tWatch> _watch = std::make_unique<tWatch>();

    // What it looks at.
    tStage _stage = tStage::kNone;
    tTime _keepUntil;
    tTime _wakesAt = tTime::max();  ///< when it looks again, unless it is woken
    bool _active = false;           ///< whether a guard was given back since it has looked
    bool _over = false;
    tTime _lookedAt;  ///< when the connection was found quiet
};

}  // namespace lumivard::platform::stores
