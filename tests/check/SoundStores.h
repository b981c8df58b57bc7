#pragma once

#include <memory>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

/// Stores in which nothing is wrong, and copies of them.
namespace lumivard::platform::test_support::sound {

using core::storage::datastore::IDataStore;

/// Fills a new store, by the public interfaces, with items of every kind, in every state that a record can be in:
/// renamed, grown, external, localized, with defaults, beside others that were destroyed.
void fill(IDataStore& store);

/// Reads a document of the examples into a new store.
void read(IDataStore& store, const std::string& document);

/// Gives a new store the records of another one at the same offsets, which are dense.
void copy(IDataStore& from, IDataStore& to);

/// Such a store in memory.
std::unique_ptr<IDataStore> copyOf(IDataStore& store);

/// A filled store in memory.
std::unique_ptr<IDataStore> filled();

}  // namespace lumivard::platform::test_support::sound
