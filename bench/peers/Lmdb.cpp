#include <lmdb.h>

#include <array>
#include <cstdint>
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

// LMDB used bare, with its own durable commits: one database, whose keys are the number of the parent, big end first so
// that siblings lie together, and the name; one transaction for all that is flushed together.

namespace lvp::bench {

namespace {

void check(int result) {
    if (result != MDB_SUCCESS) throw std::runtime_error(std::string("LMDB: ") + mdb_strerror(result));
}

std::string_view viewOf(const MDB_val& value) {
    return {static_cast<const char*>(value.mv_data), value.mv_size};
}

MDB_val valueOf(const void* data, std::size_t size) {
    return {size, const_cast<void*>(data)};
}

/// An environment of one file, and the transaction that is open in it, if any.
class Environment {
public:
    Environment() = default;
    ~Environment() { close(); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) {
        return {file, file.string() + "-lock"};
    }

    void open(const std::filesystem::path& file, tAccess access, unsigned int databaseFlags) {
        constexpr std::size_t kMapSize = std::size_t{4} << 30;
        check(mdb_env_create(&_environment));
        check(mdb_env_set_mapsize(_environment, kMapSize));
        check(mdb_env_open(_environment, file.c_str(), MDB_NOSUBDIR | MDB_NORDAHEAD, 0644));
        access == tAccess::kWrite ? write() : read();
        check(mdb_dbi_open(_transaction, nullptr, databaseFlags, &_database));
    }

    /// Makes sure that a transaction is open in which one can write, or read.
    void write() {
        if (_transaction && _writes) return;
        end();
        check(mdb_txn_begin(_environment, nullptr, 0, &_transaction));
        _writes = true;
    }
    void read() {
        if (_transaction) return;
        check(mdb_txn_begin(_environment, nullptr, MDB_RDONLY, &_transaction));
        _writes = false;
    }

    void commit() {
        if (!_transaction || !_writes) return;
        check(mdb_txn_commit(std::exchange(_transaction, nullptr)));
    }

    /// Whether there is an entry of this key, and what it is.
    bool get(MDB_val key, MDB_val& value) {
        const int result = mdb_get(_transaction, _database, &key, &value);
        if (result != MDB_NOTFOUND) check(result);
        return result == MDB_SUCCESS;
    }

    void put(MDB_val key, MDB_val value, unsigned int flags) {
        check(mdb_put(_transaction, _database, &key, &value, flags));
    }

    MDB_cursor* cursor() {
        MDB_cursor* cursor = nullptr;
        check(mdb_cursor_open(_transaction, _database, &cursor));
        return cursor;
    }

    void close() {
        end();
        if (_environment) mdb_env_close(std::exchange(_environment, nullptr));
    }

private:
    void end() {
        if (_transaction) mdb_txn_abort(std::exchange(_transaction, nullptr));
    }

    MDB_env* _environment = nullptr;
    MDB_txn* _transaction = nullptr;
    MDB_dbi _database = 0;
    bool _writes = false;
};

/// The key of a name below a parent; of all of them with an empty name, which stands before the others.
class Key {
public:
    Key(std::uint32_t parent, std::string_view name) : _size(kPrefix + name.size()) {
        for (unsigned int i = 0; i < kPrefix; ++i) _bytes[i] = static_cast<char>(parent >> (24 - 8 * i));
        std::memcpy(_bytes.data() + kPrefix, name.data(), name.size());
    }
    MDB_val value() const { return valueOf(_bytes.data(), _size); }
    std::string_view prefix() const { return {_bytes.data(), kPrefix}; }
    static constexpr std::size_t kPrefix = 4;

private:
    std::array<char, 64> _bytes;
    std::size_t _size;
};

/// The children of a parent, in the order of their names.
class Children {
public:
    Children(Environment& environment, std::uint32_t parent)
        : _cursor(environment.cursor()), _start(parent, ""), _key(_start.value()) {
        move(MDB_SET_RANGE);
    }
    ~Children() { mdb_cursor_close(_cursor); }
    Children(const Children&) = delete;
    Children& operator=(const Children&) = delete;

    bool more() const { return _more; }
    void next() { move(MDB_NEXT); }
    std::string_view name() const { return viewOf(_key).substr(Key::kPrefix); }
    const MDB_val& value() const { return _value; }

    /// Looks at the children of another parent.
    void restart(std::uint32_t parent) {
        _start = Key(parent, "");
        _key = _start.value();
        move(MDB_SET_RANGE);
    }

private:
    void move(MDB_cursor_op operation) {
        const int result = mdb_cursor_get(_cursor, &_key, &_value, operation);
        if (result != MDB_NOTFOUND) check(result);
        _more = result == MDB_SUCCESS && viewOf(_key).substr(0, Key::kPrefix) == _start.prefix();
    }

    MDB_cursor* _cursor;
    Key _start;
    MDB_val _key;
    MDB_val _value{};
    bool _more = false;
};

class Tree {
public:
    static constexpr const char* kEnding = "lmdb";
    static constexpr bool kLasts = true;
    using tPath = Path;
    using tName = std::string;

    static tPath pathOf(Place place) { return bench::pathOf(place); }
    static tName nameOf(unsigned int number) { return itemName(number); }
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) {
        return Environment::files(file);
    }

    void create(const std::filesystem::path& file) {
        _environment.open(file, tAccess::kWrite, MDB_CREATE);
        node(0, kTop);
    }
    void item(const std::string& name) { node(kTopId, name); }
    void endItem() {}
    void real(std::string_view name, std::string_view unit, double value) {
        add(name, tKind::kReal, unit, &value, sizeof(value));
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        add(name, tKind::kVector, unit, value.data(), value.size_bytes());
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        add(name, tKind::kText, unit, value.data(), value.size());
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        add(name, tKind::kIntegers, unit, value.data(), value.size_bytes());
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        const char byte = value ? 1 : 0;
        add(name, tKind::kFlag, unit, &byte, 1);
    }
    void child(const tName& name) { node(kTopId, name); }

    void open(const std::filesystem::path& file, tAccess access) { _environment.open(file, access, 0); }
    void flush() { _environment.commit(); }
    void close() { _environment.close(); }

    void readTree(Checksum& sum) {
        _environment.read();
        Children properties(_environment, 0);
        for (Children items(_environment, kTopId); items.more(); items.next()) {
            for (properties.restart(idOf(items.value())); properties.more(); properties.next()) {
                take(properties.name(), properties.value(), sum);
            }
        }
    }

    void read(const tPath& path, Checksum& sum) { take(path.property, find(path), sum); }

    void overwrite(const tPath& path, double value) {
        _environment.write();
        std::uint32_t item = 0;
        const MDB_val old = find(path, &item);
        std::array<char, kLongest> bytes;
        std::memcpy(bytes.data(), old.mv_data, old.mv_size);
        std::memcpy(bytes.data() + kHeader, &value, sizeof(value));
        _environment.put(Key(item, path.property).value(), valueOf(bytes.data(), old.mv_size), 0);
    }

    bool find(const tName& name) {
        _environment.read();
        MDB_val value;
        return _environment.get(Key(kTopId, name).value(), value) && idOf(value) > kTopId;
    }

    std::size_t walk() {
        _environment.read();
        std::size_t length = 0;
        for (Children children(_environment, kTopId); children.more(); children.next()) {
            length += children.name().size();
        }
        return length;
    }

private:
    // A property is its kind, the length of its unit, a gap that aligns the value, the value, and the unit. A node is
    // its number.
    static constexpr std::size_t kHeader = 8;
    static constexpr std::size_t kLongest = 96;
    static constexpr std::uint32_t kTopId = 1;

    static std::uint32_t idOf(const MDB_val& node) {
        std::uint32_t id;
        std::memcpy(&id, node.mv_data, sizeof(id));
        return id;
    }

    void node(std::uint32_t parent, std::string_view name) {
        ++_id;
        _environment.put(Key(parent, name).value(), valueOf(&_id, sizeof(_id)), MDB_NOOVERWRITE);
    }

    void add(std::string_view name, tKind kind, std::string_view unit, const void* value, std::size_t size) {
        std::array<char, kLongest> bytes{};
        bytes[0] = static_cast<char>(kind);
        bytes[1] = static_cast<char>(unit.size());
        std::memcpy(bytes.data() + kHeader, value, size);
        std::memcpy(bytes.data() + kHeader + size, unit.data(), unit.size());
        _environment.put(Key(_id, name).value(), valueOf(bytes.data(), kHeader + size + unit.size()), MDB_NOOVERWRITE);
    }

    /// The property at a path, and the number of the item that it is in.
    MDB_val find(const Path& path, std::uint32_t* item = nullptr) {
        MDB_val value;
        require(_environment.get(Key(0, kTop).value(), value), "the top was not found");
        require(_environment.get(Key(idOf(value), path.item).value(), value), "an item was not found");
        const std::uint32_t id = idOf(value);
        if (item) *item = id;
        require(_environment.get(Key(id, path.property).value(), value), "a property was not found");
        return value;
    }

    static void take(std::string_view name, const MDB_val& property, Checksum& sum) {
        const char* const bytes = static_cast<const char*>(property.mv_data);
        const auto unitLength = static_cast<std::size_t>(bytes[1]);
        const std::size_t size = property.mv_size - kHeader - unitLength;
        const char* const value = bytes + kHeader;
        const std::string_view unit(value + size, unitLength);
        switch (static_cast<tKind>(bytes[0])) {
            case tKind::kReal: {
                double real;
                std::memcpy(&real, value, sizeof(real));
                return sum.real(name, unit, real);
            }
            case tKind::kVector: {
                std::array<double, 3> reals;
                std::memcpy(reals.data(), value, sizeof(reals));
                return sum.vector(name, unit, tVector(reals));
            }
            case tKind::kText:
                return sum.text(name, unit, std::string_view(value, size));
            case tKind::kIntegers: {
                std::array<std::int32_t, 8> integers;
                std::memcpy(integers.data(), value, sizeof(integers));
                return sum.integers(name, unit, tIntegers(integers));
            }
            case tKind::kFlag:
                return sum.flag(name, unit, *value != 0);
        }
    }

    Environment _environment;
    std::uint32_t _id = 0;
};

class Records {
public:
    static constexpr bool kLasts = true;
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) {
        return Environment::files(file);
    }

    void create(const std::filesystem::path& file) {
        _environment.open(file, tAccess::kWrite, MDB_CREATE | MDB_INTEGERKEY);
        _appending = _environment.cursor();
    }

    /// Numbers ascend, so that each record goes behind the last one, without a search.
    void add(unsigned int number, const Record& record) {
        MDB_val key = valueOf(&number, sizeof(number));
        MDB_val value = valueOf(&record, sizeof(record));
        check(mdb_cursor_put(_appending, &key, &value, MDB_APPEND));
    }
    void put(unsigned int number, const Record& record) {
        _environment.write();
        _environment.put(valueOf(&number, sizeof(number)), valueOf(&record, sizeof(record)), 0);
    }
    void get(unsigned int number, Record& record) {
        _environment.read();
        MDB_val value;
        require(_environment.get(valueOf(&number, sizeof(number)), value), "a record was not found");
        std::memcpy(&record, value.mv_data, sizeof(record));
    }
    void flush() {
        if (_appending) mdb_cursor_close(std::exchange(_appending, nullptr));
        _environment.commit();
    }
    void close() { _environment.close(); }

private:
    Environment _environment;
    MDB_cursor* _appending = nullptr;
};

constexpr Row kRows[] = {
    {"lmdb", "W1", buildTree<Tree>},     {"lmdb", "W2", readTree<Tree>},  {"lmdb", "W3", lookUp<Tree>},
    {"lmdb", "W4", editTree<Tree>},      {"lmdb", "W4d", editTree<Tree>}, {"lmdb", "W5", wideSet<Tree>},
    {"lmdb", "W8", runRecords<Records>},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
