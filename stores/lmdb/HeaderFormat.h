#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "stores/engine/Engine.h"

namespace lumivard::platform::stores {

/// The layout of a store file, format 1.
///
/// The file is an LMDB environment without subdirectory, whose only database is the unnamed one, created with
/// MDB_INTEGERKEY. Its keys are 8-byte integers:
///
///     0 ... 0xFFFFFFFE   the records, by offset; the value is the record's contents, nothing else
///     0x100000000        the header, whose value is
///
///      0              8        12       16         20        24             32
///     +--------------+--------+--------+----------+---------+--------------+
///     | magic        | order  | format | wchar_t  | version | next offset  |
///     | "LVPSTORE"   | u32    | u32    | u32      | u32     | u64          |
///     +--------------+--------+--------+----------+---------+--------------+
///
/// order: 0x01020304, by which a reader sees whether it counts bytes as the writer did. format: 1. wchar_t: the size of
/// a wide character in bytes, since records hold wide text. version: the store's number. next offset: how many were
/// handed out. All numbers are in the byte order of the machine. Every later format keeps the first 16 bytes.
namespace header {

constexpr std::uint64_t kKey = 0x100000000;
constexpr std::array<char, 8> kMagic = {'L', 'V', 'P', 'S', 'T', 'O', 'R', 'E'};
constexpr std::uint32_t kByteOrder = 0x01020304;
constexpr std::uint32_t kFormat = 1;

constexpr std::size_t kMagicAt = 0;
constexpr std::size_t kByteOrderAt = kMagicAt + kMagic.size();
constexpr std::size_t kFormatAt = kByteOrderAt + sizeof(std::uint32_t);
constexpr std::size_t kWideAt = kFormatAt + sizeof(std::uint32_t);
constexpr std::size_t kVersionAt = kWideAt + sizeof(std::uint32_t);
constexpr std::size_t kExtentAt = kVersionAt + sizeof(std::uint32_t);
constexpr std::size_t kSize = kExtentAt + sizeof(std::uint64_t);
static_assert(kFormatAt + sizeof(std::uint32_t) == 16 && kSize == 32);

/// The header's value.
std::array<std::byte, kSize> encode(const Engine::Header& header);

/// What a value says that was found at the header's key. Throws `EngineError` when this version cannot read the file.
Engine::Header decode(std::span<const std::byte> value);

}  // namespace header
}  // namespace lumivard::platform::stores
