#include "stores/postgres/Connection.h"

#include <libpq-fe.h>
#include <poll.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>

#include "stores/core/Failure.h"

namespace lumivard::platform::stores::postgres {
namespace {

// Numbers of types, which every server has the same.
constexpr unsigned int kBytea = 17;
constexpr unsigned int kInt8 = 20;
constexpr unsigned int kInt4 = 23;
constexpr unsigned int kText = 25;
constexpr unsigned int kInt8Array = 1016;
constexpr unsigned int kInt4Array = 1007;
constexpr unsigned int kByteaArray = 1001;

constexpr int kBinary = 1;

// Numbers travel with the highest byte first.
template <class Number>
void put(std::string& bytes, Number number) {
    for (int shift = 8 * static_cast<int>(sizeof number) - 8; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> shift);
    }
}

// An array of one dimension: its head, then each element behind its length.
template <class Elements, class Put>
tValue array(unsigned int type, unsigned int elementType, const Elements& elements, Put putElement) {
    tValue value{type, {}};
    put(value.bytes, std::int32_t{1});  // dimensions
    put(value.bytes, std::int32_t{0});  // no element is null
    put(value.bytes, static_cast<std::int32_t>(elementType));
    put(value.bytes, static_cast<std::int32_t>(elements.size()));
    put(value.bytes, std::int32_t{1});  // the first index
    for (const auto& element : elements) putElement(value.bytes, element);
    return value;
}

template <class Number>
void putNumber(std::string& bytes, Number number) {
    put(bytes, static_cast<std::int32_t>(sizeof number));
    put(bytes, number);
}

// Called by libpq, through which nothing may be thrown.
void hear(void* warned, const PGresult* notice) noexcept {
    const char* const severity = PQresultErrorField(notice, PG_DIAG_SEVERITY_NONLOCALIZED);
    if (severity && std::strcmp(severity, "WARNING") == 0) *static_cast<bool*>(warned) = true;
}

std::string firstLine(const char* message) {
    std::string text = message ? message : "";
    return text.substr(0, text.find('\n'));
}

}  // namespace

tValue number(std::int64_t value) {
    tValue made{kInt8, {}};
    put(made.bytes, value);
    return made;
}

tValue text(std::string_view value) {
    return {kText, std::string(value)};
}

tValue numbers(std::span<const std::int64_t> values) {
    return array(kInt8Array, kInt8, values, putNumber<std::int64_t>);
}

tValue places(std::span<const std::int32_t> values) {
    return array(kInt4Array, kInt4, values, putNumber<std::int32_t>);
}

tValue blobs(std::span<const std::span<const std::byte>> values) {
    return array(kByteaArray, kBytea, values, [](std::string& bytes, std::span<const std::byte> blob) {
        put(bytes, static_cast<std::int32_t>(blob.size()));
        bytes.append(reinterpret_cast<const char*>(blob.data()), blob.size());
    });
}

// --- Rows

Rows::Rows(pg_result* result) : _result(result, PQclear) {}

std::size_t Rows::count() const {
    return static_cast<std::size_t>(PQntuples(_result.get()));
}

std::int64_t Rows::number(std::size_t row, int column) const {
    std::uint64_t number = 0;
    for (const std::byte each : bytes(row, column)) number = number << 8 | std::to_integer<std::uint64_t>(each);
    return static_cast<std::int64_t>(number);
}

std::span<const std::byte> Rows::bytes(std::size_t row, int column) const {
    const int line = static_cast<int>(row);
    const char* const data = PQgetvalue(_result.get(), line, column);
    return {reinterpret_cast<const std::byte*>(data),
            static_cast<std::size_t>(PQgetlength(_result.get(), line, column))};
}

// --- The connection

void Connection::tClose::operator()(pg_conn* connection) const noexcept {
    PQfinish(connection);
}

Connection::Connection(const std::string& location, tTime until) : _connection(PQconnectStart(location.c_str())) {
    if (!_connection) throw std::bad_alloc();
    PQsetNoticeReceiver(_connection.get(), hear, _warned.get());
    for (auto state = PGRES_POLLING_WRITING; state != PGRES_POLLING_OK; state = PQconnectPoll(_connection.get())) {
        if (state == PGRES_POLLING_FAILED || PQstatus(_connection.get()) == CONNECTION_BAD) lose(reason());
        wait(state == PGRES_POLLING_READING ? POLLIN : POLLOUT, until);
    }
    if (PQsetnonblocking(_connection.get(), 1) != 0 || PQenterPipelineMode(_connection.get()) != 1) lose(reason());
}

std::vector<Rows> Connection::run(std::span<const tStatement> statements, tTime until) {
    *_warned = false;
    std::vector<bool> prepares;  // of what is sent: whether it prepares
    for (const tStatement& statement : statements) {
        if (std::find(_prepared.begin(), _prepared.end(), statement.sql) == _prepared.end()) {
            _prepared.push_back(statement.sql);
            const std::string name = "s" + std::to_string(_prepared.size());
            std::vector<Oid> types;
            for (const tValue& value : statement.values) types.push_back(value.type);
            if (PQsendPrepare(_connection.get(), name.c_str(), statement.sql, static_cast<int>(types.size()),
                              types.data()) != 1) {
                lose(reason());
            }
            prepares.push_back(true);
        }
        send(statement);
        prepares.push_back(false);
    }
    if (PQpipelineSync(_connection.get()) != 1) lose(reason());
    flush(until);

    std::vector<Rows> all;
    std::optional<Refused> refused;
    for (const bool prepared : prepares) {
        while (pg_result* const result = next(until)) {
            Rows rows(result);
            const ExecStatusType status = PQresultStatus(result);
            if (status == PGRES_FATAL_ERROR && !refused) {
                const char* const state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
                refused.emplace(firstLine(PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY)), state ? state : "");
            }
            if (!prepared) all.push_back(std::move(rows));
        }
    }
    Rows end(next(until));  // of the pipeline
    if (!refused) return all;
    // A statement of another name is prepared where this one may not have been.
    for (const char*& sql : _prepared) sql = nullptr;
    throw *refused;
}

void Connection::send(const tStatement& statement) {
    std::vector<const char*> values;
    std::vector<int> lengths;
    std::vector<int> formats;
    for (const tValue& value : statement.values) {
        values.push_back(value.bytes.data());
        lengths.push_back(static_cast<int>(value.bytes.size()));
        formats.push_back(kBinary);
    }
    const auto place = std::find(_prepared.begin(), _prepared.end(), statement.sql) - _prepared.begin();
    const std::string name = "s" + std::to_string(place + 1);
    if (PQsendQueryPrepared(_connection.get(), name.c_str(), static_cast<int>(values.size()), values.data(),
                            lengths.data(), formats.data(), kBinary) != 1) {
        lose(reason());
    }
}

// What the server sends is taken in meanwhile: it may not take more from us before.
void Connection::flush(tTime until) {
    for (int left; (left = PQflush(_connection.get())) != 0;) {
        if (left < 0) lose(reason());
        wait(POLLIN | POLLOUT, until);
        if (PQconsumeInput(_connection.get()) != 1) lose(reason());
    }
}

// Null at the end of one statement's results.
pg_result* Connection::next(tTime until) {
    while (PQisBusy(_connection.get())) {
        wait(POLLIN, until);
        if (PQconsumeInput(_connection.get()) != 1) lose(reason());
    }
    pg_result* const result = PQgetResult(_connection.get());
    if (PQstatus(_connection.get()) == CONNECTION_BAD) {
        PQclear(result);
        lose(reason());
    }
    return result;
}

void Connection::wait(short events, tTime until) const {
    pollfd socket{PQsocket(_connection.get()), events, 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
        if (left.count() <= 0) lose("the server did not answer in time");
        const int ready = ::poll(&socket, 1, static_cast<int>(std::min<long long>(left.count(), 60'000)));
        if (ready > 0) return;
        if (ready < 0 && errno != EINTR) lose(systemReason(errno));
    }
}

void Connection::lose(const std::string& what) const {
    throw ConnectionLost(what);
}

std::string Connection::reason() const {
    const std::string line = firstLine(PQerrorMessage(_connection.get()));
    return line.empty() ? "the connection was lost" : line;
}

}  // namespace lumivard::platform::stores::postgres
