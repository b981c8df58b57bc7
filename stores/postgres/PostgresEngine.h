#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
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
/// commit is under way, the token tells on the next connection whether it was done.
///
/// Nothing waits longer than the deadline. Threads and errors as for `Engine`.
class PostgresEngine final : public Engine {
public:
    struct Settings {
        std::string location;                      ///< as libpq takes it, without the store
        std::string store;                         ///< the name of the store
        std::chrono::milliseconds deadline{5000};  ///< for each answer, and for settling what became of a commit
    };

    /// Connects. Throws `EngineError` where that fails, or where there is no such store.
    PostgresEngine(Settings settings, tMode mode);

    bool isShared() const noexcept override { return true; }
    Header header() override;
    std::optional<std::span<const std::byte>> load(unsigned int offset) override;
    void commit(const Batch& batch) override;
    std::optional<News> guardTaken() override;
    void guardReleased() noexcept override;

private:
    struct tPrepared;
    using Connection = postgres::Connection;
    using tTime = Connection::tTime;

    tTime _until() const { return std::chrono::steady_clock::now() + _settings.deadline; }
    void _connect(tTime until);
    std::optional<News> _take();
    News _begin(tTime until);
    void _send(const tPrepared& batch, tTime until);
    void _settle(const tPrepared& batch, tTime until);
    tPrepared _prepare(const Batch& batch);

    const Settings _settings;
    const tMode _mode;
    std::optional<Connection> _connection;
    std::int64_t _store = 0;
    std::int64_t _epoch = 0;  ///< that the snapshot is of
    Header _header;
    bool _inTransaction = false;
    std::vector<std::byte> _loaded;
    std::unordered_map<unsigned int, std::int32_t> _long;  ///< chunks of records that have several
    std::random_device _random;
};

}  // namespace lumivard::platform::stores
