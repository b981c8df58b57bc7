#include "stores/core/RecordHeap.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "lumivard/platform/core/memory/PooledHeap.h"

#if defined(__SANITIZE_ADDRESS__)
#define LVP_WATCHES_BLOCKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LVP_WATCHES_BLOCKS 1
#endif
#endif

namespace lumivard::platform::stores {
namespace {

using core::memory::PooledHeap;

constexpr unsigned int kSmallBlock = 64;  // a block up to this size is kept however little it holds

void copyBytes(std::byte* to, const void* from, unsigned int size) {
    if (size == sizeof(std::uint32_t)) {  // one field, the most frequent of all
        std::uint32_t field;
        std::memcpy(&field, from, sizeof field);
        std::memcpy(to, &field, sizeof field);
    } else if (size != 0) {
        std::memmove(to, from, size);  // which may lie in the same record
    }
}

}  // namespace

#if defined(LVP_WATCHES_BLOCKS)
const bool RecordHeap::kWatched = true;
const unsigned int RecordHeap::kLongestShared = 0;
#else
const bool RecordHeap::kWatched = false;
const unsigned int RecordHeap::kLongestShared = kKinds * kUnit;
#endif

/// The head of a slab, whose blocks stand behind it. Blocks that were never used lie at its end.
struct RecordHeap::Slab {
    struct Free {
        Free* next;
    };

    Slab* previous;
    Slab* next;
    Free* free;           // blocks that were given back
    unsigned int unused;  // where those begin that were never used
    unsigned int blocks;  // in use
    unsigned int size;    // of a block
    unsigned char kind;

    bool hasRoom() const noexcept { return free != nullptr || unused + size <= kSlabSize; }
};

/// The head of a block of its own, whose bytes stand at its end, so that nothing lies behind them. The head stands
/// before them where it may, which is less than its alignment away.
struct RecordHeap::Long {
    Long* previous;
    Long* next;
    std::size_t capacity;

    std::size_t size() const noexcept {
        return sizeof(Long) + (capacity + alignof(Long) - 1) / alignof(Long) * alignof(Long);
    }
    std::byte* bytes() noexcept { return reinterpret_cast<std::byte*>(this) + size() - capacity; }
    static Long* of(std::byte* bytes) noexcept {
        std::byte* const latest = bytes - sizeof(Long);
        return reinterpret_cast<Long*>(latest - reinterpret_cast<std::uintptr_t>(latest) % alignof(Long));
    }
};

void RecordHeap::assign(RecordBytes& bytes, const void* data, unsigned int size) {
    const unsigned int capacity = _capacity(bytes);
    if (size == 0 && bytes._kind == 0) {
        bytes = {};
    } else if (size <= capacity && (capacity <= kSmallBlock || size >= capacity / 2)) {
        copyBytes(bytes._data, data, size);
        bytes._size = size;
        _forgetLent(bytes);
    } else {
        RecordBytes fresh = _allocate(size);
        copyBytes(fresh._data, data, size);
        fresh._size = size;
        release(bytes);
        bytes = fresh;
    }
}

void RecordHeap::overwrite(RecordBytes& bytes, unsigned int position, const void* data, unsigned int size) {
    if (bytes._kind == 0) {
        _ownLent(bytes);
    } else if (_longestShared == 0 && bytes._kind == kLongKind) {
        RecordBytes fresh = _allocate(bytes._size);
        copyBytes(fresh._data, bytes._data, bytes._size);
        fresh._size = bytes._size;
        copyBytes(fresh._data + position, data, size);
        release(bytes);
        bytes = fresh;
        return;
    }
    copyBytes(bytes._data + position, data, size);
}

void RecordHeap::append(RecordBytes& bytes, const void* data, unsigned int size) {
    const std::uint64_t needed = std::uint64_t{bytes._size} + size;
    const unsigned int capacity = _capacity(bytes);
    if (needed <= capacity) {
        copyBytes(bytes._data + bytes._size, data, size);
        bytes._size += size;
        _forgetLent(bytes);
    } else {
        const std::uint64_t doubled = std::min<std::uint64_t>(std::uint64_t{capacity} * 2, UINT32_MAX);
        RecordBytes fresh = _allocate(std::max(needed, doubled));
        copyBytes(fresh._data, bytes._data, bytes._size);
        copyBytes(fresh._data + bytes._size, data, size);
        fresh._size = bytes._size + size;
        release(bytes);
        bytes = fresh;
    }
}

void RecordHeap::release(RecordBytes& bytes) noexcept {
    if (bytes._kind == kLongKind) {
        _giveLong(bytes._data);
    } else if (bytes._kind != 0) {
        _give(bytes._data);
    }
    bytes = {};
}

void RecordHeap::lend(RecordBytes& bytes, std::span<const std::byte> lent) noexcept {
    release(bytes);
    bytes._data = const_cast<std::byte*>(lent.data());  // which nobody writes to while there is no block
    bytes._size = static_cast<unsigned int>(lent.size());
}

bool RecordHeap::giveBack(RecordBytes& bytes) noexcept {
    if (!_remembersLent(bytes)) return false;
    std::byte* lent = nullptr;
    std::memcpy(&lent, bytes._data + _capacity(bytes), sizeof lent);
    if (std::memcmp(lent, bytes._data, bytes._size) != 0) return false;
    _give(bytes._data);
    bytes._data = lent;
    bytes._kind = 0;
    return true;
}

// The address stands behind the room for contents, which thereby stay as long as they are.
void RecordHeap::_ownLent(RecordBytes& bytes) {
    static_assert(sizeof(std::byte*) <= kUnit && kLongestLent <= (kKinds - 2) * kUnit);
    if (bytes._size == 0) return;
    const auto units = static_cast<unsigned char>((bytes._size + kUnit - 1) / kUnit + 1);
    std::byte* const block = _take(units);
    copyBytes(block, bytes._data, bytes._size);
    std::memcpy(block + (units - 1) * kUnit, &bytes._data, sizeof bytes._data);
    bytes._data = block;
    bytes._kind = units | kOfLent;
}

bool RecordHeap::_remembersLent(const RecordBytes& bytes) noexcept {
    return bytes._kind != kLongKind && (bytes._kind & kOfLent) != 0;
}

void RecordHeap::_forgetLent(RecordBytes& bytes) noexcept {
    if (_remembersLent(bytes)) bytes._kind &= static_cast<unsigned char>(~kOfLent);
}

void RecordHeap::clear() noexcept {
    while (_long) _giveLong(_long->bytes());
    for (const Region& region : _regions) {
        ::operator delete (region.memory, std::align_val_t{region.alignment});
        _footprint -= region.size;
    }
    _regions.clear();
    _roomy.fill(nullptr);
    _spare = nullptr;
    _slabs = 0;
}

// Gives a block for that many bytes, with nothing in it.
RecordBytes RecordHeap::_allocate(std::uint64_t capacity) {
    RecordBytes bytes;
    if (capacity == 0) return bytes;
    if (capacity > _longestShared) {
        bytes._data = _takeLong(static_cast<unsigned int>(capacity));
        bytes._kind = kLongKind;
    } else {
        const auto kind = static_cast<unsigned char>((capacity + kUnit - 1) / kUnit);
        bytes._data = _take(kind);
        bytes._kind = kind;
    }
    return bytes;
}

unsigned int RecordHeap::_capacity(const RecordBytes& bytes) noexcept {
    if (_remembersLent(bytes)) return (bytes._kind - kOfLent - 1) * kUnit;
    if (bytes._kind != kLongKind) return bytes._kind * kUnit;
    return static_cast<unsigned int>(Long::of(bytes._data)->capacity);
}

// --- Shared blocks

std::byte* RecordHeap::_take(unsigned char kind) {
    Slab& slab = _roomy[kind] ? *_roomy[kind] : _newSlab(kind);
    std::byte* block = reinterpret_cast<std::byte*>(slab.free);
    if (block) {
        slab.free = slab.free->next;
    } else {
        block = reinterpret_cast<std::byte*>(&slab) + slab.unused;
        slab.unused += slab.size;
    }
    ++slab.blocks;
    if (!slab.hasRoom()) _unlink(_roomy[kind], slab);
    return block;
}

void RecordHeap::_give(std::byte* block) noexcept {
    Slab& slab = _slabOf(block);
    if (!slab.hasRoom()) _link(_roomy[slab.kind], slab);
    slab.free = new (block) Slab::Free{slab.free};
    if (--slab.blocks != 0) return;
    _unlink(_roomy[slab.kind], slab);
    _link(_spare, slab);
}

RecordHeap::Slab& RecordHeap::_slabOf(std::byte* block) noexcept {
    const std::size_t behind = reinterpret_cast<std::uintptr_t>(block) % kSlabSize;
    return *reinterpret_cast<Slab*>(block - behind);
}

// Makes one that has all of its room, and lists it.
RecordHeap::Slab& RecordHeap::_newSlab(unsigned char kind) {
    static_assert(sizeof(Slab) % kUnit == 0);
    if (!_spare) _addRegion();
    Slab& slab = *_spare;
    _unlink(_spare, slab);
    slab = {nullptr, nullptr, nullptr, sizeof(Slab), 0, kind * kUnit, kind};
    _link(_roomy[kind], slab);
    return slab;
}

// A quarter of the slabs that there are more, within bounds: a small store takes little, a large one asks seldom. One
// that is large enough for it is asked for as one large page: to get it, and to find one's way in it, takes a small
// part of the time that 512 small ones do.
void RecordHeap::_addRegion() {
    const unsigned int count = std::clamp(_slabs / 4, 1U, kMostSlabs);
    const std::size_t size = count * kSlabSize;
    const std::size_t alignment = count == kMostSlabs ? size : kSlabSize;
    if (_regions.size() == _regions.capacity()) _regions.reserve(std::max<std::size_t>(16, _regions.size() * 2));
    auto* const memory = static_cast<std::byte*>(::operator new (size, std::align_val_t{alignment}));
    if (count == kMostSlabs) static_cast<void>(::madvise(memory, size, MADV_HUGEPAGE));  // where there are such pages
    _regions.push_back({memory, size, alignment});
    for (unsigned int i = count; i > 0; --i) _link(_spare, *new (memory + (i - 1) * kSlabSize) Slab{});
    _slabs += count;
    _footprint += size;
}

void RecordHeap::_link(Slab*& list, Slab& slab) noexcept {
    slab.previous = nullptr;
    slab.next = list;
    if (list) list->previous = &slab;
    list = &slab;
}

void RecordHeap::_unlink(Slab*& list, Slab& slab) noexcept {
    (slab.previous ? slab.previous->next : list) = slab.next;
    if (slab.next) slab.next->previous = slab.previous;
}

// --- Blocks of their own

std::byte* RecordHeap::_takeLong(unsigned int capacity) {
    Long head{nullptr, _long, capacity};
    Long* const made = new (PooledHeap::malloc(head.size())) Long(head);
    if (_long) _long->previous = made;
    _long = made;
    _footprint += made->size();
    return made->bytes();
}

void RecordHeap::_giveLong(std::byte* block) noexcept {
    Long* const given = Long::of(block);
    (given->previous ? given->previous->next : _long) = given->next;
    if (given->next) given->next->previous = given->previous;
    const std::size_t size = given->size();
    _footprint -= size;
    PooledHeap::free(given, size);
}

}  // namespace lumivard::platform::stores
