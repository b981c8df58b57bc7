#pragma once

#include <memory>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lvp::tool {

/// A store that is opened to be changed. Unless it is kept, it is as it was when this object goes, and a file that was
/// made for it is gone.
class ChangedStore {
public:
    using IDataStore = lumivard::platform::core::storage::datastore::IDataStore;

    /// Opens the store of a file, or makes one where there is none if that is allowed. A failure is one of
    /// `kCannotOpen`.
    ChangedStore(const std::string& name, bool mayMake);
    ~ChangedStore();
    ChangedStore(const ChangedStore&) = delete;
    ChangedStore& operator=(const ChangedStore&) = delete;

    IDataStore& operator*() { return *_store; }
    IDataStore* operator->() { return _store.get(); }

    /// Makes durable what was done until now.
    void keep();

private:
    std::string _name;
    bool _isNew;
    bool _kept = false;
    std::unique_ptr<IDataStore> _store;
};

}  // namespace lvp::tool
