#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lumivard::platform::stores {

class RecordHeap;

/// The contents of one record: in a block from a `RecordHeap`, which alone changes them and gives it back, or lent by
/// somebody else, who keeps them as they are. 13 bytes large, since there is one for each record; a copy is the same
/// record.
class RecordBytes {
public:
    unsigned int size() const noexcept { return _size; }
    std::span<const std::byte> view() const noexcept { return {_data, _size}; }

private:
    friend class RecordHeap;

    std::byte* _data = nullptr;
    unsigned int _size = 0;
    unsigned char _kind = 0;  // of its block, as the heap numbers them
};

/// The memory of all records of a store.
///
/// Short records are cut from slabs, which hold blocks of one length each and are found by the address of a block; a
/// slab of which nothing is used serves any other length. So a block costs no bytes of its own, to get one or to give
/// it back takes a few instructions, and what the heap keeps is bounded by the most that was used at one time. Long
/// records have blocks of their own. All of it goes with the heap, without a look at the records.
///
/// Does not know which records there are. Shared blocks begin at multiples of 8, others anywhere. What is copied may be
/// bytes of the record itself. A member that throws (`std::bad_alloc`) has changed nothing. Not thread-safe.
class RecordHeap {
public:
    /// Whether the address sanitizer watches what lies between blocks. It sees each record in a block of its own, and
    /// in another one after each overwriting, but for copies of lent contents.
    static const bool kWatched;

    /// Records of up to so many bytes share slabs.
    static const unsigned int kLongestShared;

    /// The longest contents that are lent: more than these are worth a copy that lasts.
    static constexpr unsigned int kLongestLent = 1000;

    explicit RecordHeap(unsigned int longestShared = kLongestShared) : _longestShared(longestShared) {}
    ~RecordHeap() { clear(); }
    RecordHeap(const RecordHeap&) = delete;
    RecordHeap& operator=(const RecordHeap&) = delete;

    /// Replaces the contents. Takes a new block only when the old one is too small, or more than twice too large.
    void assign(RecordBytes& bytes, const void* data, unsigned int size);

    /// Overwrites `size` bytes from `position` on, all of them inside. Lent contents are copied into a block before,
    /// which remembers them for `giveBack`.
    void overwrite(RecordBytes& bytes, unsigned int position, const void* data, unsigned int size);

    /// Adds to the end; `size() + size` must fit in 32 bits. Blocks grow by doubling, so that many small additions cost
    /// in proportion to the bytes added.
    void append(RecordBytes& bytes, const void* data, unsigned int size);

    /// Leaves no contents and gives the block back.
    void release(RecordBytes& bytes) noexcept;

    /// Makes lent bytes the contents, at most `kLongestLent` and at least one. They have to stand, and be as they are,
    /// as long as the record is looked at or copied; to `release` it and to replace its contents is always allowed.
    void lend(RecordBytes& bytes, std::span<const std::byte> lent) noexcept;

    /// Makes the lent contents of before, which have to stand still, the contents again and gives the block back, if
    /// only `overwrite` has changed them since and they are the same again. False otherwise, with nothing done.
    bool giveBack(RecordBytes& bytes) noexcept;

    /// Gives all blocks back; no record may be used any more.
    void clear() noexcept;

    /// Bytes that were taken from the system and not given back.
    std::size_t footprint() const noexcept { return _footprint; }

private:
    struct Slab;
    struct Long;

    static constexpr unsigned int kUnit = 8;             // lengths of shared blocks are multiples of it
    static constexpr unsigned char kKinds = 127;         // kind k is a shared block of k units, 0 is no block
    static constexpr unsigned char kOfLent = 128;        // is added where the last unit is the address of lent contents
    static constexpr unsigned char kLongKind = 255;      // a block of its own
    static constexpr std::size_t kSlabSize = 64 * 1024;  // and its alignment
    static constexpr unsigned int kMostSlabs = 32;       // that are taken from the system together

    struct Region {
        void* memory;
        std::size_t size;
        std::size_t alignment;
    };

    RecordBytes _allocate(std::uint64_t capacity);
    std::byte* _take(unsigned char kind);
    void _give(std::byte* block) noexcept;
    Slab& _newSlab(unsigned char kind);
    void _addRegion();
    std::byte* _takeLong(unsigned int capacity);
    void _giveLong(std::byte* block) noexcept;
    void _ownLent(RecordBytes& bytes);
    static void _forgetLent(RecordBytes& bytes) noexcept;
    static bool _remembersLent(const RecordBytes& bytes) noexcept;
    static unsigned int _capacity(const RecordBytes& bytes) noexcept;
    static Slab& _slabOf(std::byte* block) noexcept;
    static void _link(Slab*& list, Slab& slab) noexcept;
    static void _unlink(Slab*& list, Slab& slab) noexcept;

    const unsigned int _longestShared;
    std::array<Slab*, kKinds + 1> _roomy{};  // by kind: slabs that have room
    Slab* _spare = nullptr;                  // slabs of no kind
    Long* _long = nullptr;
    std::vector<Region> _regions;
    unsigned int _slabs = 0;
    std::size_t _footprint = 0;
};

}  // namespace lumivard::platform::stores
