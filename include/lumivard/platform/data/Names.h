#pragma once

#include "lumivard/platform/core/memory/SharedPtr.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/string/WideString.h"

// What holds for all interfaces of this namespace stands in `lumivard/platform/data.h`.
namespace lumivard::platform::data {

using core::memory::SharedPtr;
using core::storage::datastore::IDataStore;
using core::string::WideString;

}  // namespace lumivard::platform::data
