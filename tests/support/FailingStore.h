#pragma once

#include <stdexcept>

#include "tests/support/ForwardingStore.h"

namespace lumivard::platform::test_support {

/// A store that works until it is told to fail: then the n-th change of content from there throws `std::runtime_error`,
/// and so does each one after it, until it is told to go on. Reading and bookkeeping go on throughout.
class FailingStore final : public ForwardingStore {
public:
    using ForwardingStore::ForwardingStore;

    /// Lets `changes` more changes of content pass, and fails from then on.
    void failAfter(int changes) {
        _failing = true;
        _left = changes;
    }

    /// Fails no more.
    void goOn() { _failing = false; }

    using ForwardingStore::version;
    void version(unsigned int number) override {
        change();
        ForwardingStore::version(number);
    }
    unsigned int create(const void* data, unsigned int size) override {
        change();
        return ForwardingStore::create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        change();
        ForwardingStore::append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        if (changed) change();
        ForwardingStore::update(offset, data, size, changed);
    }
    void erase(unsigned int offset) override {
        change();
        ForwardingStore::erase(offset);
    }

private:
    void change() {
        if (_failing && _left-- <= 0) throw std::runtime_error("the store was told to fail");
    }

    bool _failing = false;
    int _left = 0;
};

}  // namespace lumivard::platform::test_support
