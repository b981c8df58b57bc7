#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "stores/engine/EngineError.h"

struct pg_conn;
struct pg_result;

namespace lumivard::platform::stores::postgres {

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

/// One statement. The text is one of few that live as long as the program: it is prepared when it first comes.
struct tStatement {
    const char* sql;
    std::vector<tValue> values;
};

/// The rows that a statement gives.
class Rows {
public:
    explicit Rows(pg_result* result);

    std::size_t count() const;
    std::int64_t number(std::size_t row, int column) const;
    std::span<const std::byte> bytes(std::size_t row, int column) const;

private:
    std::shared_ptr<pg_result> _result;
};

/// A connection to a server, of which nothing ever waits longer than it may: libpq works without blocking, and what it
/// waits for is waited for here.
///
/// Errors: `ConnectionLost` and `Refused`. Threads: one call at a time.
class Connection {
public:
    using tTime = std::chrono::steady_clock::time_point;

    /// Connects, to the first host of several that takes writes if there are several. Gives up at `until`.
    Connection(const std::string& location, tTime until);

    /// Runs statements as one pipeline: they are sent together, and one round trip brings all of their results. The
    /// first that is refused ends all.
    std::vector<Rows> run(std::span<const tStatement> statements, tTime until);

    /// Whether the server has warned in the last run: a commit that comes with a warning may not be what it says.
    bool warned() const noexcept { return *_warned; }

private:
    struct tClose {
        void operator()(pg_conn* connection) const noexcept;
    };

    [[noreturn]] void lose(const std::string& what) const;
    std::string reason() const;
    void wait(short events, tTime until) const;
    void flush(tTime until);
    pg_result* next(tTime until);
    void send(const tStatement& statement);

    std::unique_ptr<pg_conn, tClose> _connection;
    std::unique_ptr<bool> _warned = std::make_unique<bool>(false);  // which the notices are told to
    std::vector<const char*> _prepared;
};

}  // namespace lumivard::platform::stores::postgres
