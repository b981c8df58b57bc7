#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::data::Schema {

using core::storage::datastore::IDataStore;

/// Where a table lies.
struct tTable {
    IDataStore* store = nullptr;
    unsigned int offset = IDataStore::BADOFF;

    explicit operator bool() const { return store != nullptr; }
};

/// Finds tables by their dotted paths from the top of some stores. It indexes the names of each set that a path leads
/// through, so that thousands of names cost little more than one; so it lives no longer than one call of a client, in
/// which the stores do not change.
class TableSearch {
public:
    explicit TableSearch(std::vector<IDataStore*> stores) : _stores(std::move(stores)) {}

    /// The table of that path in the first store that has one; none when no store has.
    tTable find(const std::wstring& path);

private:
    using tNames = std::unordered_map<std::wstring, unsigned int>;

    unsigned int walk(IDataStore* store, const std::vector<std::wstring>& pieces);

    /// The names in a list of children.
    const tNames& names(IDataStore* store, unsigned int list);

    std::vector<IDataStore*> _stores;
    std::unordered_map<IDataStore*, std::unordered_map<unsigned int, tNames>> _names;  // by store and list
};

}  // namespace lumivard::platform::data::Schema
