#include "stores/lmdb/HeaderFormat.h"

#include <cstring>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores::header {
namespace {

constexpr char kDamaged[] = "its header is damaged";

constexpr unsigned int kBadOffset = core::storage::datastore::IDataStore::BADOFF;

template <class Number>
void put(std::vector<std::byte>& value, std::size_t at, Number number) {
    std::memcpy(value.data() + at, &number, sizeof number);
}

template <class Number>
Number get(std::span<const std::byte> value, std::size_t at) {
    Number number;
    std::memcpy(&number, value.data() + at, sizeof number);
    return number;
}

std::size_t sizeIn(std::uint32_t format) {
    return format == kOldestFormat ? kTransactionAt : kSize;
}

}  // namespace

std::vector<std::byte> encode(const Stored& stored) {
    std::vector<std::byte> value(sizeIn(stored.format));
    put(value, kMagicAt, kMagic);
    put(value, kByteOrderAt, kByteOrder);
    put(value, kFormatAt, stored.format);
    put(value, kWideAt, std::uint32_t{sizeof(wchar_t)});
    put(value, kVersionAt, std::uint32_t{stored.header.version});
    put(value, kExtentAt, std::uint64_t{stored.header.extent});
    if (stored.format != kOldestFormat) put(value, kTransactionAt, stored.transaction);
    return value;
}

Stored decode(std::span<const std::byte> value, std::uint64_t length, std::uint32_t newest) {
    if (value.size() < kWideAt || get<std::array<char, kMagic.size()>>(value, kMagicAt) != kMagic) {
        throw EngineError(kMissing);
    }
    if (get<std::uint32_t>(value, kByteOrderAt) != kByteOrder) {
        throw EngineError("it was written on a machine with another byte order");
    }
    const auto format = get<std::uint32_t>(value, kFormatAt);
    if (format > newest) {
        throw EngineError("its format " + std::to_string(format) + " is newer than format " + std::to_string(newest) +
                          ", the last that this version can read");
    }
    if (format < kOldestFormat || length != sizeIn(format) + storedValue::trailer(format)) {
        throw EngineError(kDamaged);
    }
    try {
        value = storedValue::contents(kKey, value, format);
    } catch (const EngineError&) {
        throw EngineError(kDamaged);
    }
    if (get<std::uint32_t>(value, kWideAt) != sizeof(wchar_t)) {
        throw EngineError("it was written on a machine with another width of wide characters");
    }
    const Engine::Header header{get<std::uint64_t>(value, kExtentAt), get<std::uint32_t>(value, kVersionAt)};
    if (header.extent > kBadOffset) throw EngineError(kDamaged);
    return {header, format == kOldestFormat ? 0 : get<std::uint64_t>(value, kTransactionAt), format};
}

}  // namespace lumivard::platform::stores::header
