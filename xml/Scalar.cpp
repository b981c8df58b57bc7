#include "xml/Scalar.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <system_error>
#include <type_traits>

namespace lumivard::platform::data::Scalar {

namespace {

constexpr int kPrecision = 7;

constexpr std::size_t kShort = 18;  ///< so many digits fit in 64 bits

// The reals in the plain form with 7 digits: what lies between has a point somewhere in its digits, or up to 3 zeros
// before them.
constexpr double kLeastPlain = 1e-4;
constexpr double kMostPlain = 9999999.5;

constexpr std::uint64_t kTooManyDigits = 10'000'000;  ///< the first number of 8

/// 5 to the power of what such a real may be multiplied by 10 for.
constexpr std::uint64_t kFives[] = {1,      5,      25,      125,       625,       3'125,
                                    15'625, 78'125, 390'625, 1'953'125, 9'765'625, 48'828'125};

__extension__ typedef unsigned __int128 tWide;

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

/// The powers of 10 that a real of type `T` holds exactly, and the first integer that it may not hold.
template <class T>
struct tExact;
template <>
struct tExact<float> {
    static constexpr float kTens[] = {1e0f, 1e1f, 1e2f, 1e3f, 1e4f, 1e5f, 1e6f, 1e7f, 1e8f, 1e9f, 1e10f};
    static constexpr std::uint64_t kIntegers = std::uint64_t{1} << 24;
};
template <>
struct tExact<double> {
    static constexpr double kTens[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                       1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    static constexpr std::uint64_t kIntegers = std::uint64_t{1} << 53;
};

/// Reads the reals of `castPlain` that have few digits and nothing behind them: both their digits and the power of 10
/// that these are divided by are numbers without a rounding, so that the quotient is rounded once, as it should be.
template <class T>
bool castShort(std::string_view text, T& out) {
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    if (text.empty() || text.size() > kShort || !isDigit(text.front())) return false;
    std::uint64_t digits = 0;
    std::size_t point = text.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isDigit(text[i]))
            digits = digits * 10 + static_cast<std::uint64_t>(text[i] - '0');
        else if (text[i] == '.' && point == text.size())
            point = i;
        else
            return false;
    }
    const std::size_t places = point == text.size() ? 0 : text.size() - point - 1;
    if (digits >= tExact<T>::kIntegers || places >= std::size(tExact<T>::kTens)) return false;
    const T value = static_cast<T>(digits) / tExact<T>::kTens[places];
    out = negative ? -value : value;
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

constexpr int kFractionBits = 52;  ///< of a double, without the one that is not stored

/// The power of 2 that a positive number, which is not tiny, begins with.
int exponentOf(double magnitude) {
    constexpr int kBias = 1023;
    return static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> kFractionBits) - kBias;
}

/// The integer next to `magnitude` times 10 to the power of `places`, an even one of two that are as near. Exact: the
/// 53 bits of the number times a power of 5 have at most 79.
std::uint64_t scaled(double magnitude, int places) {
    const std::uint64_t hidden = std::uint64_t{1} << kFractionBits;
    const std::uint64_t fraction = std::bit_cast<std::uint64_t>(magnitude) & (hidden - 1);
    const tWide product = tWide{fraction | hidden} * kFives[places];
    const int shift = kFractionBits - exponentOf(magnitude) - places;
    const auto whole = static_cast<std::uint64_t>(product >> shift);
    const tWide rest = product - (tWide{whole} << shift);
    const tWide half = tWide{1} << (shift - 1);
    const bool up = rest > half || (rest == half && (whole & 1) != 0);
    return whole + (up ? 1 : 0);
}

/// Writes the digits of a real with a point before the last `places` of them, and no zeros at the end behind it.
char* placePoint(char* out, std::uint64_t number, int places) {
    char digits[kPrecision];
    for (int i = kPrecision; i-- > 0; number /= 10) digits[i] = static_cast<char>('0' + number % 10);
    const int whole = std::max(kPrecision - places, 0);
    int end = kPrecision;
    while (end > whole && digits[end - 1] == '0') --end;
    if (whole == 0) *out++ = '0';
    out = std::copy(digits, digits + whole, out);
    if (end == whole) return out;
    *out++ = '.';
    out = std::fill_n(out, std::max(places - kPrecision, 0), '0');
    return std::copy(digits + whole, digits + end, out);
}

/// Writes a real as `std::to_chars` does in the general form with `kPrecision` digits, many times faster where that
/// comes to a plain form.
char* printReal(char* out, double value) {
    const double magnitude = std::fabs(value);
    if (!(magnitude >= kLeastPlain && magnitude < kMostPlain)) {
        return std::to_chars(out, out + kLongest, value, std::chars_format::general, kPrecision).ptr;
    }
    if (std::signbit(value)) *out++ = '-';
    // The power of 10 follows from that of 2, or is one more.
    int places = kPrecision - 1 - ((exponentOf(magnitude) * 1233) >> 12);
    std::uint64_t digits = scaled(magnitude, places);
    if (digits >= kTooManyDigits) digits = scaled(magnitude, --places);
    return placePoint(out, digits, places);
}

template <class Stored, class Printed>
char* printAs(const char* value, char* out) {
    Stored stored;
    std::memcpy(&stored, value, sizeof(stored));
    return toText(out, static_cast<Printed>(stored));
}

}  // namespace

template <class T>
bool CastTo(std::string_view text, T& out) {
    if constexpr (std::is_floating_point_v<T>) {
        if (castShort(text, out)) return true;
    }
    return castPlain(text, out) || castByStream(text, out);
}

template bool CastTo(std::string_view, int&);
template bool CastTo(std::string_view, unsigned int&);
template bool CastTo(std::string_view, long long&);
template bool CastTo(std::string_view, unsigned long long&);
template bool CastTo(std::string_view, float&);
template bool CastTo(std::string_view, double&);

template <class T>
char* toText(char* out, const T& value) {
    if constexpr (std::is_floating_point_v<T>) {
        return printReal(out, double{value});
    } else {
        return std::to_chars(out, out + kLongest, value).ptr;
    }
}

template char* toText(char*, const long long&);
template char* toText(char*, const unsigned long long&);
template char* toText(char*, const float&);
template char* toText(char*, const double&);

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

char* print(metadata::tValue kind, const char* value, char* out) {
    switch (kind) {
        case metadata::kBool:  // a byte, since one that is neither 0 nor 1 is no C++ bool
        case metadata::kUInt8:
            return printAs<std::uint8_t, long long>(value, out);
        case metadata::kInt8:
            return printAs<std::int8_t, long long>(value, out);
        case metadata::kInt16:
            return printAs<std::int16_t, long long>(value, out);
        case metadata::kUInt16:
            return printAs<std::uint16_t, long long>(value, out);
        case metadata::kInt32:
            return printAs<std::int32_t, long long>(value, out);
        case metadata::kUInt32:
            return printAs<std::uint32_t, long long>(value, out);
        case metadata::kInt64:
            return printAs<std::int64_t, long long>(value, out);
        case metadata::kUInt64:
            return printAs<std::uint64_t, unsigned long long>(value, out);
        case metadata::kScalar:
            return printAs<float, float>(value, out);
        case metadata::kDouble:
        case metadata::kVec2:
        case metadata::kVec3:
        case metadata::kVec4:
        case metadata::kMtx2x2:
        case metadata::kMtx3x3:
        case metadata::kMtx4x4:
            return printAs<double, double>(value, out);
        default:
            return nullptr;
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
