#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "stores/engine/Engine.h"
#include "stores/lmdb/StoredValue.h"

namespace lumivard::platform::stores {

/// The layout of a store file, formats 1 and 2.
///
/// The file is an LMDB environment without subdirectory, whose only database is the unnamed one, created with
/// MDB_INTEGERKEY. Its keys are 8-byte integers:
///
///     0 ... 0xFFFFFFFE   the records, by offset; the value is the record's contents
///     0x100000000        the header, whose contents are
///
///      0              8        12       16         20        24             32             40
///     +--------------+--------+--------+----------+---------+--------------+--------------+
///     | magic        | order  | format | wchar_t  | version | next offset  | transaction  |
///     | "LVPSTORE"   | u32    | u32    | u32      | u32     | u64          | u64          |
///     +--------------+--------+--------+----------+---------+--------------+--------------+
///
/// order: 0x01020304, by which a reader sees whether it counts bytes as the writer did. format: 2. wchar_t: the size of
/// a wide character in bytes, since records hold wide text. version: the store's number. next offset: how many were
/// handed out. transaction: the one that wrote the header, which is every one, so that an older state is not taken for
/// the newest. All numbers are in the byte order of the machine. Every later format keeps the first 16 bytes.
///
/// In format 1 the header ended before the transaction, and the checksums were not there that StoredValue.h tells of. A
/// file keeps its format as long as it lives; compacting makes one of the newest.
namespace header {

constexpr std::uint64_t kKey = 0x100000000;
constexpr std::array<char, 8> kMagic = {'L', 'V', 'P', 'S', 'T', 'O', 'R', 'E'};
constexpr std::uint32_t kByteOrder = 0x01020304;
constexpr std::uint32_t kFormat = 2;
constexpr std::uint32_t kOldestFormat = 1;

constexpr std::size_t kMagicAt = 0;
constexpr std::size_t kByteOrderAt = kMagicAt + kMagic.size();
constexpr std::size_t kFormatAt = kByteOrderAt + sizeof(std::uint32_t);
constexpr std::size_t kWideAt = kFormatAt + sizeof(std::uint32_t);
constexpr std::size_t kVersionAt = kWideAt + sizeof(std::uint32_t);
constexpr std::size_t kExtentAt = kVersionAt + sizeof(std::uint32_t);
constexpr std::size_t kTransactionAt = kExtentAt + sizeof(std::uint64_t);
constexpr std::size_t kSize = kTransactionAt + sizeof(std::uint64_t);
static_assert(kFormatAt + sizeof(std::uint32_t) == 16 && kTransactionAt == 32 && kSize == 40);

/// A header and the format of the file that it stands in.
struct Stored {
    Engine::Header header;
    std::uint64_t transaction = 0;  ///< 0 in format 1
    std::uint32_t format = kFormat;
};

/// The most bytes that a stored header has, in any format that this version reads.
constexpr std::size_t kLongest = kSize + storedValue::kChecksum;

/// Why a database without a header is refused.
constexpr char kMissing[] = "it is a database of another program";

/// The header's contents.
std::vector<std::byte> encode(const Stored& stored);

/// What a value says that was found at the header's key; of a longer one than `kLongest` the first bytes are enough,
/// with its whole length. Throws `EngineError` when this version cannot read the file; `newest` is the last format that
/// it can.
Stored decode(std::span<const std::byte> value, std::uint64_t length, std::uint32_t newest = kFormat);

}  // namespace header
}  // namespace lumivard::platform::stores
