#pragma once

#include <mutex>
#include <stdexcept>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support {

/// A store that hands every call to another one, between two steps of its own. `access()` is null.
class ThinStore : public core::storage::datastore::IDataStore {
public:
    /// Forwards to `under`, which must outlive this object.
    explicit ThinStore(core::storage::datastore::IDataStore& under) : _under(under) {}

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

private:
    core::storage::datastore::IDataStore& _under;
};

/// One read fails, that with the number told, counted from 0; those before and after it pass.
class OneFailedRead final : public ThinStore {
public:
    OneFailedRead(core::storage::datastore::IDataStore& under, int number) : ThinStore(under), _left(number) {}

    bool failed() const { return _failed; }

    /// Fails no more.
    void goOn() { _left = -1; }

    void read(unsigned int offset, void* buffer, unsigned int size) override {
        if (_left == 0) {
            _left = -1;
            _failed = true;
            throw std::runtime_error("this read fails");
        }
        if (_left > 0) --_left;
        ThinStore::read(offset, buffer, size);
    }

private:
    int _left;
    bool _failed = false;
};

/// Each operation runs alone, whatever the threads do, but nothing holds two operations together.
class SerialStore final : public ThinStore {
public:
    using ThinStore::ThinStore;

    ILock* lock() override { return nullptr; }
    unsigned long long extent() override {
        const std::lock_guard guard(_mutex);
        return ThinStore::extent();
    }
    unsigned int create(const void* data, unsigned int size) override {
        const std::lock_guard guard(_mutex);
        return ThinStore::create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        const std::lock_guard guard(_mutex);
        ThinStore::append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        const std::lock_guard guard(_mutex);
        ThinStore::update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override {
        const std::lock_guard guard(_mutex);
        return ThinStore::size(offset);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        const std::lock_guard guard(_mutex);
        ThinStore::read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        const std::lock_guard guard(_mutex);
        ThinStore::erase(offset);
    }

private:
    std::mutex _mutex;
};

}  // namespace lumivard::platform::test_support
