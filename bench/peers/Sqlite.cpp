#include <sqlite3.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/RecordWorkload.h"
#include "bench/workloads/TreeWorkloads.h"

// SQLite as the file of an application: a table of nodes and one of properties, prepared statements, one transaction
// for all that is flushed together. The file is used by one process (exclusive locking) and read through a mapping.
// Commits are durable (synchronous=FULL): into a write-ahead log, but for those that fill a new file, which cost less
// with a rollback journal, since that has nothing to keep of pages that were not there before.

namespace lvp::bench {

namespace {

/// A connection, and what throws for it.
class Connection {
public:
    Connection() = default;
    ~Connection() { close(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void open(const std::filesystem::path& file) {
        constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
        check(sqlite3_open_v2(file.c_str(), &_connection, kFlags, nullptr));
        run("PRAGMA locking_mode=EXCLUSIVE; PRAGMA synchronous=FULL; PRAGMA cache_size=-65536;"
            "PRAGMA mmap_size=2147483648; PRAGMA temp_store=MEMORY");
    }

    void run(const char* sql) { check(sqlite3_exec(_connection, sql, nullptr, nullptr, nullptr)); }

    /// A statement, which lives as long as the connection.
    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v3(_connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
        _statements.push_back(statement);
        return statement;
    }

    /// Runs a statement that gives no rows.
    void execute(sqlite3_stmt* statement) {
        const int result = sqlite3_step(statement);
        if (result != SQLITE_DONE) check(result);
        sqlite3_reset(statement);
    }

    /// The next row of a statement; false at the end, where it is ready to run again.
    bool next(sqlite3_stmt* statement) {
        const int result = sqlite3_step(statement);
        if (result == SQLITE_ROW) return true;
        if (result != SQLITE_DONE) check(result);
        sqlite3_reset(statement);
        return false;
    }

    /// Writes a log from now on.
    void useLog() { run("PRAGMA journal_mode=WAL"); }

    int changes() const { return sqlite3_changes(_connection); }

    void close() {
        for (sqlite3_stmt* const statement : _statements) sqlite3_finalize(statement);
        _statements.clear();
        sqlite3_close_v2(std::exchange(_connection, nullptr));
    }

private:
    void check(int result) {
        if (result != SQLITE_OK) throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(_connection));
    }

    sqlite3* _connection = nullptr;
    std::vector<sqlite3_stmt*> _statements;
};

/// The transaction that is open, if any: it begins with the first change and ends with `commit`.
class Transaction {
public:
    explicit Transaction(Connection& connection) : _connection(connection) {}
    void prepare() {
        _begin = _connection.prepare("BEGIN");
        _commit = _connection.prepare("COMMIT");
    }
    void begin() {
        if (std::exchange(_open, true)) return;
        _connection.execute(_begin);
    }
    void commit() {
        if (!std::exchange(_open, false)) return;
        _connection.execute(_commit);
    }

private:
    Connection& _connection;
    sqlite3_stmt* _begin = nullptr;
    sqlite3_stmt* _commit = nullptr;
    bool _open = false;
};

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& file) {
    return {file, file.string() + "-wal", file.string() + "-shm", file.string() + "-journal"};
}

void bindText(sqlite3_stmt* statement, int index, std::string_view text) {
    sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

std::string_view textOf(sqlite3_stmt* row, int column) {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(row, column))};
}

class Tree {
public:
    static constexpr const char* kEnding = "sqlite";
    static constexpr bool kLasts = true;
    using tPath = Path;
    using tName = std::string;

    static tPath pathOf(Place place) { return bench::pathOf(place); }
    static tName nameOf(unsigned int number) { return itemName(number); }
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) { return filesOf(file); }

    void create(const std::filesystem::path& file) {
        _connection.open(file);
        _connection.run(
            "CREATE TABLE node(id INTEGER PRIMARY KEY, parent INTEGER NOT NULL, name TEXT NOT NULL,"
            " UNIQUE(parent, name));"
            "CREATE TABLE property(node INTEGER NOT NULL, name TEXT NOT NULL, kind INTEGER NOT NULL, unit TEXT,"
            " value, PRIMARY KEY(node, name)) WITHOUT ROWID");
        _transaction.prepare();
        _transaction.begin();
        _addNode = _connection.prepare("INSERT INTO node VALUES(?1, ?2, ?3)");
        _addProperty = _connection.prepare("INSERT INTO property VALUES(?1, ?2, ?3, ?4, ?5)");
        node(0, kTop);
    }

    void item(const std::string& name) {
        node(kTopId, name);
        sqlite3_bind_int(_addProperty, 1, _id);
    }
    void endItem() {}
    void real(std::string_view name, std::string_view unit, double value) {
        sqlite3_bind_double(_addProperty, 5, value);
        add(name, tKind::kReal, unit);
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        sqlite3_bind_blob(_addProperty, 5, value.data(), static_cast<int>(value.size_bytes()), SQLITE_STATIC);
        add(name, tKind::kVector, unit);
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        bindText(_addProperty, 5, value);
        add(name, tKind::kText, unit);
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        sqlite3_bind_blob(_addProperty, 5, value.data(), static_cast<int>(value.size_bytes()), SQLITE_STATIC);
        add(name, tKind::kIntegers, unit);
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        sqlite3_bind_int(_addProperty, 5, value ? 1 : 0);
        add(name, tKind::kFlag, unit);
    }
    void child(const tName& name) { node(kTopId, name); }

    void open(const std::filesystem::path& file, tAccess access) {
        _connection.open(file);
        if (access == tAccess::kWrite) _connection.useLog();
        _transaction.prepare();
        if (access == tAccess::kRead) _transaction.begin();  // one for all reads, so that they take no locks each
    }

    void flush() { _transaction.commit(); }

    void close() {
        _transaction.commit();
        _connection.close();
        _lookUp = _overwrite = _find = nullptr;
    }

    void readTree(Checksum& sum) {
        // One join in the order of the keys: the fastest way to all of it. CROSS JOIN keeps the tables in this order.
        sqlite3_stmt* const rows = _connection.prepare(
            "SELECT p.name, p.kind, p.unit, p.value FROM node t CROSS JOIN node n ON n.parent = t.id"
            " CROSS JOIN property p ON p.node = n.id WHERE t.parent = 0 AND t.name = 'top'");
        while (_connection.next(rows)) take(rows, sum);
    }

    void read(const tPath& path, Checksum& sum) {
        if (!_lookUp) {
            _lookUp = _connection.prepare(
                "SELECT p.name, p.kind, p.unit, p.value FROM node t JOIN node n ON n.parent = t.id"
                " JOIN property p ON p.node = n.id WHERE t.parent = 0 AND t.name = ?1 AND n.name = ?2 AND p.name = ?3");
        }
        bindPath(_lookUp, path);
        require(_connection.next(_lookUp), "a property was not found");
        take(_lookUp, sum);
        sqlite3_reset(_lookUp);
    }

    void overwrite(const tPath& path, double value) {
        _transaction.begin();
        if (!_overwrite) {
            _overwrite = _connection.prepare(
                "UPDATE property SET value = ?4 WHERE node = (SELECT n.id FROM node t JOIN node n ON n.parent = t.id"
                " WHERE t.parent = 0 AND t.name = ?1 AND n.name = ?2) AND name = ?3");
        }
        bindPath(_overwrite, path);
        sqlite3_bind_double(_overwrite, 4, value);
        _connection.execute(_overwrite);
        require(_connection.changes() == 1, "a property was not overwritten");
    }

    bool find(const tName& name) {
        _transaction.begin();
        if (!_find) _find = _connection.prepare("SELECT id FROM node WHERE parent = 1 AND name = ?1");
        bindText(_find, 1, name);
        const bool found = _connection.next(_find) && sqlite3_column_int(_find, 0) > kTopId;
        sqlite3_reset(_find);
        return found;
    }

    std::size_t walk() {
        _transaction.begin();
        sqlite3_stmt* const rows = _connection.prepare("SELECT id, name FROM node WHERE parent = 1 ORDER BY name");
        std::size_t length = 0;
        while (_connection.next(rows)) length += textOf(rows, 1).size();
        return length;
    }

private:
    static constexpr int kTopId = 1;

    static void bindPath(sqlite3_stmt* statement, const Path& path) {
        bindText(statement, 1, kTop);
        bindText(statement, 2, path.item);
        bindText(statement, 3, path.property);
    }

    /// Adds the property of a row, which has name, kind, unit and value.
    static void take(sqlite3_stmt* row, Checksum& sum) {
        const std::string_view name = textOf(row, 0);
        const std::string_view unit = sqlite3_column_type(row, 2) == SQLITE_NULL ? std::string_view() : textOf(row, 2);
        switch (static_cast<tKind>(sqlite3_column_int(row, 1))) {
            case tKind::kReal:
                return sum.real(name, unit, sqlite3_column_double(row, 3));
            case tKind::kVector: {
                std::array<double, 3> value;
                copyBlob(row, value.data(), sizeof(value));
                return sum.vector(name, unit, tVector(value));
            }
            case tKind::kText:
                return sum.text(name, unit, textOf(row, 3));
            case tKind::kIntegers: {
                std::array<std::int32_t, 8> value;
                copyBlob(row, value.data(), sizeof(value));
                return sum.integers(name, unit, tIntegers(value));
            }
            case tKind::kFlag:
                return sum.flag(name, unit, sqlite3_column_int(row, 3) != 0);
        }
    }

    static void copyBlob(sqlite3_stmt* row, void* out, std::size_t size) {
        const void* const blob = sqlite3_column_blob(row, 3);
        require(static_cast<std::size_t>(sqlite3_column_bytes(row, 3)) == size, "a value has another length");
        std::memcpy(out, blob, size);
    }

    void node(int parent, std::string_view name) {
        sqlite3_bind_int(_addNode, 1, ++_id);
        sqlite3_bind_int(_addNode, 2, parent);
        bindText(_addNode, 3, name);
        _connection.execute(_addNode);
    }

    void add(std::string_view name, tKind kind, std::string_view unit) {
        bindText(_addProperty, 2, name);
        sqlite3_bind_int(_addProperty, 3, static_cast<int>(kind));
        if (unit.empty()) {
            sqlite3_bind_null(_addProperty, 4);
        } else {
            bindText(_addProperty, 4, unit);
        }
        _connection.execute(_addProperty);
    }

    Connection _connection;
    Transaction _transaction{_connection};
    sqlite3_stmt* _addNode = nullptr;
    sqlite3_stmt* _addProperty = nullptr;
    sqlite3_stmt* _lookUp = nullptr;
    sqlite3_stmt* _overwrite = nullptr;
    sqlite3_stmt* _find = nullptr;
    int _id = 0;
};

class Records {
public:
    static constexpr bool kLasts = true;
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) { return filesOf(file); }

    void create(const std::filesystem::path& file) {
        _connection.open(file);
        _connection.run("CREATE TABLE record(number INTEGER PRIMARY KEY, bytes BLOB NOT NULL)");
        _transaction.prepare();
        _add = _connection.prepare("INSERT INTO record VALUES(?1, ?2)");
        _get = _connection.prepare("SELECT bytes FROM record WHERE number = ?1");
        _put = _connection.prepare("UPDATE record SET bytes = ?2 WHERE number = ?1");
    }

    void add(unsigned int number, const Record& record) { write(_add, number, record); }
    void put(unsigned int number, const Record& record) { write(_put, number, record); }

    void get(unsigned int number, Record& record) {
        _transaction.begin();
        sqlite3_bind_int64(_get, 1, number);
        require(_connection.next(_get), "a record was not found");
        std::memcpy(&record, sqlite3_column_blob(_get, 0), sizeof(record));
        sqlite3_reset(_get);
    }

    void flush() {
        _transaction.commit();
        if (std::exchange(_isNew, false)) _connection.useLog();
    }

    void close() {
        _transaction.commit();
        _connection.close();
    }

private:
    void write(sqlite3_stmt* statement, unsigned int number, const Record& record) {
        _transaction.begin();
        sqlite3_bind_int64(statement, 1, number);
        sqlite3_bind_blob(statement, 2, &record, sizeof(record), SQLITE_STATIC);
        _connection.execute(statement);
    }

    Connection _connection;
    Transaction _transaction{_connection};
    sqlite3_stmt* _add = nullptr;
    sqlite3_stmt* _get = nullptr;
    sqlite3_stmt* _put = nullptr;
    bool _isNew = true;
};

constexpr Row kRows[] = {
    {"sqlite", "W1", buildTree<Tree>},     {"sqlite", "W2", readTree<Tree>},  {"sqlite", "W3", lookUp<Tree>},
    {"sqlite", "W4", editTree<Tree>},      {"sqlite", "W4d", editTree<Tree>}, {"sqlite", "W5", wideSet<Tree>},
    {"sqlite", "W8", runRecords<Records>},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
