#include "stores/core/StoreOver.h"

#include <utility>

#include "stores/core/Core.h"

namespace lumivard::platform::stores {

std::unique_ptr<core::storage::datastore::IDataStore> storeOver(std::string name, std::unique_ptr<Engine> engine,
                                                                tMode mode, std::size_t cache) {
    return std::make_unique<Core>(std::move(name), std::move(engine), mode, cache);
}

}  // namespace lumivard::platform::stores
