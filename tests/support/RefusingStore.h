#pragma once

#include <stdexcept>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support {

/// A store that hands every call to another one until it is told to refuse changes, which then throw.
class RefusingStore final : public core::storage::datastore::IDataStore {
public:
    /// Forwards to `under`, which must outlive this object.
    explicit RefusingStore(core::storage::datastore::IDataStore& under) : _under(under) {}

    /// Whether calls that change records, or those that read them, throw `std::runtime_error` from now on.
    void refuseChanges(bool refuse) { _refusesChanges = refuse; }
    void refuseReads(bool refuse) { _refusesReads = refuse; }

    ILock* lock() override { return _under.lock(); }
    void flush() override { _under.flush(); }
    void version(unsigned int number) override { _under.version(number); }
    unsigned int version() const override { return _under.version(); }
    unsigned long long extent() override { return _under.extent(); }

    unsigned int create(const void* data, unsigned int size) override {
        _change();
        return _under.create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        _change();
        _under.append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        _change();
        _under.update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override { return _under.size(offset); }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        if (_refusesReads) throw std::runtime_error("refused to read");
        _under.read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        _change();
        _under.erase(offset);
    }

private:
    void _change() const {
        if (_refusesChanges) throw std::runtime_error("refused to change");
    }

    core::storage::datastore::IDataStore& _under;
    bool _refusesChanges = false;
    bool _refusesReads = false;
};

}  // namespace lumivard::platform::test_support
