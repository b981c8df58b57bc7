#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumivard::platform::data::Metadata {

/// The children of a set by their names, each name once, in the order in which they came.
///
/// Names are given as the bytes of wide texts (`Record::bytesOf`), so that they can be taken from where they lie in
/// records; they are copied. The whole name is hashed: `core::tMurmur2Kernel` takes in only the first quarter of a
/// text, under which thousands of names with one beginning ("item_000001", "item_000002", ...) would fall together; no
/// stored data depends on the order of a walk.
///
/// A copy costs two blocks of memory, whatever the number of children, and a search looks at two places. Not
/// thread-safe.
class NameIndex {
public:
    /// The child of that name; `BADOFF` where there is none.
    unsigned int find(std::string_view name) const;

    /// Adds a child, which is not `BADOFF`, unless there is one of that name; false when there is. Throws
    /// `std::bad_alloc`, with nothing changed.
    bool insert(unsigned int offset, std::string_view name);

    /// Takes out the child of a name, if there is one.
    void erase(std::string_view name) noexcept;

    /// Makes room for so many children.
    void reserve(std::size_t children);

    std::size_t size() const { return _entries - _dead; }

    /// The bytes of memory that it keeps.
    std::size_t footprint() const { return _bytes.capacity() + _slots.capacity() * sizeof(tSlot); }

    /// The children, in their order.
    std::vector<unsigned int> offsets() const;

private:
    /// What stands in `_bytes` before the bytes of each name.
    struct tHead {
        unsigned int offset;   ///< `BADOFF` for one that was taken out
        std::uint32_t length;  ///< of the name, in bytes
        std::uint32_t hash;    ///< see `hashOf`
    };

    struct tSlot {
        std::uint32_t hash = 0;
        std::uint32_t place = kFree;  ///< of an entry, in units of `kUnit` bytes
    };

    /// Up to so many entries are looked through one by one.
    static constexpr std::size_t kFew = 16;
    static constexpr std::size_t kUnit = 4;  ///< entries begin at multiples of it
    static constexpr std::uint32_t kFree = 0xFFFFFFFFu;
    static constexpr std::size_t kUsualName = 32;  ///< bytes, for a guess at the room that names take

    /// The bit of `_seen` for a name.
    static std::uint64_t markOf(std::uint32_t hash) { return std::uint64_t{1} << ((hash * 0x9E3779B1u) >> 26); }

    /// What tells most names apart: for a few, their lengths and ends are enough.
    std::uint32_t hashOf(std::string_view name) const { return _slots.empty() ? signature(name) : hash(name); }
    static std::uint32_t signature(std::string_view name);
    static std::uint32_t hash(std::string_view name);

    tHead head(std::size_t position) const;
    std::string_view name(std::size_t position, const tHead& head) const;
    /// The position behind an entry.
    static std::size_t next(std::size_t position, const tHead& head);

    /// Calls `visit(position, head)` for each living entry.
    template <class Visit>
    void each(Visit visit) const;

    /// The position of the living entry of a name; `npos` where there is none.
    std::size_t position(std::string_view name) const;

    /// Gives every entry its slot in a table of so many, a power of two, and lets the dead ones go.
    void rebuild(std::size_t slots);
    static void place(std::vector<tSlot>& slots, std::uint32_t hash, std::size_t position);

    std::string _bytes;         ///< the entries, one behind the other
    std::vector<tSlot> _slots;  ///< by hash, with linear probing; none for a few
    std::uint64_t _seen = 0;    ///< marks of the few: a name whose mark is missing is not among them
    std::size_t _entries = 0;   ///< dead ones included
    std::size_t _dead = 0;
};

}  // namespace lumivard::platform::data::Metadata
