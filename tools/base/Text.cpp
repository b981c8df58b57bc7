#include "tools/base/Text.h"

namespace lvp::tool {

namespace {

constexpr char kHex[] = "0123456789abcdef";

bool continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

/// Whether a character begins here that ends a line or turns the direction in which text is shown: U+200E, U+200F,
/// U+2028 to U+202E, U+2066 to U+2069.
bool isTurn(std::string_view text) {
    const std::string_view begin = text.substr(0, 2);
    const auto last = static_cast<unsigned char>(text.size() < 3 ? 0 : text[2]);
    return (begin == "\xE2\x80" && ((last >= 0xA8 && last <= 0xAE) || last == 0x8E || last == 0x8F)) ||
           (begin == "\xE2\x81" && last >= 0xA6 && last <= 0xA9);
}

/// Such a character as \u and four digits.
std::string turnEscape(std::string_view text) {
    const auto last = static_cast<unsigned char>(text[2] & 0x3F);
    const unsigned int high = (text[1] == '\x80' ? 0u : 4u) + (last >> 4);
    return std::string("\\u20") + kHex[high] + kHex[last & 0x0F];
}

void appendEscape(std::string& out, unsigned char byte) {
    switch (byte) {
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            out += "\\x";
            out += kHex[byte >> 4];
            out += kHex[byte & 0x0F];
    }
}

}  // namespace

std::string printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte == 0x7F) {
            appendEscape(out, byte);
        } else if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0) {
            appendEscape(out, static_cast<unsigned char>(text[++i]));  // a C1 control, U+0080 to U+009F
        } else if (text.substr(i, 2) == "\xD8\x9C") {                  // U+061C, another of the kind
            out += "\\u061c";
            ++i;
        } else if (isTurn(text.substr(i))) {
            out += turnEscape(text.substr(i));
            i += 2;
        } else {
            out += text[i];
        }
    }
    return out;
}

std::string shortened(std::string_view text, std::size_t columns) {
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (continuation(text[i])) continue;
        if (++characters > columns) return printable(text.substr(0, i)) + "…";
    }
    return printable(text);
}

}  // namespace lvp::tool
