#pragma once

#include <cstring>
#include <cwchar>
#include <string>
#include <string_view>

#include "tests/support/StoredRecords.h"

/// Records as hexadecimal text, for tests that compare them with what they should be byte by byte.
namespace lumivard::platform::test_support {

/// Bytes as lower-case hexadecimal digits, two a byte.
inline std::string hex(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += kDigits[value >> 4];
        text += kDigits[value & 15];
    }
    return text;
}

/// A stored record as hexadecimal digits; none for an offset that names no record.
inline std::string hex(core::storage::datastore::IDataStore* store, unsigned int offset) {
    return hex(stored::bytes(store, offset));
}

/// A 32-bit field as it lies in a record, in hexadecimal digits.
inline std::string hexWord(unsigned int value) {
    char bytes[sizeof(value)];
    std::memcpy(bytes, &value, sizeof(value));
    return hex(std::string_view(bytes, sizeof(bytes)));
}

/// The bytes of a text with its terminator, as a section of a record holds them.
inline std::string wide(const wchar_t* text) {
    return {reinterpret_cast<const char*>(text), (std::wcslen(text) + 1) * sizeof(wchar_t)};
}

/// The same in hexadecimal digits.
inline std::string hexText(const wchar_t* text) {
    return hex(wide(text));
}

/// A new record of those bytes, whatever they are.
inline unsigned int makeRecord(core::storage::datastore::IDataStore* store, std::string_view bytes) {
    return store->create(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

}  // namespace lumivard::platform::test_support
