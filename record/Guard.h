#pragma once

#include <memory>
#include <optional>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::data::Record {

/// Holds a store's guard for a scope; a store that needs no locking gives none.
class Guard {
public:
    explicit Guard(core::storage::datastore::IDataStore* store) : _lock(store->lock()) {}

private:
    std::unique_ptr<core::storage::datastore::IDataStore::ILock> _lock;
};

/// Deletes an in-memory object under its store's guard, or without it where the store refuses the guard: for
/// destructors, which have nobody to tell.
template <class Object>
void releaseUnderGuard(std::unique_ptr<Object>& object) noexcept {
    std::optional<Guard> guard;
    try {
        guard.emplace(object->store());
    } catch (...) {
    }
    object.reset();
}

}  // namespace lumivard::platform::data::Record
