#pragma once

#include <stdexcept>

#include "tests/support/ForwardingStore.h"

namespace lumivard::platform::test_support {

/// One read fails, that with the number told, counted from 0; those before and after it pass.
class OneFailedRead final : public ForwardingStore {
public:
    OneFailedRead(core::storage::datastore::IDataStore& under, int number) : ForwardingStore(under), _left(number) {}

    bool failed() const { return _failed; }

    /// Fails the read with that number from now on.
    void failAt(int number) { _left = number; }

    /// Fails no more.
    void goOn() { _left = -1; }

    void read(unsigned int offset, void* buffer, unsigned int size) override {
        if (_left == 0) {
            _left = -1;
            _failed = true;
            throw std::runtime_error("this read fails");
        }
        if (_left > 0) --_left;
        ForwardingStore::read(offset, buffer, size);
    }

private:
    int _left;
    bool _failed = false;
};

}  // namespace lumivard::platform::test_support
