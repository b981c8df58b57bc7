#include "tools/base/Text.h"

namespace lvp::tool {

namespace {

constexpr char kHex[] = "0123456789abcdef";

bool continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

/// The name of a control character in an escape: "n", "x1b".
std::string nameOf(unsigned int control) {
    switch (control) {
        case '\n':
            return "n";
        case '\t':
            return "t";
        case '\r':
            return "r";
        default:
            return {'x', kHex[control >> 4], kHex[control & 0x0F]};
    }
}

bool endsALineOrTurnsText(unsigned int character) {
    return (character >= 0x2028 && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069) ||
           character == 0x200E || character == 0x200F;
}

}  // namespace

tUnsafe unsafeAt(std::string_view text) {
    const auto byte = [text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    if (byte(0) < 0x20 || byte(0) == 0x7F) return {1, byte(0)};
    if (byte(0) == 0xC2 && byte(1) >= 0x80 && byte(1) < 0xA0) return {2, byte(1)};  // a C1 control
    if (byte(0) == 0xD8 && byte(1) == 0x9C) return {2, 0x061C};
    if (byte(0) != 0xE2 || (byte(1) & 0xC0) != 0x80 || (byte(2) & 0xC0) != 0x80) return {};
    const unsigned int character = 0x2000 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    return endsALineOrTurnsText(character) ? tUnsafe{3, character} : tUnsafe{};
}

std::string printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const tUnsafe found = unsafeAt(text.substr(i));
        if (found.bytes == 0) {
            out += text[i++];
            continue;
        }
        i += found.bytes;
        out += '\\';
        if (found.character < 0x100) {
            out += nameOf(found.character);
        } else {
            out += 'u';
            for (int shift = 12; shift >= 0; shift -= 4) out += kHex[found.character >> shift & 0x0F];
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
