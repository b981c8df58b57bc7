#pragma once

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::store_contract {

/// A store that hands every call to another one: the base of stores that do something of their own in between.
///
/// It adds nothing: what the store below returns, throws and allows its threads is what this one does. Only `access()`
/// is null, so that whatever is asked of the store passes through the calls here.
class ForwardingStore : public core::storage::datastore::IDataStore {
public:
    /// Forwards to `under`, which stays its owner's and must outlive this object.
    explicit ForwardingStore(core::storage::datastore::IDataStore& under) : _under(under) {}

    ILock* lock() override { return _under.lock(); }
    void flush() override { _under.flush(); }
    void version(unsigned int number) override { _under.version(number); }
    unsigned int version() const override { return _under.version(); }
    unsigned long long extent() override { return _under.extent(); }
    unsigned int create(const void* data, unsigned int size) override { return _under.create(data, size); }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        _under.append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        _under.update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override { return _under.size(offset); }
    void read(unsigned int offset, void* buffer, unsigned int size) override { _under.read(offset, buffer, size); }
    void erase(unsigned int offset) override { _under.erase(offset); }

protected:
    /// The store below.
    core::storage::datastore::IDataStore& under() const { return _under; }

private:
    core::storage::datastore::IDataStore& _under;
};

}  // namespace lumivard::platform::store_contract
