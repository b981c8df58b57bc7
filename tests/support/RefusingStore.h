#pragma once

#include <stdexcept>

#include "tests/support/ForwardingStore.h"

namespace lumivard::platform::test_support {

/// A store that works until it is told to refuse changes or reads, which then throw.
class RefusingStore final : public ForwardingStore {
public:
    using ForwardingStore::ForwardingStore;

    /// Whether calls that change records, or those that read them, throw `std::runtime_error` from now on.
    void refuseChanges(bool refuse) { _refusesChanges = refuse; }
    void refuseReads(bool refuse) { _refusesReads = refuse; }

    unsigned int create(const void* data, unsigned int size) override {
        _change();
        return ForwardingStore::create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        _change();
        ForwardingStore::append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        _change();
        ForwardingStore::update(offset, data, size, changed);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        if (_refusesReads) throw std::runtime_error("refused to read");
        ForwardingStore::read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        _change();
        ForwardingStore::erase(offset);
    }

private:
    void _change() const {
        if (_refusesChanges) throw std::runtime_error("refused to change");
    }

    bool _refusesChanges = false;
    bool _refusesReads = false;
};

}  // namespace lumivard::platform::test_support
