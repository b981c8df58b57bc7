#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace lumivard::platform::data::Metadata {

/// The name of an open item: a wide text that does not change. Names are short, as a rule: those of up to 15 characters
/// lie inside, so that opening an item takes no block of memory for its name.
class Tag {
public:
    Tag() = default;

    /// Copies the bytes of a wide text without a zero, which may lie at any address.
    explicit Tag(std::string_view bytes) : _length(bytes.size() / sizeof(wchar_t)) {
        wchar_t* text = _inside;
        if (_length >= kInside) {
            _outside = std::make_unique<wchar_t[]>(_length + 1);
            text = _outside.get();
        }
        if (_length != 0) std::memcpy(text, bytes.data(), _length * sizeof(wchar_t));
        text[_length] = L'\0';
    }

    const wchar_t* text() const { return _outside ? _outside.get() : _inside; }
    std::wstring_view view() const { return {text(), _length}; }

private:
    static constexpr std::size_t kInside = 16;

    std::size_t _length = 0;
    std::unique_ptr<wchar_t[]> _outside;
    wchar_t _inside[kInside] = {};
};

}  // namespace lumivard::platform::data::Metadata
