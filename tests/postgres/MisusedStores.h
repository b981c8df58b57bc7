#pragma once

#include <memory>
#include <optional>
#include <utility>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "stores/engine/Engine.h"

// Stores in a database with which something is wrong, so that it can be shown that it is noticed.
namespace lumivard::platform::model {

/// Owns the store that it hands calls to.
class OwningStore : public store_contract::ForwardingStore {
public:
    explicit OwningStore(std::unique_ptr<IDataStore> under) : ForwardingStore(*under), _owned(std::move(under)) {}

private:
    std::unique_ptr<IDataStore> _owned;
};

/// Leaves the guard out.
class GuardlessStore final : public OwningStore, public core::storage::datastore::IRecordAccess {
public:
    explicit GuardlessStore(std::unique_ptr<IDataStore> store) : OwningStore(std::move(store)) {}

    ILock* lock() override { return nullptr; }
    core::storage::datastore::IRecordAccess* access() override { return this; }

    tView view(unsigned int offset) override { return under().access()->view(offset); }
    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                bool changed) override {
        return under().access()->write(offset, position, data, size, changed);
    }
    void enter() override {}
    void leave() noexcept override {}
    unsigned long long changes() const override { return under().access()->changes(); }
    std::unique_ptr<IAttachment>& attachment() override { return under().access()->attachment(); }
};

/// Stores each change at once, so that a guard is no transaction.
class HastyStore final : public OwningStore {
public:
    explicit HastyStore(std::unique_ptr<IDataStore> store) : OwningStore(std::move(store)) {}

    unsigned int create(const void* data, unsigned int size) override {
        const unsigned int offset = OwningStore::create(data, size);
        flush();
        return offset;
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        OwningStore::append(offset, data, size);
        flush();
    }
};

/// Does not hear what others have done.
class DeafEngine final : public stores::Engine {
public:
    explicit DeafEngine(std::unique_ptr<Engine> under) : _under(std::move(under)) {}

    unsigned int longestRecord() const noexcept override { return _under->longestRecord(); }
    Header header() override { return _under->header(); }
    std::optional<std::span<const std::byte>> load(unsigned int offset) override { return _under->load(offset); }
    void bring(std::span<const unsigned int> offsets, const std::function<void(const Record&)>& take) override {
        _under->bring(offsets, take);
    }
    bool isShared() const noexcept override { return true; }
    void commit(const Batch& batch) override { _under->commit(batch); }
    std::optional<News> guardTaken() override {
        auto news = _under->guardTaken();
        if (news) news->offsets.clear();
        if (news) news->records.clear();
        return news;
    }
    void guardReleased() noexcept override { _under->guardReleased(); }

private:
    std::unique_ptr<Engine> _under;
};

}  // namespace lumivard::platform::model
