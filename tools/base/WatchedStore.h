#pragma once

#include "tools/base/ForwardingStore.h"
#include "tools/base/Watch.h"

namespace lvp::tool {

/// A store while long work goes on over it: each operation counts as progress, or throws when the user has asked for an
/// end.
class WatchedStore final : public ForwardingStore {
public:
    /// `counts`: whether operations count; otherwise the work counts by itself.
    WatchedStore(IDataStore& under, Watch& watch, bool counts = true)
        : ForwardingStore(under), _watch(watch), _counts(counts) {}

    unsigned int create(const void* data, unsigned int size) override {
        note();
        return ForwardingStore::create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        note();
        ForwardingStore::append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        note();
        ForwardingStore::update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override {
        note();
        return ForwardingStore::size(offset);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        note();
        ForwardingStore::read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        note();
        ForwardingStore::erase(offset);
    }
    tView view(unsigned int offset) override {
        note();
        return ForwardingStore::view(offset);
    }
    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                bool changed) override {
        note();
        return ForwardingStore::write(offset, position, data, size, changed);
    }

private:
    void note() { _watch.reached(_watch.done() + (_counts ? 1 : 0)); }

    Watch& _watch;
    bool _counts;
};

}  // namespace lvp::tool
