#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "stores/engine/EngineError.h"

struct pg_conn;
struct pg_result;

namespace lumivard::platform::stores::pq {

/// The server cannot be reached any more, or has not answered in time. What became of the statements that were under
/// way is not known.
class ConnectionLost : public EngineError {
public:
    using EngineError::EngineError;
};

/// The server has refused a statement, and with it the whole transaction.
class Refused : public EngineError {
public:
    Refused(const std::string& reason, std::string state) : EngineError(reason), _state(std::move(state)) {}

    /// Which error it is, by the five characters of the SQL standard.
    const std::string& state() const noexcept { return _state; }

private:
    std::string _state;
};

/// A value of a statement, in the server's binary form.
struct tValue {
    unsigned int type;
    std::string bytes;
};

tValue number(std::int64_t value);
tValue text(std::string_view value);
tValue numbers(std::span<const std::int64_t> values);
tValue places(std::span<const std::int32_t> values);
tValue blobs(std::span<const std::span<const std::byte>> values);

/// One statement. The text stays where it is as long as the connection: it is prepared when it first comes.
struct tStatement {
    const char* sql;
    std::vector<tValue> values;
};

/// The rows that a statement gives. Who asks for a row or a column that is not there gets nothing.
class Rows {
public:
    explicit Rows(pg_result* result);

    std::size_t count() const;
    std::int64_t number(std::size_t row, int column) const;  ///< throws `ConnectionLost` where it is no `bigint`
    std::span<const std::byte> bytes(std::size_t row, int column) const;
    bool has(std::size_t row, int column) const;  ///< whether there is a value
    std::string text(std::size_t row, int column) const;

    /// What the server calls what it has done, such as "COMMIT".
    std::string_view done() const;

private:
    std::shared_ptr<pg_result> _result;
};

/// Whether it is PostgreSQL itself that calls its version so, and no other database that speaks its language.
bool isPostgres(std::string_view version);

using tTime = std::chrono::steady_clock::time_point;

/// How long is waited for the server: until a moment, and always for some time after it has last moved or was asked for
/// something.
struct tPatience {
    tTime until;
    std::chrono::milliseconds silence{0};

    void renew() { until = std::max(until, std::chrono::steady_clock::now() + silence); }

    static tPatience of(std::chrono::milliseconds silence) {
        return {std::chrono::steady_clock::now() + silence, silence};
    }
};

/// A connection to a server, of which nothing ever waits longer than it may: libpq works without blocking, and what it
/// waits for is waited for here.
///
/// Statements are sent in pipelines. Each has one answer, and several may be under way, which come in their order.
///
/// Errors: `ConnectionLost` and `Refused`. After `ConnectionLost` it is of no use any more. Threads: one call at a
/// time.
class Connection {
public:
    struct tClose {
        void operator()(pg_conn* connection) const noexcept;
    };
    using tHandle = std::unique_ptr<pg_conn, tClose>;

    /// Goes on with what libpq has connected.
    explicit Connection(tHandle connection);

    /// Sends statements as one pipeline, and does not wait for the answer.
    void post(std::span<const tStatement> statements, tPatience patience);

    /// A pipeline that is put together one by one, for what takes much memory: any number of `add`, then `send`. The
    /// server says of each statement when it is done, so that it is seen to be at work.
    void add(const tStatement& statement, tPatience patience);
    void send(tPatience patience);

    /// The answer to the oldest pipeline that is under way: the rows of each statement, as many as there were. The
    /// first statement that is refused ends all of that pipeline.
    std::vector<Rows> collect(tPatience patience);

    /// Passes over the answers that are under way, refusals included, until so many are left.
    void drain(std::size_t left, tPatience patience);

    /// Sends a pipeline and waits for its answer, passing over those before.
    std::vector<Rows> run(std::span<const tStatement> statements, tPatience patience);

    /// Whether the server has warned while the last answer came, and in which words: a commit that comes with a warning
    /// may not be what it says.
    bool warned() const noexcept { return _heard->warned; }
    const std::string& warning() const noexcept { return _heard->words; }

    /// How often an answer was asked for after something was sent: round trips.
    unsigned long long trips() const noexcept { return _trips; }

    /// Whether nothing has come from the server that nobody asked for, such as the end of the connection.
    bool isQuiet() const noexcept;

private:
    /// What the server has said that was not asked for.
    struct tHeard {
        bool warned = false;
        std::string words;
    };

    struct tPipeline {
        std::vector<bool> prepares;         // of what was sent: whether it prepares
        std::vector<std::size_t> prepared;  // the places of what was prepared in it
    };

    static void hear(void* heard, const pg_result* notice) noexcept;
    [[noreturn]] static void lose(const std::string& what);
    std::string reason() const;
    void wait(short events, tPatience& patience) const;
    void flush(tPatience patience);
    pg_result* next(tPatience& patience);

    tHandle _connection;
    std::unique_ptr<tHeard> _heard = std::make_unique<tHeard>();  // which the notices are told to
    std::vector<const char*> _prepared;                           // by number
    tPipeline _open;                                              // that is being put together
    std::size_t _unsent = 0;                                      // bytes of it, about
    std::deque<tPipeline> _underWay;
    unsigned long long _trips = 0;
    bool _hasSent = false;  // since an answer was asked for
};

}  // namespace lumivard::platform::stores::pq
