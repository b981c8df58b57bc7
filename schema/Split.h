#pragma once

#include <string>
#include <vector>

namespace lumivard::platform::data::Schema {

/// Appends the pieces of a text between its separators to `out`, as they are and empty ones included: there is always
/// a last piece, so the empty text has one.
void split(const wchar_t* text, wchar_t separator, std::vector<std::wstring>& out);

}  // namespace lumivard::platform::data::Schema
