#pragma once

#include <lumivard/platform/core/storage/datastore/IDataStore.h>

/// How often a model was visited, as a value in its store: the code of an application, whose behaviour under failures
/// of the store is tested along with the store.
namespace visits {

/// Counts one more visit. Throws what the store throws; then the visit is counted, or it is not.
void add(lumivard::platform::core::storage::datastore::IDataStore& store);

/// How many visits were counted; 0 in a store that knows of none.
int count(lumivard::platform::core::storage::datastore::IDataStore& store);

}  // namespace visits
