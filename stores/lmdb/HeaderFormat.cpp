#include "stores/lmdb/HeaderFormat.h"

#include <cstring>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores::header {
namespace {

constexpr unsigned int kBadOffset = core::storage::datastore::IDataStore::BADOFF;

template <class Number>
void put(std::array<std::byte, kSize>& value, std::size_t at, Number number) {
    std::memcpy(value.data() + at, &number, sizeof number);
}

template <class Number>
Number get(std::span<const std::byte> value, std::size_t at) {
    Number number;
    std::memcpy(&number, value.data() + at, sizeof number);
    return number;
}

}  // namespace

std::array<std::byte, kSize> encode(const Engine::Header& header) {
    std::array<std::byte, kSize> value{};
    put(value, kMagicAt, kMagic);
    put(value, kByteOrderAt, kByteOrder);
    put(value, kFormatAt, kFormat);
    put(value, kWideAt, std::uint32_t{sizeof(wchar_t)});
    put(value, kVersionAt, std::uint32_t{header.version});
    put(value, kExtentAt, std::uint64_t{header.extent});
    return value;
}

Engine::Header decode(std::span<const std::byte> value) {
    if (value.size() < kWideAt || get<std::array<char, kMagic.size()>>(value, kMagicAt) != kMagic) {
        throw EngineError("it is a database of another program");
    }
    if (get<std::uint32_t>(value, kByteOrderAt) != kByteOrder) {
        throw EngineError("it was written on a machine with another byte order");
    }
    const auto format = get<std::uint32_t>(value, kFormatAt);
    if (format > kFormat) {
        throw EngineError("its format " + std::to_string(format) + " is newer than format " + std::to_string(kFormat) +
                          ", the last that this version can read");
    }
    if (format != kFormat || value.size() != kSize) throw EngineError("its header is damaged");
    if (get<std::uint32_t>(value, kWideAt) != sizeof(wchar_t)) {
        throw EngineError("it was written on a machine with another width of wide characters");
    }
    const Engine::Header header{get<std::uint64_t>(value, kExtentAt), get<std::uint32_t>(value, kVersionAt)};
    if (header.extent > kBadOffset) throw EngineError("its header is damaged");
    return header;
}

}  // namespace lumivard::platform::stores::header
