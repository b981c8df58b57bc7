#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/RecordWorkload.h"
#include "bench/workloads/TreeWorkloads.h"

// The floor: the least that records that are found by their position can cost, in memory ("floor_memory") and in a
// mapped file ("floor"). It is no product: it has no guard, no erasing, no schemas, one kind of record, and trusts its
// bytes. What is new is flushed by msync, what has changed by a journal that nobody would ever read.

namespace lvp::bench {

namespace {

/// Bytes that grow at their end and may move when they do; in memory, or in a file.
class Arena {
public:
    Arena() = default;
    ~Arena() { close(); }
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    void createInMemory() { map(kFirst); }

    void create(const std::filesystem::path& file) {
        open(file, O_RDWR | O_CREAT | O_TRUNC);
        require(::ftruncate(_file, kFirst) == 0, "the file does not grow");
        map(kFirst);
    }

    /// Opens a file with all that it has.
    void open(const std::filesystem::path& file) {
        open(file, O_RDWR);
        _used = bytesOf(file);
        map(_used);
    }

    /// Adds room for `size` bytes, at a multiple of 8, and returns where it begins.
    std::uint32_t add(std::size_t size) {
        const std::size_t position = (_used + 7) & ~std::size_t{7};
        if (position + size > _size) resize(std::max(2 * _size, position + size));
        _used = position + size;
        return static_cast<std::uint32_t>(position);
    }

    char* at(std::size_t position) { return _bytes + position; }

    /// Makes a file durable, and as long as what is in it.
    void flush() {
        if (_file < 0) return;
        require(::msync(_bytes, _used, MS_SYNC) == 0, "the mapping is not flushed");
        resize(_used);
    }

    void close() {
        if (_bytes) ::munmap(std::exchange(_bytes, nullptr), _size);
        if (_file >= 0) ::close(std::exchange(_file, -1));
    }

private:
    static constexpr std::size_t kFirst = 1 << 20;

    void open(const std::filesystem::path& file, int flags) {
        _file = ::open(file.c_str(), flags | O_CLOEXEC, 0644);
        require(_file >= 0, "the file is not opened");
    }

    void map(std::size_t size) {
        const int kind = _file < 0 ? MAP_PRIVATE | MAP_ANONYMOUS : MAP_SHARED;
        take(::mmap(nullptr, size, PROT_READ | PROT_WRITE, kind, _file, 0), size);
    }

    void resize(std::size_t size) {
        if (_file >= 0) require(::ftruncate(_file, static_cast<off_t>(size)) == 0, "the file has another length");
        take(::mremap(_bytes, _size, size, MREMAP_MAYMOVE), size);
    }

    void take(void* bytes, std::size_t size) {
        require(bytes != MAP_FAILED, "the bytes are not mapped");
        _bytes = static_cast<char*>(bytes);
        _size = size;
    }

    int _file = -1;
    char* _bytes = nullptr;
    std::size_t _size = 0;
    std::size_t _used = 0;
};

/// The changes since the last flush, which a flush appends to a file of their own.
class Journal {
public:
    ~Journal() {
        if (_file >= 0) ::close(_file);
    }
    void open(const std::filesystem::path& file) {
        _file = ::open(file.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        require(_file >= 0, "the journal is not made");
        // Room that is there already, so that a flush has nothing but bytes to make durable.
        _pending.assign(kReserved, '\0');
        flush();
        _end = 0;
    }
    bool isOpen() const { return _file >= 0; }

    void add(std::uint32_t position, const void* data, std::size_t size) {
        if (_file < 0) return;
        append(&position, sizeof(position));
        append(data, size);
    }

    void flush() {
        if (_file < 0) return;
        const auto size = static_cast<ssize_t>(_pending.size());
        require(::pwrite(_file, _pending.data(), _pending.size(), _end) == size && ::fdatasync(_file) == 0,
                "the journal is not written");
        _end += size;
        _pending.clear();
    }

private:
    void append(const void* data, std::size_t size) {
        const auto* const bytes = static_cast<const char*>(data);
        _pending.insert(_pending.end(), bytes, bytes + size);
    }

    static constexpr std::size_t kReserved = 4 << 20;

    int _file = -1;
    off_t _end = 0;
    std::vector<char> _pending;
};

std::filesystem::path journalOf(const std::filesystem::path& file) {
    return file.string() + "-journal";
}

std::uint32_t hashOf(std::uint32_t parent, std::string_view name) {
    std::uint64_t hash = parent;
    for (; name.size() >= 8; name.remove_prefix(8)) {
        std::uint64_t word;
        std::memcpy(&word, name.data(), sizeof(word));
        hash = scramble(hash ^ word);
    }
    std::uint64_t rest = name.size() << 56;
    std::memcpy(&rest, name.data(), name.size());
    return static_cast<std::uint32_t>(scramble(hash ^ rest));
}

/// Items and properties as records that are linked to their next sibling, and one table from names to records, which
/// is put behind them when the tree is done.
class Tree {
public:
    static constexpr const char* kEnding = "floor";
    using tPath = Path;
    using tName = std::string;

    static tPath pathOf(Place place) { return bench::pathOf(place); }
    static tName nameOf(unsigned int number) { return itemName(number); }

    void item(const std::string& name) { _item = add(_top, name, {}, 0, nullptr, 0); }
    void endItem() {}
    void real(std::string_view name, std::string_view unit, double value) {
        property(name, unit, tKind::kReal, &value, sizeof(value));
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        property(name, unit, tKind::kVector, value.data(), value.size_bytes());
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        property(name, unit, tKind::kText, value.data(), value.size());
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        property(name, unit, tKind::kIntegers, value.data(), value.size_bytes());
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        const char byte = value ? 1 : 0;
        property(name, unit, tKind::kFlag, &byte, 1);
    }
    void child(const tName& name) { item(name); }

    void flush() {
        if (_journal.isOpen()) return _journal.flush();
        writeTable();
        _arena.flush();
    }

    void close() { _arena.close(); }

    void readTree(Checksum& sum) {
        for (std::uint32_t item = entry(_top).first; item != 0; item = entry(item).next) {
            for (std::uint32_t property = entry(item).first; property != 0; property = entry(property).next) {
                take(property, sum);
            }
        }
    }

    void read(const tPath& path, Checksum& sum) { take(find(path), sum); }

    void overwrite(const tPath& path, double value) {
        const std::uint32_t position = find(path) + static_cast<std::uint32_t>(sizeof(Entry));
        std::memcpy(_arena.at(position), &value, sizeof(value));
        _journal.add(position, &value, sizeof(value));
    }

    bool find(const tName& name) { return find(_top, name) != 0; }

    std::size_t walk() {
        std::size_t length = 0;
        for (std::uint32_t item = entry(_top).first; item != 0; item = entry(item).next) {
            length += entry(item).nameLength;
        }
        return length;
    }

protected:
    /// Makes the head and the top of a tree in a new arena.
    void begin() {
        _arena.add(sizeof(Head));
        _table.assign(kFirstSlots, Slot{});
        _slots = kFirstSlots;
        _top = add(0, kTop, {}, 0, nullptr, 0);
    }

    /// Takes up the tree of an arena that was opened.
    void resume() {
        const Head head = *reinterpret_cast<const Head*>(_arena.at(0));
        _top = head.top;
        _slots = head.slots;
        _stored = reinterpret_cast<const Slot*>(_arena.at(head.table));
    }

    Arena _arena;
    Journal _journal;

private:
    struct Head {
        std::uint32_t top;
        std::uint32_t table;
        std::uint32_t slots;
    };
    /// The value stands behind it, then the name, then the unit.
    struct Entry {
        std::uint32_t parent;
        std::uint32_t next;
        std::uint32_t first;
        std::uint32_t last;
        std::uint32_t hash;
        std::uint32_t size;
        std::uint16_t nameLength;
        std::uint8_t unitLength;
        std::uint8_t kind;
        std::uint32_t padding;
    };
    static_assert(sizeof(Entry) == 32);
    struct Slot {
        std::uint32_t position;  // 0 for none
        std::uint32_t hash;
    };
    static constexpr std::uint32_t kFirstSlots = 1024;

    Entry& entry(std::uint32_t position) { return *reinterpret_cast<Entry*>(_arena.at(position)); }

    std::string_view nameOf(std::uint32_t position, const Entry& entry) {
        return {_arena.at(position + sizeof(Entry) + entry.size), entry.nameLength};
    }

    void property(std::string_view name, std::string_view unit, tKind kind, const void* value, std::size_t size) {
        add(_item, name, unit, static_cast<std::uint8_t>(kind), value, size);
    }

    std::uint32_t add(std::uint32_t parent, std::string_view name, std::string_view unit, std::uint8_t kind,
                      const void* value, std::size_t size) {
        const std::uint32_t position = _arena.add(sizeof(Entry) + size + name.size() + unit.size());
        Entry& made = entry(position);
        made = {parent,
                0,
                0,
                0,
                hashOf(parent, name),
                static_cast<std::uint32_t>(size),
                static_cast<std::uint16_t>(name.size()),
                static_cast<std::uint8_t>(unit.size()),
                kind,
                0};
        char* const bytes = _arena.at(position + sizeof(Entry));
        if (size != 0) std::memcpy(bytes, value, size);
        std::memcpy(bytes + size, name.data(), name.size());
        if (!unit.empty()) std::memcpy(bytes + size + name.size(), unit.data(), unit.size());
        if (parent != 0) {
            Entry& above = entry(parent);
            (above.last != 0 ? entry(above.last).next : above.first) = position;
            above.last = position;
        }
        if (++_count * 10 > _slots * 7) growTable();
        put({position, made.hash});
        return position;
    }

    void put(Slot slot) {
        std::uint32_t place = slot.hash & (_slots - 1);
        while (_table[place].position != 0) place = (place + 1) & (_slots - 1);
        _table[place] = slot;
    }

    void growTable() {
        const std::vector<Slot> old = std::exchange(_table, std::vector<Slot>(2 * std::size_t{_slots}));
        _slots *= 2;
        for (const Slot slot : old) {
            if (slot.position != 0) put(slot);
        }
    }

    void writeTable() {
        const std::size_t size = _table.size() * sizeof(Slot);
        const std::uint32_t position = _arena.add(size);
        std::memcpy(_arena.at(position), _table.data(), size);
        *reinterpret_cast<Head*>(_arena.at(0)) = {_top, position, _slots};
    }

    std::uint32_t find(std::uint32_t parent, std::string_view name) {
        const std::uint32_t hash = hashOf(parent, name);
        const Slot* const slots = _stored ? _stored : _table.data();
        for (std::uint32_t place = hash & (_slots - 1);; place = (place + 1) & (_slots - 1)) {
            const Slot slot = slots[place];
            if (slot.position == 0) return 0;
            if (slot.hash != hash) continue;
            const Entry& found = entry(slot.position);
            if (found.parent == parent && nameOf(slot.position, found) == name) return slot.position;
        }
    }

    std::uint32_t find(const Path& path) {
        const std::uint32_t property = find(find(find(0, kTop), path.item), path.property);
        require(property != 0, "a property was not found");
        return property;
    }

    void take(std::uint32_t position, Checksum& sum) {
        const Entry& property = entry(position);
        const char* const value = _arena.at(position + sizeof(Entry));
        const std::string_view name(value + property.size, property.nameLength);
        const std::string_view unit(value + property.size + property.nameLength, property.unitLength);
        switch (static_cast<tKind>(property.kind)) {
            case tKind::kReal: {
                double real;
                std::memcpy(&real, value, sizeof(real));
                return sum.real(name, unit, real);
            }
            case tKind::kVector:
                return sum.vector(name, unit, tVector(reinterpret_cast<const double*>(value), 3));
            case tKind::kText:
                return sum.text(name, unit, {value, property.size});
            case tKind::kIntegers:
                return sum.integers(name, unit, tIntegers(reinterpret_cast<const std::int32_t*>(value), 8));
            case tKind::kFlag:
                return sum.flag(name, unit, *value != 0);
        }
    }

    std::uint32_t _top = 0;
    std::uint32_t _item = 0;
    std::vector<Slot> _table;
    const Slot* _stored = nullptr;  // the table of a tree that was opened
    std::uint32_t _slots = 0;
    std::uint32_t _count = 0;
};

class FileTree : public Tree {
public:
    static constexpr bool kLasts = true;
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) {
        return {file, journalOf(file)};
    }
    void create(const std::filesystem::path& file) {
        _arena.create(file);
        begin();
    }
    void open(const std::filesystem::path& file, tAccess access) {
        _arena.open(file);
        if (access == tAccess::kWrite) _journal.open(journalOf(file));
        resume();
    }
};

class MemoryTree : public Tree {
public:
    static constexpr bool kLasts = false;
    static std::vector<std::filesystem::path> files(const std::filesystem::path&) { return {}; }
    void create(const std::filesystem::path&) {
        _arena.createInMemory();
        begin();
    }
    void flush() {}
};

/// Records one behind the other, and where each of them begins.
class Records {
public:
    void add(unsigned int number, const Record& record) {
        require(number == _positions.size(), "records are numbered as they come");
        _positions.push_back(_arena.add(sizeof(record)));
        std::memcpy(_arena.at(_positions.back()), &record, sizeof(record));
    }
    void get(unsigned int number, Record& record) {
        std::memcpy(&record, _arena.at(_positions[number]), sizeof(record));
    }
    void put(unsigned int number, const Record& record) {
        std::memcpy(_arena.at(_positions[number]), &record, sizeof(record));
        _journal.add(_positions[number], &record, sizeof(record));
    }
    void close() { _arena.close(); }

protected:
    Arena _arena;
    Journal _journal;

private:
    std::vector<std::uint32_t> _positions;
};

class FileRecords : public Records {
public:
    static constexpr bool kLasts = true;
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) {
        return {file, journalOf(file)};
    }
    void create(const std::filesystem::path& file) {
        _file = file;
        _arena.create(file);
    }
    void flush() {
        if (_journal.isOpen()) return _journal.flush();
        _arena.flush();
        _journal.open(journalOf(_file));
    }

private:
    std::filesystem::path _file;
};

class MemoryRecords : public Records {
public:
    static constexpr bool kLasts = false;
    static std::vector<std::filesystem::path> files(const std::filesystem::path&) { return {}; }
    void create(const std::filesystem::path&) { _arena.createInMemory(); }
    void flush() {}
};

constexpr Row kRows[] = {
    {"floor", "W1", buildTree<FileTree>},
    {"floor", "W2", readTree<FileTree>},
    {"floor", "W3", lookUp<FileTree>},
    {"floor", "W4", editTree<FileTree>},
    {"floor", "W4d", editTree<FileTree>},
    {"floor", "W5", wideSet<FileTree>},
    {"floor", "W8", runRecords<FileRecords>},
    {"floor_memory", "W1", buildTree<MemoryTree>},
    {"floor_memory", "W2", readTree<MemoryTree>},
    {"floor_memory", "W3", lookUp<MemoryTree>},
    {"floor_memory", "W4", editTree<MemoryTree>},
    {"floor_memory", "W5", wideSet<MemoryTree>},
    {"floor_memory", "W8", runRecords<MemoryRecords>},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
