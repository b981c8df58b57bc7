#pragma once

#include <algorithm>
#include <cstdint>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"

namespace lumivard::platform::test_support {

/// A store that counts the calls that are made of another one, and the bytes of records that are copied to and fro. It
/// offers what that one offers. Guards are counted by themselves.
class CountingStore final : public store_contract::ForwardingStore, public core::storage::datastore::IRecordAccess {
public:
    using ForwardingStore::ForwardingStore;

    /// What came since `clear`.
    struct tCount {
        std::uint64_t calls = 0;
        std::uint64_t bytes = 0;
        std::uint64_t guards = 0;
    };
    const tCount& count() const { return _count; }
    void clear() { _count = {}; }

    ILock* lock() override {
        ++_count.guards;
        return ForwardingStore::lock();
    }
    unsigned long long extent() override {
        note(0);
        return ForwardingStore::extent();
    }
    unsigned int create(const void* data, unsigned int size) override {
        note(size);
        return ForwardingStore::create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        note(size);
        ForwardingStore::append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        note(size);
        ForwardingStore::update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override {
        note(0);
        return ForwardingStore::size(offset);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        note(std::min(size, under().size(offset)));
        ForwardingStore::read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        note(0);
        ForwardingStore::erase(offset);
    }

    core::storage::datastore::IRecordAccess* access() override { return under().access() ? this : nullptr; }
    tView view(unsigned int offset) override {
        note(0);
        return offered().view(offset);
    }
    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                bool changed) override {
        note(size);
        return offered().write(offset, position, data, size, changed);
    }
    void enter() override {
        ++_count.guards;
        offered().enter();
    }
    void leave() noexcept override { offered().leave(); }
    unsigned long long changes() const override { return offered().changes(); }
    std::unique_ptr<IAttachment>& attachment() override { return offered().attachment(); }
    void expect(const void* offsets, unsigned int count) override { offered().expect(offsets, count); }

private:
    core::storage::datastore::IRecordAccess& offered() const { return *under().access(); }

    void note(std::uint64_t bytes) {
        ++_count.calls;
        _count.bytes += bytes;
    }

    tCount _count;
};

}  // namespace lumivard::platform::test_support
