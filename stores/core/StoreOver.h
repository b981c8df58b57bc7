#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/stores/tMode.h"
#include "stores/engine/Engine.h"

namespace lumivard::platform::stores {

/// A store over an engine that another of these libraries brings: what the core takes (Core.h). No interface for
/// programs: the libraries are of one version.
LVP_EXPORT std::unique_ptr<core::storage::datastore::IDataStore> storeOver(std::string name,
                                                                           std::unique_ptr<Engine> engine, tMode mode,
                                                                           std::size_t cache);

}  // namespace lumivard::platform::stores
