#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

/// What can be reached in a store.
namespace lumivard::platform::test_support::walks {

using core::storage::datastore::IDataStore;

/// What stays the same of an item whatever a repair does to its surroundings: all that the public interfaces tell of it
/// by itself. Left out is what a repair may set right, and nothing else: which item it names as its owner, which list
/// it names as its children (entries that lead nowhere, or to a second place, go), and how many objects it counts.
struct tItem {
    std::wstring name;

    /// All else, each under what it is called: "kind", "flags", "localized names", and what an item of that kind has.
    std::vector<std::pair<std::string_view, std::string>> told;
};

/// The top and all items below it, each before its children, as they are listed, and each with the "number of children"
/// that it has. Of a sound store only: another may have no end.
std::vector<tItem> inOrder(IDataStore& store);

/// All items that any of the public interfaces could reach from the top, by the offset of their records: every entry of
/// every list that names an item, whatever else is wrong with it. Without the top.
std::map<unsigned int, tItem> reachable(IDataStore& store);

/// Those of them that cursors get to: they pass over containers in tables, and primitives at the top, and never come to
/// what is below.
std::set<unsigned int> byCursors(IDataStore& store);

/// Goes through everything by the public interfaces, asks everything that there is to ask, and returns how many items
/// there were. Whatever they throw passes through; it stops at `most` items, since a damaged store may have no end.
/// `lost`: the paths of items that were met, but could not be found by their paths.
std::size_t askEverything(IDataStore& store, std::set<std::wstring>& lost, std::size_t most = 100'000);

}  // namespace lumivard::platform::test_support::walks
