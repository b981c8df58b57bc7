#pragma once

#include "lumivard/platform/store_contract/ForwardingStore.h"

namespace lumivard::platform::model {

/// A store that loses the last byte of what is appended, once in so many times. Who makes several gives them one count.
class DroppingStore final : public store_contract::ForwardingStore {
public:
    DroppingStore(IDataStore& under, unsigned int every, unsigned int& calls)
        : ForwardingStore(under), _every(every), _calls(calls) {}

    void append(unsigned int offset, const void* data, unsigned int size) override {
        const bool slips = size != 0 && ++_calls % _every == 0;
        ForwardingStore::append(offset, data, slips ? size - 1 : size);
    }

private:
    unsigned int _every;
    unsigned int& _calls;
};

/// A store that updates the next record in place of the one that was named, once in so many times. Who makes several
/// gives them one count.
class NeighbourStore final : public store_contract::ForwardingStore {
public:
    NeighbourStore(IDataStore& under, unsigned int every, unsigned int& calls)
        : ForwardingStore(under), _every(every), _calls(calls) {}

    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        const bool slips = changed && ++_calls % _every == 0 && this->size(offset + 1) != 0;
        ForwardingStore::update(slips ? offset + 1 : offset, data, size, changed);
    }

private:
    unsigned int _every;
    unsigned int& _calls;
};

}  // namespace lumivard::platform::model
