#include "lumivard/platform/core/string/StringAlgorithm.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <string_view>

#include "platform/string/UTF8.h"

namespace lumivard::platform::core::string {

static_assert(sizeof(wchar_t) == 4, "wide text is UTF-32");

namespace {

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kBase64Pad = '=';
constexpr unsigned char kNoDigit = 64;

constexpr auto kBase64Values = [] {
    std::array<unsigned char, 256> values{};
    values.fill(kNoDigit);
    for (unsigned char i = 0; i < kBase64Digits.size(); ++i) values[static_cast<unsigned char>(kBase64Digits[i])] = i;
    return values;
}();

unsigned char base64Value(char digit) {
    return kBase64Values[static_cast<unsigned char>(digit)];
}

bool isSpace(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// Up to this length, in bytes, a text is decoded at once as if it were ASCII: most are.
constexpr std::size_t kShort = 64;

/// Makes bytes wide characters; false where one is not ASCII.
bool widen(std::string_view bytes, wchar_t* out) {
    for (const char byte : bytes) {
        const auto character = static_cast<unsigned char>(byte);
        if (character >= 0x80) return false;
        *out++ = character;
    }
    return true;
}

bool isASCII(std::string_view bytes) {
    unsigned all = 0;
    for (const char byte : bytes) all |= static_cast<unsigned char>(byte);
    return all < 0x80;
}

/// The number of bytes that a base64 text stands for; 0 when it is not base64.
unsigned long decodedSize(const char* text) {
    unsigned long digits = 0;
    unsigned long pads = 0;
    for (; *text; ++text) {
        if (isSpace(*text)) continue;
        if (*text == kBase64Pad)
            ++pads;
        else if (pads != 0 || base64Value(*text) == kNoDigit)
            return 0;
        else
            ++digits;
    }
    const unsigned long rest = digits % 4;
    const unsigned long missing = rest == 0 ? 0 : 4 - rest;
    if (rest == 1 || pads > missing) return 0;
    return digits / 4 * 3 + (rest == 0 ? 0 : rest - 1);
}

}  // namespace

std::wstring StringAlgorithm::UTF8Decode(const char* text) {
    std::wstring wide;
    if (text) UTF8Decode(text, wide);
    return wide;
}

void StringAlgorithm::UTF8Decode(std::string_view bytes, std::wstring& out) {
    if (bytes.size() <= kShort) {
        out.resize(bytes.size());
        if (widen(bytes, out.data())) return;
    } else if (isASCII(bytes)) {
        out.resize(bytes.size());
        std::copy(bytes.begin(), bytes.end(), out.begin());
        return;
    }
    std::string mended;
    if (!utf8::is_valid(bytes.begin(), bytes.end())) {
        utf8::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(mended));
        bytes = mended;
    }
    out.resize(static_cast<unsigned long>(utf8::unchecked::distance(bytes.begin(), bytes.end())));
    utf8::unchecked::utf8to32(bytes.begin(), bytes.end(), out.data());
}

unsigned long StringAlgorithm::EncodeBase64(const void* data, unsigned long size, char* out) {
    const unsigned long rest = size % 3;
    const unsigned long length = size / 3 * 4 + (rest == 0 ? 0 : 4);
    if (!out) return length;
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (unsigned long i = 0; i < size; i += 3) {
        const unsigned long left = size - i;
        const unsigned second = left > 1 ? bytes[i + 1] : 0u;
        const unsigned third = left > 2 ? bytes[i + 2] : 0u;
        const unsigned group = static_cast<unsigned>(bytes[i]) << 16 | second << 8 | third;
        *out++ = kBase64Digits[group >> 18];
        *out++ = kBase64Digits[group >> 12 & 63];
        *out++ = left > 1 ? kBase64Digits[group >> 6 & 63] : kBase64Pad;
        *out++ = left > 2 ? kBase64Digits[group & 63] : kBase64Pad;
    }
    return length;
}

unsigned long StringAlgorithm::DecodeBase64(const char* text, void* out) {
    if (!text) return 0;
    const unsigned long size = decodedSize(text);
    if (!out) return size;
    auto* bytes = static_cast<unsigned char*>(out);
    unsigned group = 0;
    unsigned bits = 0;
    for (const auto* end = bytes + size; bytes != end; ++text) {
        const unsigned value = base64Value(*text);
        if (value == kNoDigit) continue;
        group = group << 6 | value;
        bits += 6;
        if (bits < 8) continue;
        bits -= 8;
        *bytes++ = static_cast<unsigned char>(group >> bits);
    }
    return size;
}

}  // namespace lumivard::platform::core::string
