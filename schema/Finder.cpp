#include "schema/Finder.h"

#include <string_view>

#include "metadata/Set.h"
#include "record/Entity.h"

namespace lumivard::platform::data::Schema {

Finder::Finder(IDataStore* store, unsigned int start, const wchar_t* path) : offset(start) {
    constexpr unsigned int BADOFF = IDataStore::BADOFF;
    if (!path) {
        offset = BADOFF;
        return;
    }
    std::wstring_view rest = path;
    for (bool failed = false, last = false; !last;) {
        if (failed) {
            offset = BADOFF;
            return;
        }
        const std::size_t dot = rest.find(L'.');
        last = dot == std::wstring_view::npos;
        const std::wstring_view piece = rest.substr(0, dot);
        if (!last) rest.remove_prefix(dot + 1);
        const Record::Entity record(store, offset, Record::kInPlace);
        const bool set =
            record.type() == Record::kRoot || record.type() == Record::kTable || record.type() == Record::kContainer;
        if (set) offset = Metadata::Set::search(store, record.children(), piece);
        failed = !set || offset == BADOFF;
    }
}

}  // namespace lumivard::platform::data::Schema
