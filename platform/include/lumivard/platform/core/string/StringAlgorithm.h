#pragma once

#include <string>
#include <string_view>

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::core::string {

/// Conversions between text forms, none of which looks at the process locale.
class LVP_EXPORT StringAlgorithm {
public:
    /// Decodes UTF-8 up to the zero byte; null is the empty text. What is no UTF-8 becomes U+FFFD: one for a lead byte
    /// that begins no character (its sequence is broken off, longer than it need be, a surrogate or beyond 0x10FFFF)
    /// together with all continuation bytes behind it, and one for any other byte out of place.
    static std::wstring UTF8Decode(const char* text);

    /// The same for a text of known length, which ends at no zero, into a string whose memory is used again.
    static void UTF8Decode(std::string_view bytes, std::wstring& out);

    /// Encodes `size` bytes as base64 (RFC 4648, section 4, padded, one line) into `out`, without a terminator, and
    /// returns the number of characters. With a null `out` nothing is written and only the number is returned.
    static unsigned long EncodeBase64(const void* data, unsigned long size, char* out);

    /// Decodes base64 text into `out` and returns the number of bytes. With a null `out` nothing is written and only
    /// the number is returned. XML's white space (space, tab, line feed, carriage return) is passed over anywhere, and
    /// padding may be missing, wholly or in part. Text that is not base64 otherwise (a foreign character, anything
    /// after padding, more padding than the last group lacks, a last group of one character) decodes to nothing: `out`
    /// is not touched and the result is 0, as for null. Bits of the last group that belong to no whole byte are not
    /// looked at.
    static unsigned long DecodeBase64(const char* text, void* out);
};

}  // namespace lumivard::platform::core::string
