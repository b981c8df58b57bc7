#include "property/StringArrayImpl.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include "lumivard/platform/data/metadata/IPrimitive.h"

namespace lumivard::platform::data {

StringArrayImpl::StringArrayImpl(const wchar_t* packed, unsigned int length) {
    if (!packed) return;
    const wchar_t* const end = packed + length;
    for (const wchar_t* text = packed; text != end;) {
        const wchar_t* zero = std::find(text, end, L'\0');
        if (zero == end) return;
        _strings.emplace_back(text);
        text = zero + 1;
    }
}

WideString StringArrayImpl::get(unsigned int index) const {
    return index < _strings.size() ? _strings[index] : WideString();
}

void StringArrayImpl::add(WideString text) {
    _strings.push_back(std::move(text));
}

bool StringArrayImpl::write(metadata::IPrimitive* primitive) {
    if (!primitive) return false;
    const metadata::tValue kind = primitive->valuetype();
    if (kind < metadata::kUUID || kind > metadata::kVersion) return false;
    if (_strings.empty()) {
        primitive->reset(0);
        return true;
    }
    std::wstring packed;
    for (const WideString& text : _strings) packed.append(text, text.length()) += L'\0';
    if (packed.size() > std::numeric_limits<unsigned int>::max()) throw std::bad_alloc();
    primitive->set(packed.data(), 0, static_cast<unsigned int>(packed.size()));
    return true;
}

metadata::IStringArray* metadata::IStringArray::to(const wchar_t* packed, unsigned int length) {
    return new StringArrayImpl(packed, length);
}

}  // namespace lumivard::platform::data
