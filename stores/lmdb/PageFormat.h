#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace lumivard::platform::stores::lmdb {

/// The pages of an LMDB file as bytes, for those who measure before they map: the layout that LMDB 0.9 writes on 64-bit
/// machines, as far as a store file uses it (one unnamed database without duplicates, keys of 8 bytes).
///
///     page        0            8      10      12      14      16
///                +------------+------+-------+-------+-------+----------------------------------+
///                | number u64 | pad  | flags | lower | upper | u16 for each node ... nodes      |
///                +------------+------+-------+-------+-------+----------------------------------+
///                                     u16     u16     u16     from `lower` to `upper` is free
///     overflow    number, pad and flags alike, then u32: how many pages, then the bytes of one value
///     node        0      2      4       6          8
///                +------+------+-------+----------+-------------+--------------------------------+
///                | low  | high | flags | key size | key         | data, in a leaf                |
///                +------+------+-------+----------+-------------+--------------------------------+
///                 u16    u16    u16     u16        branch: low, high, flags are the child's page
///     pages 0, 1  a header, then the meta: u32 magic, u32 version, u64, u64 map size, two trees (free pages, records),
///                 u64 last page, u64 transaction
///     tree        u32 pad, u16 flags, u16 depth, u64 branch pages, leaf pages, overflow pages, entries, root
///
/// A leaf's node holds its data, or with `kBigData` the number of the overflow page that does. Nothing here checks what
/// it reads but for the ends of its buffer.
namespace page {

constexpr std::size_t kFlagsAt = 10;
constexpr std::size_t kLowerAt = 12;
constexpr std::size_t kUpperAt = 14;
constexpr std::size_t kCountAt = 12;  // of an overflow page
constexpr std::size_t kHeader = 16;
constexpr std::size_t kPointer = 2;

constexpr std::uint16_t kBranch = 0x01;
constexpr std::uint16_t kLeaf = 0x02;
constexpr std::uint16_t kOverflow = 0x04;
constexpr std::uint16_t kMeta = 0x08;

constexpr std::size_t kNodeHeader = 8;
constexpr std::uint16_t kBigData = 0x01;
constexpr std::size_t kKey = 8;
constexpr std::size_t kPageNumber = 8;

constexpr std::uint32_t kMagic = 0xBEEFC0DE;
constexpr std::uint32_t kVersion = 1;
constexpr std::uint16_t kIntegerKeys = 0x08;
constexpr std::uint16_t kOneFile = 0x4000;          // of the environment, kept with the tree of free pages
constexpr std::uint64_t kNone = ~std::uint64_t{0};  // the root of an empty tree
constexpr std::size_t kTree = 48;
constexpr std::size_t kMetaEnd = kHeader + 24 + 2 * kTree + 16;
static_assert(kMetaEnd == 152);

/// The sizes that a page may have, in bytes.
constexpr std::uint32_t kSmallest = 512;
constexpr std::uint32_t kLargest = 32768;

/// A number in host byte order at a position that lies in `bytes`.
template <class Number>
Number number(std::span<const std::byte> bytes, std::size_t at) {
    Number value{};
    std::memcpy(&value, bytes.subspan(at, sizeof value).data(), sizeof value);
    return value;
}

struct Tree {
    std::uint32_t pad = 0;
    std::uint16_t flags = 0;
    std::uint16_t depth = 0;
    std::uint64_t entries = 0;
    std::uint64_t root = kNone;
};

struct Meta {
    std::uint64_t page = 0;
    std::uint16_t flags = 0;
    std::uint32_t magic = 0;
    std::uint32_t version = 0;
    Tree free;
    Tree records;
    std::uint64_t lastPage = 0;
    std::uint64_t transaction = 0;

    /// The bytes of a page.
    std::uint32_t pageSize() const { return free.pad; }
};

/// What the first `kMetaEnd` bytes of page 0 or 1 say.
inline Meta meta(std::span<const std::byte> bytes) {
    const auto tree = [&](std::size_t at) {
        return Tree{number<std::uint32_t>(bytes, at), number<std::uint16_t>(bytes, at + 4),
                    number<std::uint16_t>(bytes, at + 6), number<std::uint64_t>(bytes, at + 32),
                    number<std::uint64_t>(bytes, at + 40)};
    };
    return {number<std::uint64_t>(bytes, 0),
            number<std::uint16_t>(bytes, kFlagsAt),
            number<std::uint32_t>(bytes, kHeader),
            number<std::uint32_t>(bytes, kHeader + 4),
            tree(kHeader + 24),
            tree(kHeader + 24 + kTree),
            number<std::uint64_t>(bytes, kHeader + 24 + 2 * kTree),
            number<std::uint64_t>(bytes, kHeader + 24 + 2 * kTree + 8)};
}

/// One node of a page.
struct Node {
    std::uint32_t size = 0;   ///< of a leaf's data, in bytes, wherever it lies
    std::uint16_t flags = 0;  ///< of a leaf's node
    std::uint16_t keySize = 0;
    std::uint64_t child = 0;  ///< the page below a branch's node
};

/// The node whose header lies at `at`.
inline Node node(std::span<const std::byte> bytes, std::size_t at) {
    const auto low = number<std::uint16_t>(bytes, at);
    const auto high = number<std::uint16_t>(bytes, at + 2);
    const auto flags = number<std::uint16_t>(bytes, at + 4);
    const std::uint32_t size = low | std::uint32_t{high} << 16;
    return {size, flags, number<std::uint16_t>(bytes, at + 6), size | std::uint64_t{flags} << 32};
}

/// How many pages a value of `size` bytes takes outside its leaf.
constexpr std::uint64_t overflowPages(std::uint64_t size, std::uint64_t pageSize) {
    return (kHeader + size + pageSize - 1) / pageSize;
}

/// The largest node, without its pointer, that keeps its data in the leaf: two of them fit in a page.
constexpr std::uint64_t largestNode(std::uint64_t pageSize) {
    return (((pageSize - kHeader) / 2) & ~std::uint64_t{1}) - kPointer;
}

}  // namespace page
}  // namespace lumivard::platform::stores::lmdb
