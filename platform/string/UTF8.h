#pragma once

#include <iterator>
#include <string>

#include <utf8.h>

namespace lumivard::platform::core::string {

/// What stands for a character that cannot be told or written.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;

/// Whether a number is a Unicode scalar value: within the code space and no surrogate.
constexpr bool isScalarValue(char32_t character) {
    return character < 0xD800 || (character > 0xDFFF && character <= 0x10FFFF);
}

/// Adds one character to `out` in UTF-8; what is no scalar value goes in as U+FFFD.
inline void appendUTF8(std::string& out, char32_t character) {
    if (character < 0x80)
        out.push_back(static_cast<char>(character));
    else
        utf8::unchecked::append(isScalarValue(character) ? character : kReplacementCharacter, std::back_inserter(out));
}

}  // namespace lumivard::platform::core::string
