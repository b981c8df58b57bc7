#pragma once

#include <random>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support {

using core::storage::datastore::IDataStore;

/// Lets up to `most` sets of a sound store have the items of others, one or all of them, which may say that they are
/// theirs; tells in words what was done.
std::string plantPlaces(IDataStore& store, std::mt19937_64& random, unsigned int most);

}  // namespace lumivard::platform::test_support
