#pragma once

#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "tools/documents/SubtreeFilter.h"

namespace lvp::tool {

/// Hands the item at a dotted path in a store to a callback, as the events of the document that it is written as. The
/// public interfaces reach containers by path; the document reaches everything, tables and values at the top included.
/// `locator` finds the layouts of structs and may be null. Throws a failure of `kCannotOpen` when there is nothing at
/// the path.
void readItem(lumivard::platform::core::storage::datastore::IDataStore& store, const std::string& storeName,
              const std::string& path, lumivard::platform::data::metadata::ISchemaLocator* locator,
              XMLCallback& callback);

}  // namespace lvp::tool
