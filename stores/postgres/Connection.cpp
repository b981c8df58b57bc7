#include "stores/postgres/Connection.h"

#include <libpq-fe.h>
#include <poll.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "stores/postgres/Waiting.h"

namespace lumivard::platform::stores::pq {
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
constexpr std::size_t kMostUnsent = 256 * 1024;  // bytes that are put together before they are sent

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

constexpr char kOddAnswer[] = "the server's answer is not as it should be";

// Whether an error, by its five characters, leaves open what became of a commit: the connection was lost on the way, or
// the server does not know it itself.
bool leavesOpen(std::string_view state) {
    return state.empty() || state.starts_with("08") || state == "40003";
}

std::string firstLine(const char* message) {
    std::string text = message ? message : "";
    return text.substr(0, text.find('\n'));
}

Refused refusalOf(const pg_result* result) {
    const char* const field = PQresultErrorField(result, PG_DIAG_SQLSTATE);
    const std::string state = field ? field : "";
    // One that libpq has made has no fields.
    const char* const message = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
    std::string words = firstLine(message ? message : PQresultErrorMessage(result));
    if (leavesOpen(state)) throw ConnectionLost(words);
    return {words, state};
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

bool isPostgres(std::string_view version) {
    return version.starts_with("PostgreSQL ") && version.find("-YB-") == std::string_view::npos;
}

// --- Rows

Rows::Rows(pg_result* result) : _result(result, PQclear) {}

std::size_t Rows::count() const {
    return static_cast<std::size_t>(PQntuples(_result.get()));
}

std::int64_t Rows::number(std::size_t row, int column) const {
    const auto all = bytes(row, column);
    if (all.size() != sizeof(std::int64_t)) throw ConnectionLost(kOddAnswer);
    std::uint64_t number = 0;
    for (const std::byte each : all) number = number << 8 | std::to_integer<std::uint64_t>(each);
    return static_cast<std::int64_t>(number);
}

std::string Rows::text(std::size_t row, int column) const {
    const auto all = bytes(row, column);
    return {reinterpret_cast<const char*>(all.data()), all.size()};
}

bool Rows::has(std::size_t row, int column) const {
    return PQgetisnull(_result.get(), static_cast<int>(row), column) == 0;
}

std::string_view Rows::done() const {
    return PQcmdStatus(_result.get());
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

Connection::Connection(tHandle connection) : _connection(std::move(connection)) {
    PQsetNoticeReceiver(_connection.get(), hear, _heard.get());
    if (PQsetnonblocking(_connection.get(), 1) != 0 || PQenterPipelineMode(_connection.get()) != 1) lose(reason());
}

// Called by libpq, through which nothing may be thrown.
void Connection::hear(void* heard, const pg_result* notice) noexcept {
    const char* const severity = PQresultErrorField(notice, PG_DIAG_SEVERITY_NONLOCALIZED);
    if (!severity || std::strcmp(severity, "WARNING") != 0) return;
    tHeard& all = *static_cast<tHeard*>(heard);
    all.warned = true;
    try {
        all.words = firstLine(PQresultErrorField(notice, PG_DIAG_MESSAGE_PRIMARY));
    } catch (const std::bad_alloc&) {
        all.words.clear();
    }
}

void Connection::post(std::span<const tStatement> statements, tPatience patience) {
    for (const tStatement& statement : statements) add(statement, patience);
    send(patience);
}

void Connection::add(const tStatement& statement, tPatience patience) {
    auto place = std::find(_prepared.begin(), _prepared.end(), statement.sql);
    const std::string name = std::to_string(place - _prepared.begin());
    if (place == _prepared.end()) {
        std::vector<Oid> types;
        for (const tValue& value : statement.values) types.push_back(value.type);
        _open.prepared.push_back(_prepared.size());
        _prepared.push_back(statement.sql);
        if (PQsendPrepare(_connection.get(), name.c_str(), statement.sql, static_cast<int>(types.size()),
                          types.data()) != 1) {
            lose(reason());
        }
        _open.prepares.push_back(true);
    }
    std::vector<const char*> values;
    std::vector<int> lengths;
    std::vector<int> formats;
    for (const tValue& value : statement.values) {
        values.push_back(value.bytes.data());
        lengths.push_back(static_cast<int>(value.bytes.size()));
        formats.push_back(kBinary);
        _unsent += value.bytes.size();
    }
    if (PQsendQueryPrepared(_connection.get(), name.c_str(), static_cast<int>(values.size()), values.data(),
                            lengths.data(), formats.data(), kBinary) != 1) {
        lose(reason());
    }
    _open.prepares.push_back(false);
    if (_unsent <= kMostUnsent) return;
    if (PQsendFlushRequest(_connection.get()) != 1) lose(reason());
    flush(patience);
}

void Connection::send(tPatience patience) {
    if (PQpipelineSync(_connection.get()) != 1) lose(reason());
    _underWay.push_back(std::exchange(_open, {}));
    _hasSent = true;
    flush(patience);
}

std::vector<Rows> Connection::collect(tPatience patience) {
    *_heard = {};
    patience.renew();
    if (std::exchange(_hasSent, false)) ++_trips;
    std::vector<Rows> all;
    std::optional<Refused> refused;
    const tPipeline pipeline = std::move(_underWay.front());
    _underWay.pop_front();
    for (const bool prepared : pipeline.prepares) {
        while (pg_result* const result = next(patience)) {
            Rows rows(result);
            switch (PQresultStatus(result)) {
                case PGRES_COMMAND_OK:
                case PGRES_TUPLES_OK:
                case PGRES_PIPELINE_ABORTED:
                    break;
                case PGRES_FATAL_ERROR:
                    if (!refused) refused = refusalOf(result);
                    break;
                default:
                    lose(kOddAnswer);
            }
            if (!prepared) all.push_back(std::move(rows));
        }
    }
    pg_result* const last = next(patience);
    const Rows end(last);  // of the pipeline
    if (!last || PQresultStatus(last) != PGRES_PIPELINE_SYNC) lose(kOddAnswer);
    if (!refused) {
        const auto asked = std::count(pipeline.prepares.begin(), pipeline.prepares.end(), false);
        if (all.size() != static_cast<std::size_t>(asked)) lose(kOddAnswer);
        return all;
    }
    // What should have been prepared may not have been, and is prepared by another name when it comes again.
    for (const std::size_t place : pipeline.prepared) _prepared[place] = nullptr;
    throw *refused;
}

void Connection::drain(std::size_t left, tPatience patience) {
    while (_underWay.size() > left) {
        try {
            collect(patience);
        } catch (const Refused&) {
            // Nobody has waited for it.
        }
    }
}

std::vector<Rows> Connection::run(std::span<const tStatement> statements, tPatience patience) {
    post(statements, patience);
    drain(1, patience);
    return collect(patience);
}

bool Connection::isQuiet() const noexcept {
    pollfd socket{PQsocket(_connection.get()), POLLIN, 0};
    return ::poll(&socket, 1, 0) == 0;
}

// What the server sends is taken in meanwhile: it may not take more from us before.
void Connection::flush(tPatience patience) {
    patience.renew();
    for (int left; (left = PQflush(_connection.get())) != 0;) {
        if (left < 0) lose(reason());
        wait(POLLIN | POLLOUT, patience);
        if (PQconsumeInput(_connection.get()) != 1) lose(reason());
    }
    _unsent = 0;
}

// Null at the end of one statement's results.
pg_result* Connection::next(tPatience& patience) {
    while (PQisBusy(_connection.get())) {
        wait(POLLIN, patience);
        if (PQconsumeInput(_connection.get()) != 1) lose(reason());
    }
    pg_result* const result = PQgetResult(_connection.get());
    if (PQstatus(_connection.get()) == CONNECTION_BAD) {
        PQclear(result);
        lose(reason());
    }
    return result;
}

void Connection::wait(short events, tPatience& patience) const {
    waitFor(PQsocket(_connection.get()), events, patience.until);
    patience.renew();
}

void Connection::lose(const std::string& what) {
    throw ConnectionLost(what);
}

std::string Connection::reason() const {
    const std::string line = firstLine(PQerrorMessage(_connection.get()));
    return line.empty() ? "the connection was lost" : line;
}

}  // namespace lumivard::platform::stores::pq
