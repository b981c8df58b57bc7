#include "schema/Finder.h"

#include <algorithm>

#include <string>
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
    const std::wstring_view text(path);
    bool failed = false;
    for (std::size_t begin = 0; begin <= text.size();) {
        if (failed) {
            offset = BADOFF;
            return;
        }
        const std::size_t end = std::min(text.find(L'.', begin), text.size());
        const std::wstring piece(text.substr(begin, end - begin));
        begin = end + 1;

        const Record::Entity record(store, offset);
        const bool set =
            record.type() == Record::kRoot || record.type() == Record::kTable || record.type() == Record::kContainer;
        if (set) offset = Metadata::Set::search(store, record.children(), piece.c_str());
        failed = !set || offset == BADOFF;
    }
}

}  // namespace lumivard::platform::data::Schema
