#pragma once

#include <mutex>
#include <thread>

#include "lumivard/platform/store_contract/ForwardingStore.h"

namespace lumivard::platform::test_support {

using store_contract::ForwardingStore;

/// Each operation runs alone, whatever the threads do, but nothing holds two operations together: other threads come in
/// before each read.
class SerialStore final : public ForwardingStore {
public:
    using ForwardingStore::ForwardingStore;

    ILock* lock() override { return nullptr; }
    unsigned long long extent() override {
        const std::lock_guard guard(_mutex);
        return ForwardingStore::extent();
    }
    unsigned int create(const void* data, unsigned int size) override {
        const std::lock_guard guard(_mutex);
        return ForwardingStore::create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        const std::lock_guard guard(_mutex);
        ForwardingStore::append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        const std::lock_guard guard(_mutex);
        ForwardingStore::update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override {
        const std::lock_guard guard(_mutex);
        return ForwardingStore::size(offset);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        std::this_thread::yield();
        const std::lock_guard guard(_mutex);
        ForwardingStore::read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        const std::lock_guard guard(_mutex);
        ForwardingStore::erase(offset);
    }

private:
    std::mutex _mutex;
};

}  // namespace lumivard::platform::test_support
