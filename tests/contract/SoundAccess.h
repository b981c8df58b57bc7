#pragma once

#include <cstring>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/ForgetfulStore.h"

namespace lumivard::platform::store_contract {

/// A sound way of offering access to the records of a store, by copies of them. Whoever hands the store's other
/// operations on tells it of each one that has changed content.
class SoundAccess final : public core::storage::datastore::IRecordAccess {
public:
    explicit SoundAccess(ForgetfulStore& store) : _store(store) {}

    ForgetfulStore& store() { return _store; }
    void countChange() { ++_changes; }

    /// The store is opened anew.
    void reopen() {
        _attachment.reset();
        _shown.clear();
    }

    tView view(unsigned int offset) override {
        std::string bytes(_store.size(offset), '\0');
        if (bytes.empty()) return {};
        _store.read(offset, bytes.data(), 0xFFFFFFFF);
        std::string& shown = _shown[offset];
        if (shown != bytes) shown = std::move(bytes);
        return {shown.data(), static_cast<unsigned int>(shown.size())};
    }

    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                bool changed) override {
        const tView seen = view(offset);
        if (position > seen.size || size > seen.size - position) throw std::out_of_range("outside the record");
        std::string bytes(seen.data, seen.size);
        if (size != 0) std::memcpy(bytes.data() + position, data, size);
        _store.update(offset, bytes.data(), seen.size, changed);
        if (changed) countChange();
        return view(offset);
    }

    void enter() override {
        std::unique_ptr<core::storage::datastore::IDataStore::ILock> guard(_store.lock());
        _held.push_back(std::move(guard));  // which the guard itself keeps from other threads
    }

    void leave() noexcept override {
        const auto guard = std::move(_held.back());
        _held.pop_back();
    }

    unsigned long long changes() const override { return _changes; }
    std::unique_ptr<IAttachment>& attachment() override { return _attachment; }

private:
    ForgetfulStore& _store;
    std::map<unsigned int, std::string> _shown;
    std::vector<std::unique_ptr<core::storage::datastore::IDataStore::ILock>> _held;
    unsigned long long _changes = 0;
    std::unique_ptr<IAttachment> _attachment;
};

}  // namespace lumivard::platform::store_contract
