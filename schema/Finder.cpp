#include "schema/Finder.h"

#include "metadata/Set.h"
#include "record/Entity.h"

namespace lumivard::platform::data::Schema {

namespace {

constexpr unsigned int BADOFF = IDataStore::BADOFF;

}  // namespace

Finder::Finder(IDataStore* store, unsigned int start, const wchar_t* path) : offset(BADOFF) {
    if (path) offset = Finder(store, start, std::wstring_view(path)).offset;
}

Finder::Finder(IDataStore* store, unsigned int start, std::wstring_view path) : offset(start) {
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
        const bool set = isSet(record.type());
        if (set) offset = Metadata::Set::search(store, record.children(), piece);
        failed = !set || offset == BADOFF;
    }
}

}  // namespace lumivard::platform::data::Schema
