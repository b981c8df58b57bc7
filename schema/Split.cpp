#include "schema/Split.h"

#include <cwchar>

namespace lumivard::platform::data::Schema {

void split(const wchar_t* text, wchar_t separator, std::vector<std::wstring>& out) {
    while (const wchar_t* end = std::wcschr(text, separator)) {
        out.emplace_back(text, end);
        text = end + 1;
    }
    out.emplace_back(text);
}

}  // namespace lumivard::platform::data::Schema
