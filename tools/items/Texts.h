#pragma once

#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lvp::tool {

/// Sets what the item at a path is called: texts of the form LOCALE=TEXT, of which one without a TEXT removes that of
/// the locale. Throws a failure of `kWrongUsage` for a text of another form, and where the item cannot be opened.
void setTexts(lumivard::platform::core::storage::datastore::IDataStore& store, const std::string& storeName,
              const std::string& path, const std::vector<std::string>& texts);

}  // namespace lvp::tool
