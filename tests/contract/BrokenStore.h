#pragma once

#include <functional>
#include <memory>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/ForgetfulStore.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"

namespace lumivard::platform::store_contract {

/// What a store does otherwise than it should, operation by operation, on a sound store that it is given. What is not
/// set is done as it should be.
struct Breakage {
    std::function<core::storage::datastore::IDataStore::ILock*(ForgetfulStore&)> lock{};
    std::function<void(ForgetfulStore&)> flush{};
    std::function<void(ForgetfulStore&)> reopen{};
    std::function<unsigned long long(ForgetfulStore&)> extent{};
    std::function<unsigned int(const ForgetfulStore&)> version{};
    std::function<void(ForgetfulStore&, unsigned int number)> setVersion{};
    std::function<unsigned int(ForgetfulStore&, const void* data, unsigned int size)> create{};
    std::function<void(ForgetfulStore&, unsigned int offset, const void* data, unsigned int size)> append{};
    std::function<void(ForgetfulStore&, unsigned int offset, const void* data, unsigned int size, bool changed)>
        update{};
    std::function<unsigned int(ForgetfulStore&, unsigned int offset)> size{};
    std::function<void(ForgetfulStore&, unsigned int offset, void* buffer, unsigned int size)> read{};
    std::function<void(ForgetfulStore&, unsigned int offset)> erase{};
    /// Where it is set the store gives parts of records.
    std::function<unsigned int(ForgetfulStore&, unsigned int offset, unsigned int position, void* buffer,
                               unsigned int size)>
        part{};
};

/// A store with one breakage: what the examination has to notice.
class BrokenStore final : public core::storage::datastore::IDataStore, public core::storage::datastore::IRecordAccess {
public:
    explicit BrokenStore(Breakage breakage) : _broken(std::move(breakage)) {}

    /// Loses its power and comes up again.
    void reopen() { _broken.reopen ? _broken.reopen(_sound) : _sound.crash(); }

    ILock* lock() override { return _broken.lock ? _broken.lock(_sound) : _sound.lock(); }
    void flush() override { _broken.flush ? _broken.flush(_sound) : _sound.flush(); }
    void version(unsigned int number) override {
        _broken.setVersion ? _broken.setVersion(_sound, number) : _sound.version(number);
    }
    unsigned int version() const override { return _broken.version ? _broken.version(_sound) : _sound.version(); }
    unsigned long long extent() override { return _broken.extent ? _broken.extent(_sound) : _sound.extent(); }
    unsigned int create(const void* data, unsigned int size) override {
        return _broken.create ? _broken.create(_sound, data, size) : _sound.create(data, size);
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        _broken.append ? _broken.append(_sound, offset, data, size) : _sound.append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        _broken.update ? _broken.update(_sound, offset, data, size, changed)
                       : _sound.update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override {
        return _broken.size ? _broken.size(_sound, offset) : _sound.size(offset);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        _broken.read ? _broken.read(_sound, offset, buffer, size) : _sound.read(offset, buffer, size);
    }
    void erase(unsigned int offset) override { _broken.erase ? _broken.erase(_sound, offset) : _sound.erase(offset); }
    core::storage::datastore::IRecordAccess* access() override { return _broken.part ? this : nullptr; }
    unsigned int read(unsigned int offset, unsigned int position, void* buffer, unsigned int size) override {
        return _broken.part(_sound, offset, position, buffer, size);
    }

private:
    ForgetfulStore _sound;
    const Breakage _broken;
};

}  // namespace lumivard::platform::store_contract
