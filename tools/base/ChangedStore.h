#pragma once

#include <string>

#include "tools/base/Files.h"

namespace lvp::tool {

/// A store that is opened to be changed. Unless it is kept, it is as it was when this object goes, and a file that was
/// made for it is gone. Nobody else sees anything of the changes before.
class ChangedStore {
public:
    /// Opens the store, or makes a file where there is none if that is allowed. A failure is one of `kCannotOpen`.
    ChangedStore(const std::string& name, bool mayMake);
    ~ChangedStore();
    ChangedStore(const ChangedStore&) = delete;
    ChangedStore& operator=(const ChangedStore&) = delete;

    IDataStore& operator*() { return *_store; }
    IDataStore* operator->() { return &*_store; }

    /// Makes durable what was done. Nothing may be done after it.
    void keep();

private:
    std::string _name;
    bool _isNew;
    bool _kept = false;
    HeldStore _store;
};

}  // namespace lvp::tool
