#pragma once

#include <functional>
#include <string>
#include <unordered_set>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/stores.h"

namespace lvp::tool {

/// A store to read, of which a record that the store under it refuses to give out is as one that is not there. What is
/// refused is told once for each record.
class SoundStore final : public lumivard::platform::core::storage::datastore::IDataStore,
                         public lumivard::platform::core::storage::datastore::IRecordAccess {
public:
    /// Hears which record is refused, and why.
    using tHear = std::function<void(unsigned int offset, const std::string& why)>;

    SoundStore(IDataStore& under, tHear hear) : _hear(std::move(hear)) { over(under); }

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
    void erase(unsigned int offset) override { _under->erase(offset); }
    unsigned int size(unsigned int offset) override {
        return guarded(offset, [&] { return _under->size(offset); });
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        guarded(offset, [&] { return _under->read(offset, buffer, size), 0; });
    }

    IRecordAccess* access() override { return _access ? this : nullptr; }
    tView view(unsigned int offset) override {
        return guarded(offset, [&] { return _access->view(offset); });
    }
    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                bool changed) override {
        return _access->write(offset, position, data, size, changed);
    }
    void enter() override { _access->enter(); }
    void leave() noexcept override { _access->leave(); }
    unsigned long long changes() const override { return _access->changes(); }
    std::unique_ptr<IAttachment>& attachment() override { return _access->attachment(); }

private:
    template <class Work>
    auto guarded(unsigned int offset, Work work) -> decltype(work()) {
        try {
            return work();
        } catch (const lumivard::platform::stores::StoreError& error) {
            if (_refused.insert(offset).second) _hear(offset, error.what());
            return {};
        }
    }

    tHear _hear;
    IDataStore* _under = nullptr;
    IRecordAccess* _access = nullptr;
    std::unordered_set<unsigned int> _refused;
};

}  // namespace lvp::tool
