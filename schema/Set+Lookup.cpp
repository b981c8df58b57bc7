#include <cwchar>
#include <string_view>

#include "metadata/Set.h"
#include "schema/Finder.h"

namespace lumivard::platform::data::Metadata {

unsigned int Set::lookup(const wchar_t* name) const {
    if (!name) return BADOFF;
    const wchar_t* dot = std::wcschr(name, L'.');
    if (!dot) return find(name);
    const unsigned int first = find(std::wstring_view(name, static_cast<std::size_t>(dot - name)));
    return first == BADOFF ? BADOFF : Schema::Finder(_store, first, dot + 1).offset;
}

}  // namespace lumivard::platform::data::Metadata
