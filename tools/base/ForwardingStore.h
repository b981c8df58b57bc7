#pragma once

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"

namespace lvp::tool {

/// A store that hands everything to another one, but for flushing: what becomes of the work is decided by who opened
/// that. What derives from it does more in some operations.
class ForwardingStore : public lumivard::platform::core::storage::datastore::IDataStore,
                        public lumivard::platform::core::storage::datastore::IRecordAccess {
public:
    explicit ForwardingStore(IDataStore& under) { over(under); }

    /// Goes on over another store, which shows the same records.
    void over(IDataStore& under) {
        _under = &under;
        _access = under.access();
    }

    ILock* lock() override { return _under->lock(); }
    void flush() override {}
    void version(unsigned int number) override { _under->version(number); }
    unsigned int version() const override { return _under->version(); }
    unsigned long long extent() override { return _under->extent(); }
    unsigned int create(const void* data, unsigned int size) override { return _under->create(data, size); }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        _under->append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        _under->update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override { return _under->size(offset); }
    void read(unsigned int offset, void* buffer, unsigned int size) override { _under->read(offset, buffer, size); }
    void erase(unsigned int offset) override { _under->erase(offset); }

    IRecordAccess* access() override { return _access ? this : nullptr; }
    tView view(unsigned int offset) override { return _access->view(offset); }
    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                bool changed) override {
        return _access->write(offset, position, data, size, changed);
    }
    void enter() override { _access->enter(); }
    void leave() noexcept override { _access->leave(); }
    unsigned long long changes() const override { return _access->changes(); }
    std::unique_ptr<IAttachment>& attachment() override { return _access->attachment(); }
    void expect(const void* offsets, unsigned int count) override { _access->expect(offsets, count); }

private:
    IDataStore* _under = nullptr;
    IRecordAccess* _access = nullptr;
};

}  // namespace lvp::tool
