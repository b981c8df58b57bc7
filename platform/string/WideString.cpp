#include "lumivard/platform/core/string/WideString.h"

#include <algorithm>
#include <utility>

#include "platform/string/UTF8.h"

namespace lumivard::platform::core::string {

WideString::WideString() {
    *_inside = L'\0';
}

WideString::WideString(const wchar_t* text) {
    _assign(text ? std::wstring_view(text) : std::wstring_view());
}

WideString::WideString(const WideString& other) {
    _assign(other._view());
}

WideString::WideString(WideString&& other) noexcept {
    _takeFrom(other);
}

WideString& WideString::operator=(const WideString& other) {
    if (this != &other) _assign(other._view());
    return *this;
}

WideString& WideString::operator=(WideString&& other) noexcept {
    if (this != &other) _takeFrom(other);
    return *this;
}

WideString::~WideString() = default;

const wchar_t* WideString::value() const {
    return _length == 0 ? nullptr : _text();
}

WideString::operator const wchar_t*() const {
    return _text();
}

std::string WideString::string() const {
    std::string narrow;
    narrow.reserve(_length);
    for (const wchar_t character : _view()) appendUTF8(narrow, static_cast<char32_t>(character));
    return narrow;
}

unsigned long WideString::length() const {
    return _length;
}

unsigned long WideString::bytes() const {
    return _length * sizeof(wchar_t);
}

unsigned long WideString::rfind(wchar_t character) const {
    return _view().rfind(character);
}

WideString WideString::substr(unsigned long start, long long count) const {
    WideString part;
    if (start < _length) {
        const auto wanted = count < 0 ? std::wstring_view::npos : static_cast<unsigned long>(count);
        part._assign(_view().substr(start, wanted));
    }
    return part;
}

// The text is not one of this object.
void WideString::_assign(std::wstring_view text) {
    std::unique_ptr<wchar_t[]> outside;
    if (text.size() >= kInside) outside.reset(new wchar_t[text.size() + 1]);
    wchar_t* const place = outside ? outside.get() : _inside;
    text.copy(place, text.size());
    place[text.size()] = L'\0';
    _outside = std::move(outside);
    _length = text.size();
}

// Leaves no text there.
void WideString::_takeFrom(WideString& other) noexcept {
    _outside = std::move(other._outside);
    _length = other._length;
    if (!_outside) std::copy_n(other._inside, _length + 1, _inside);
    other._length = 0;
    *other._inside = L'\0';
}

}  // namespace lumivard::platform::core::string
