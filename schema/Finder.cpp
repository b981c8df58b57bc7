#include "schema/Finder.h"

#include <string>
#include <vector>

#include "metadata/Set.h"
#include "record/Entity.h"
#include "schema/Split.h"

namespace lumivard::platform::data::Schema {

Finder::Finder(IDataStore* store, unsigned int start, const wchar_t* path) : offset(start) {
    constexpr unsigned int BADOFF = IDataStore::BADOFF;
    if (!path) {
        offset = BADOFF;
        return;
    }
    std::vector<std::wstring> pieces;
    split(path, L'.', pieces);
    bool failed = false;
    for (const std::wstring& piece : pieces) {
        if (failed) {
            offset = BADOFF;
            return;
        }
        const Record::Entity record(store, offset);
        const bool set =
            record.type() == Record::kRoot || record.type() == Record::kTable || record.type() == Record::kContainer;
        if (set) offset = Metadata::Set::search(store, record.children(), piece.c_str());
        failed = !set || offset == BADOFF;
    }
}

}  // namespace lumivard::platform::data::Schema
