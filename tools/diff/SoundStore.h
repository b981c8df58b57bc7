#pragma once

#include <functional>
#include <string>
#include <unordered_set>

#include "lumivard/platform/stores.h"
#include "tools/base/ForwardingStore.h"

namespace lvp::tool {

/// A store to read, of which a record that the store under it refuses to give out is as one that is not there. What is
/// refused is told once for each record.
class SoundStore final : public ForwardingStore {
public:
    /// Hears which record is refused, and why.
    using tHear = std::function<void(unsigned int offset, const std::string& why)>;

    SoundStore(IDataStore& under, tHear hear) : ForwardingStore(under), _hear(std::move(hear)) {}

    unsigned int size(unsigned int offset) override {
        return guarded(offset, [&] { return ForwardingStore::size(offset); });
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        guarded(offset, [&] { return ForwardingStore::read(offset, buffer, size), 0; });
    }
    tView view(unsigned int offset) override {
        return guarded(offset, [&] { return ForwardingStore::view(offset); });
    }

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
    std::unordered_set<unsigned int> _refused;
};

}  // namespace lvp::tool
