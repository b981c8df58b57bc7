#include "tools/base/JsonWriter.h"

#include <cmath>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/core/string/WideString.h"

namespace lvp::tool {

namespace {

/// Control characters, those among them that end lines or turn the direction in which text is shown.
bool isControl(wchar_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x061C || character == 0x200E ||
           character == 0x200F || (character >= 0x2028 && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

/// A control character as \u and four digits.
std::wstring escape(wchar_t character) {
    constexpr wchar_t kDigits[] = L"0123456789abcdef";
    std::wstring text = L"\\u";
    for (int shift = 12; shift >= 0; shift -= 4) text += kDigits[(character >> shift) & 15];
    return text;
}

}  // namespace

JsonWriter& JsonWriter::key(const std::string& name) {
    separate();
    quote(name);
    _out << ':';
    _keyed = true;
    return *this;
}

void JsonWriter::value(const std::string& text) {
    separate();
    quote(text);
}

void JsonWriter::value(bool truth) {
    separate();
    _out << (truth ? "true" : "false");
}

void JsonWriter::value(double number) {
    writeReal(number);
}

void JsonWriter::value(float number) {
    writeReal(number);
}

void JsonWriter::writeReal(auto number) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    const std::string text(digits, end);
    if (std::isnan(number)) return value("nan");  // of either sign
    if (!std::isfinite(number)) return value(text);
    separate();
    _out << text;
}

void JsonWriter::literal(const std::string& text) {
    separate();
    _out << text;
}

void JsonWriter::writeHex(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string digits;
    digits.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        digits += kDigits[static_cast<unsigned char>(byte) >> 4];
        digits += kDigits[static_cast<unsigned char>(byte) & 15];
    }
    _out << digits;
}

void JsonWriter::begin(char bracket) {
    separate();
    _out << bracket;
    _first = true;
}

void JsonWriter::end(char bracket) {
    _out << bracket;
    _first = false;
}

void JsonWriter::separate() {
    if (!_first && !_keyed) _out << ',';
    _first = false;
    _keyed = false;
}

void JsonWriter::quote(const std::string& text) {
    using namespace lumivard::platform::core::string;
    std::wstring escaped;
    for (const wchar_t character : StringAlgorithm::UTF8Decode(text.c_str())) {
        if (character == L'"' || character == L'\\') escaped += L'\\';
        escaped += isControl(character) ? escape(character) : std::wstring(1, character);
    }
    _out << '"' << WideString(escaped.c_str()).string() << '"';
}

}  // namespace lvp::tool
