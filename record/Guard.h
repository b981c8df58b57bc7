#pragma once

#include <memory>
#include <optional>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"

namespace lumivard::platform::data::Record {

/// Holds a store's guard for a scope; a store that needs no locking gives none.
class Guard {
public:
    explicit Guard(core::storage::datastore::IDataStore* store) : _access(store->access()) {
        if (_access) {
            _access->enter();
        } else {
            _lock.reset(store->lock());
        }
    }
    ~Guard() {
        if (_access) _access->leave();
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

private:
    core::storage::datastore::IRecordAccess* _access;
    std::unique_ptr<core::storage::datastore::IDataStore::ILock> _lock;
};

/// Deletes an in-memory object under its store's guard, or without it where the store refuses the guard: for
/// destructors, which have nobody to tell. `Holder` is a `std::unique_ptr` or a `std::optional`.
template <class Holder>
void releaseUnderGuard(Holder& object) noexcept {
    if (!object) return;
    std::optional<Guard> guard;
    try {
        guard.emplace(object->store());
    } catch (...) {
    }
    object.reset();
}

}  // namespace lumivard::platform::data::Record
