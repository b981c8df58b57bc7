#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "lumivard/platform/core/Export.h"

/// Text, and what makes one form of it from another.
namespace lumivard::platform::core::string {

/// A value string of 4-byte wide characters: the form in which all public interfaces take and return text.
///
/// A string without characters is "no text": `value()` is null, and interfaces that tell a missing name from a given
/// one look at that. It holds no text with a zero character inside. Texts of up to 23 characters, as most names are,
/// lie inside the object and take no block of memory. Threads: as `std::wstring`.
class LVP_EXPORT WideString {
public:
    /// No text.
    WideString();

    /// Copies the text up to its zero character; null is no text.
    WideString(const wchar_t* text);  // NOLINT(google-explicit-constructor): callers pass literals

    /// Copies the text.
    WideString(const WideString& other);
    /// Takes the text over; `other` has none then.
    WideString(WideString&& other) noexcept;
    /// Copies the text. Where memory runs out, both are as they were.
    WideString& operator=(const WideString& other);
    /// Takes the text over; `other` has none then.
    WideString& operator=(WideString&& other) noexcept;
    ~WideString();

    /// The characters with their terminator, owned by this object and good until it changes; null when there are none.
    const wchar_t* value() const;

    /// The same, but an empty text instead of null.
    operator const wchar_t*() const;  // NOLINT(google-explicit-constructor)

    /// The text in UTF-8. A character that is no Unicode scalar value becomes U+FFFD.
    std::string string() const;

    /// The number of characters.
    unsigned long length() const;

    /// The size of the characters in bytes, without the terminator: four times `length()`.
    unsigned long bytes() const;

    /// The index of the last occurrence of `character`, or all bits set when there is none.
    unsigned long rfind(wchar_t character) const;

    /// The text of `count` characters from index `start`, or to the end for -1 or where the text ends before; empty
    /// when `start` is past the end.
    WideString substr(unsigned long start, long long count) const;

private:
    static constexpr std::size_t kInside = 24;

    const wchar_t* _text() const { return _outside ? _outside.get() : _inside; }
    std::wstring_view _view() const { return {_text(), _length}; }
    void _assign(std::wstring_view text);
    void _takeFrom(WideString& other) noexcept;

    std::size_t _length = 0;
    std::unique_ptr<wchar_t[]> _outside;  // of a text that is longer
    wchar_t _inside[kInside];  // NOLINT(modernize-avoid-c-arrays): its characters behind the text mean nothing
};

}  // namespace lumivard::platform::core::string
