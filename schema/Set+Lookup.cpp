#include <cwchar>
#include <string>

#include "metadata/Set.h"
#include "schema/Finder.h"

namespace lumivard::platform::data::Metadata {

unsigned int Set::lookup(const wchar_t* name) const {
    if (!name) return BADOFF;
    const wchar_t* dot = std::wcschr(name, L'.');
    if (!dot) return find(name);
    const unsigned int first = find(std::wstring(name, dot).c_str());
    return first == BADOFF ? BADOFF : Schema::Finder(_store, first, dot + 1).offset;
}

}  // namespace lumivard::platform::data::Metadata
