#pragma once

#include <cstddef>
#include <string_view>

#include "lumivard/platform/data/metadata/tValue.h"

/// Numbers as text: the one place where documents' numbers are read and written.
///
/// All conversions give exactly what the standard streams give in the classic "C" locale, whatever the process locale
/// is: "12abc" is 12, "-1" is an unsigned number too, a number that is too large gives its type's limit and fails.
/// Threads: any number at once.
namespace lumivard::platform::data::Scalar {

/// The widest value that `scan` writes, in bytes.
inline constexpr std::size_t kWidest = 8;

/// Room for the longest text that `print` makes, in bytes.
inline constexpr std::size_t kLongest = 64;

/// Reads a number from the start of a text; what follows it is not looked at. False when there is none or it does not
/// fit: `out` is then 0 or the limit of its type, and unchanged for a text of nothing but white space.
///
/// For `int`, `unsigned int`, `long long`, `unsigned long long`, `float` and `double`.
template <class T>
bool CastTo(std::string_view text, T& out);

/// Writes a number into `out`, which has room for `kLongest` bytes, and returns where its text ends: integers in plain
/// decimal, reals in the general form with 7 digits. There is no terminator.
///
/// For `long long`, `unsigned long long`, `float` and `double`.
template <class T>
char* toText(char* out, const T& value);

/// Reads one value of a kind, as `CastTo`. The integers of up to 4 bytes, bool included, are read as 32-bit numbers and
/// take 4 bytes in `out`: the value is the first of them, so 300 for an int8 is 44. `out` may be unaligned. False, with
/// nothing written, for a kind that is no number.
bool scan(metadata::tValue kind, std::string_view text, char* out);

/// Writes the value of a kind that stands at `value`, which may be unaligned, as `toText`. A bool is the number that
/// its byte holds. Null, with nothing written, for a kind that is no number.
char* print(metadata::tValue kind, const char* value, char* out);

/// The number at the start of a text, after white space and a sign, modulo 2^32; "-1" is 4294967295. 0 when there is
/// none. A number beyond 64 bits is 4294967295.
unsigned int scanCount(std::string_view text);

}  // namespace lumivard::platform::data::Scalar
