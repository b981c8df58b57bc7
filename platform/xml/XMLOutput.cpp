#include "platform/xml/XMLOutput.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/string/UTF8.h"

namespace lumivard::platform::core::xml {

namespace {

/// Texts are written so many characters at a time, for each of which there is room at its longest: `&quot;`.
constexpr std::size_t kCharactersAtOnce = 512;
constexpr std::size_t kLongestCharacter = 6;

/// Whether XML 1.0 has a place for the character, as itself or as a reference.
bool isCharacter(char32_t character) {
    if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
    return string::isScalarValue(character) && character != 0xFFFE && character != 0xFFFF;
}

/// What stands for a character in an attribute (`attribute`) or a text; empty where it stands for itself.
constexpr std::string_view reference(char32_t character, bool attribute) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return attribute ? "" : "&gt;";
        case '"':
            return attribute ? "&quot;" : "";
        case '\t':
            return attribute ? "&#9;" : "";
        case '\n':
            return attribute ? "&#10;" : "";
        case '\r':
            return "&#13;";
        default:
            return "";
    }
}

/// The characters that go out as one byte, as they are.
using tPlain = std::array<bool, 128>;

constexpr tPlain plainIn(bool attribute) {
    tPlain plain{};
    for (char32_t character = 0; character < plain.size(); ++character) {
        const bool carried = character >= 0x20 || character == '\t' || character == '\n';
        plain[character] = carried && reference(character, attribute).empty();
    }
    return plain;
}

constexpr tPlain kPlainInText = plainIn(false);
constexpr tPlain kPlainInAttribute = plainIn(true);

char* append(char* out, std::string_view bytes) {
    return std::copy(bytes.begin(), bytes.end(), out);
}

/// Appends a character that is not plain.
char* appendOdd(char* out, wchar_t wide, bool attribute) {
    const auto character = static_cast<char32_t>(wide);
    const std::string_view instead = reference(character, attribute);
    if (!instead.empty()) return append(out, instead);
    return utf8::unchecked::append(isCharacter(character) ? character : string::kReplacementCharacter, out);
}

}  // namespace

void XMLOutput::putAttribute(std::wstring_view text) {
    escape<true>(text);
}

void XMLOutput::putText(std::wstring_view text) {
    escape<false>(text);
}

void XMLOutput::finish() {
    const auto rest = static_cast<unsigned long>(std::exchange(_end, _block) - _block);
    if (rest != 0) _writer->write(_block, rest);
}

template <bool attribute>
void XMLOutput::escape(std::wstring_view text) {
    constexpr const tPlain& plain = attribute ? kPlainInAttribute : kPlainInText;
    while (!text.empty()) {
        const std::size_t count = std::min(text.size(), kCharactersAtOnce);
        char* out = room(count * kLongestCharacter);
        for (const wchar_t character : text.substr(0, count)) {
            const auto number = static_cast<std::size_t>(character);
            if (number < plain.size() && plain[number])
                *out++ = static_cast<char>(character);
            else
                out = appendOdd(out, character, attribute);
        }
        _end = out;
        text.remove_prefix(count);
    }
}

void XMLOutput::putLong(std::string_view bytes) {
    for (; bytes.size() > kBlock; bytes.remove_prefix(kBlock)) put(bytes.substr(0, kBlock));
    put(bytes);
}

void XMLOutput::drain() {
    _writer->write(_block, static_cast<unsigned long>(_end - _block));
    _end = _block;
}

}  // namespace lumivard::platform::core::xml
