#pragma once

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "tools/base/Watch.h"

namespace lvp::tool {

/// A store while long work goes on over it: each operation counts as progress, or throws when the user has asked for an
/// end. It does not flush: what becomes of the work is decided by who opened the store.
class WatchedStore final : public lumivard::platform::core::storage::datastore::IDataStore,
                           public lumivard::platform::core::storage::datastore::IRecordAccess {
public:
    /// `counts`: whether operations count; otherwise the work counts by itself.
    WatchedStore(IDataStore& under, Watch& watch, bool counts = true)
        : _under(under), _access(under.access()), _watch(watch), _counts(counts) {}

    ILock* lock() override { return _under.lock(); }
    void flush() override {}
    void version(unsigned int number) override { _under.version(number); }
    unsigned int version() const override { return _under.version(); }
    unsigned long long extent() override { return _under.extent(); }
    unsigned int create(const void* data, unsigned int size) override {
        note();
        return _under.create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        note();
        _under.append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        note();
        _under.update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override {
        note();
        return _under.size(offset);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        note();
        _under.read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        note();
        _under.erase(offset);
    }

    IRecordAccess* access() override { return _access ? this : nullptr; }
    tView view(unsigned int offset) override {
        note();
        return _access->view(offset);
    }
    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                bool changed) override {
        note();
        return _access->write(offset, position, data, size, changed);
    }
    void enter() override { _access->enter(); }
    void leave() noexcept override { _access->leave(); }
    unsigned long long changes() const override { return _access->changes(); }
    std::unique_ptr<IAttachment>& attachment() override { return _access->attachment(); }

private:
    void note() { _watch.reached(_watch.done() + (_counts ? 1 : 0)); }

    IDataStore& _under;
    IRecordAccess* _access;
    Watch& _watch;
    bool _counts;
};

}  // namespace lvp::tool
