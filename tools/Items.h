#pragma once

#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/string/WideString.h"
#include "lumivard/platform/data/metadata/IProperty.h"
#include "lumivard/platform/data/structure/IContainer.h"

// Items by dotted paths from the top of a store. Null when there is nothing of the kind.
namespace lvp::tool {

using lumivard::platform::core::storage::datastore::IDataStore;
using lumivard::platform::core::string::WideString;
using lumivard::platform::data::SharedPtr;
using lumivard::platform::data::metadata::IProperty;
using lumivard::platform::data::structure::IContainer;

WideString wide(const std::string& text);

SharedPtr<IContainer> containerAt(IDataStore& store, const std::string& path);

/// A property that stands in a container, itself or in tables: those at the top of a store cannot be opened.
SharedPtr<IProperty> propertyAt(IDataStore& store, const std::string& path);

}  // namespace lvp::tool
