#include "xml/Scalar.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <system_error>
#include <type_traits>

namespace lumivard::platform::data::Scalar {

namespace {

constexpr int kPrecision = 7;

bool isDigit(char character) {
    return '0' <= character && character <= '9';
}

/// Reads what nearly all numbers look like: digits, with or without a "-" before them. False, with `out` as it was, for
/// whatever a stream might see otherwise: white space, "+", words, a negative number where there is none, one that does
/// not fit, an exponent without digits.
template <class T>
bool castPlain(std::string_view text, T& out) {
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    if (first >= text.size() || !isDigit(text[first])) return false;
    const char* const end = text.data() + text.size();
    T value{};
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc()) return false;
    if (std::is_floating_point_v<T> && rest != end && (*rest == 'e' || *rest == 'E')) return false;
    out = value;
    return true;
}

/// The meaning of every text.
template <class T>
bool castByStream(std::string_view text, T& out) {
    std::istringstream stream{std::string(text)};
    stream.exceptions(std::ios_base::badbit);  // else memory that runs out would look like a text that is no number
    stream.imbue(std::locale::classic());
    stream >> out;
    return !stream.fail();
}

template <class T>
bool scanAs(std::string_view text, char* out) {
    T value;
    std::memcpy(&value, out, sizeof(value));
    const bool scanned = CastTo(text, value);
    std::memcpy(out, &value, sizeof(value));
    return scanned;
}

template <class Stored, class Printed>
void printAs(const char* value, wchar_t* out) {
    Stored stored;
    std::memcpy(&stored, value, sizeof(stored));
    ToWString(out, static_cast<Printed>(stored));
}

}  // namespace

template <class T>
bool CastTo(std::string_view text, T& out) {
    return castPlain(text, out) || castByStream(text, out);
}

template bool CastTo(std::string_view, int&);
template bool CastTo(std::string_view, unsigned int&);
template bool CastTo(std::string_view, long long&);
template bool CastTo(std::string_view, unsigned long long&);
template bool CastTo(std::string_view, float&);
template bool CastTo(std::string_view, double&);

template <class T>
void ToWString(wchar_t* out, const T& value) {
    char text[kLongest];
    std::to_chars_result result;
    if constexpr (std::is_floating_point_v<T>) {
        result = std::to_chars(text, text + kLongest, double{value}, std::chars_format::general, kPrecision);
    } else {
        result = std::to_chars(text, text + kLongest, value);
    }
    *std::copy(text, result.ptr, out) = L'\0';
}

template void ToWString(wchar_t*, const long long&);
template void ToWString(wchar_t*, const unsigned long long&);
template void ToWString(wchar_t*, const float&);
template void ToWString(wchar_t*, const double&);

bool scan(metadata::tValue kind, std::string_view text, char* out) {
    switch (kind) {
        case metadata::kBool:
        case metadata::kInt8:
        case metadata::kInt16:
        case metadata::kInt32:
            return scanAs<int>(text, out);
        case metadata::kUInt8:
        case metadata::kUInt16:
        case metadata::kUInt32:
            return scanAs<unsigned int>(text, out);
        case metadata::kInt64:
            return scanAs<long long>(text, out);
        case metadata::kUInt64:
            return scanAs<unsigned long long>(text, out);
        case metadata::kScalar:
            return scanAs<float>(text, out);
        case metadata::kDouble:
        case metadata::kVec2:
        case metadata::kVec3:
        case metadata::kVec4:
        case metadata::kMtx2x2:
        case metadata::kMtx3x3:
        case metadata::kMtx4x4:
            return scanAs<double>(text, out);
        default:
            return false;
    }
}

bool print(metadata::tValue kind, const char* value, wchar_t* out) {
    switch (kind) {
        case metadata::kBool:  // a byte, since one that is neither 0 nor 1 is no C++ bool
        case metadata::kUInt8:
            printAs<std::uint8_t, long long>(value, out);
            return true;
        case metadata::kInt8:
            printAs<std::int8_t, long long>(value, out);
            return true;
        case metadata::kInt16:
            printAs<std::int16_t, long long>(value, out);
            return true;
        case metadata::kUInt16:
            printAs<std::uint16_t, long long>(value, out);
            return true;
        case metadata::kInt32:
            printAs<std::int32_t, long long>(value, out);
            return true;
        case metadata::kUInt32:
            printAs<std::uint32_t, long long>(value, out);
            return true;
        case metadata::kInt64:
            printAs<std::int64_t, long long>(value, out);
            return true;
        case metadata::kUInt64:
            printAs<std::uint64_t, unsigned long long>(value, out);
            return true;
        case metadata::kScalar:
            printAs<float, float>(value, out);
            return true;
        case metadata::kDouble:
        case metadata::kVec2:
        case metadata::kVec3:
        case metadata::kVec4:
        case metadata::kMtx2x2:
        case metadata::kMtx3x3:
        case metadata::kMtx4x4:
            printAs<double, double>(value, out);
            return true;
        default:
            return false;
    }
}

unsigned int scanCount(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::uint64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range) return std::numeric_limits<unsigned int>::max();
    return static_cast<unsigned int>(negative ? 0 - number : number);
}

}  // namespace lumivard::platform::data::Scalar
