#include "lumivard/platform/core/string/WideString.h"

#include "platform/string/UTF8.h"

namespace lumivard::platform::core::string {

WideString::WideString() = default;
WideString::WideString(const WideString& other) = default;
WideString::WideString(WideString&& other) noexcept = default;
WideString& WideString::operator=(const WideString& other) = default;
WideString& WideString::operator=(WideString&& other) noexcept = default;
WideString::~WideString() = default;

WideString::WideString(const wchar_t* text) {
    if (text) _text = text;
}

const wchar_t* WideString::value() const {
    return _text.empty() ? nullptr : _text.c_str();
}

WideString::operator const wchar_t*() const {
    return _text.c_str();
}

std::string WideString::string() const {
    std::string narrow;
    narrow.reserve(_text.size());
    for (const wchar_t character : _text) appendUTF8(narrow, static_cast<char32_t>(character));
    return narrow;
}

unsigned long WideString::length() const {
    return _text.size();
}

unsigned long WideString::bytes() const {
    return _text.size() * sizeof(wchar_t);
}

unsigned long WideString::rfind(wchar_t character) const {
    return _text.rfind(character);
}

WideString WideString::substr(unsigned long start, long long count) const {
    WideString part;
    if (start < _text.size()) {
        const auto wanted = count < 0 ? std::wstring::npos : static_cast<unsigned long>(count);
        part._text.assign(_text, start, wanted);
    }
    return part;
}

}  // namespace lumivard::platform::core::string
