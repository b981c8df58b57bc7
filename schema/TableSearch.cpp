#include "schema/TableSearch.h"

#include "metadata/Set.h"
#include "record/Entity.h"
#include "schema/Split.h"

namespace lumivard::platform::data::Schema {

tTable TableSearch::find(const std::wstring& path) {
    std::vector<std::wstring> pieces;
    split(path.c_str(), L'.', pieces);
    for (IDataStore* store : _stores) {
        if (store->extent() == 0) continue;
        const unsigned int offset = walk(store, pieces);
        if (Record::peek(store, offset) == Record::kTable) return {store, offset};
    }
    return {};
}

unsigned int TableSearch::walk(IDataStore* store, const std::vector<std::wstring>& pieces) {
    unsigned int offset = 0;
    for (const std::wstring& piece : pieces) {
        const tNames& known = names(store, Record::Entity(store, offset, Record::kInPlace).children());
        const auto found = known.find(piece);
        if (found == known.end()) return IDataStore::BADOFF;
        offset = found->second;
    }
    return offset;
}

const TableSearch::tNames& TableSearch::names(IDataStore* store, unsigned int list) {
    const auto [place, added] = _names[store].try_emplace(list);
    if (added) {
        for (const unsigned int child : Metadata::Set::children(store, list)) {
            place->second.emplace(Record::Entity(store, child, Record::kInPlace).name(), child);
        }
    }
    return place->second;
}

}  // namespace lumivard::platform::data::Schema
