#pragma once

#include <stdexcept>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support {

/// A store that hands every call to another one, until it is told to fail: then the n-th change of content from there
/// throws `std::runtime_error`, and so does each one after it, until it is told to go on. Reading and bookkeeping go on
/// throughout. `access()` is null.
class FailingStore final : public core::storage::datastore::IDataStore {
public:
    /// Forwards to `under`, which must outlive this object.
    explicit FailingStore(core::storage::datastore::IDataStore& under) : _under(under) {}

    /// Lets `changes` more changes of content pass, and fails from then on.
    void failAfter(int changes) {
        _failing = true;
        _left = changes;
    }

    /// Fails no more.
    void goOn() { _failing = false; }

    ILock* lock() override { return _under.lock(); }
    void flush() override { _under.flush(); }
    void version(unsigned int number) override {
        change();
        _under.version(number);
    }
    unsigned int version() const override { return _under.version(); }
    unsigned long long extent() override { return _under.extent(); }
    unsigned int create(const void* data, unsigned int size) override {
        change();
        return _under.create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        change();
        _under.append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        if (changed) change();
        _under.update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override { return _under.size(offset); }
    void read(unsigned int offset, void* buffer, unsigned int size) override { _under.read(offset, buffer, size); }
    void erase(unsigned int offset) override {
        change();
        _under.erase(offset);
    }

private:
    void change() {
        if (_failing && _left-- <= 0) throw std::runtime_error("the store was told to fail");
    }

    core::storage::datastore::IDataStore& _under;
    bool _failing = false;
    int _left = 0;
};

}  // namespace lumivard::platform::test_support
