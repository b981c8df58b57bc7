#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "lumivard/platform/store_contract/ForgetfulStore.h"
#include "tests/contract/SoundAccess.h"

namespace lumivard::platform::store_contract {

/// What a store does otherwise than it should, operation by operation, on a sound store that it is given. What is not
/// set is done as it should be.
struct Breakage {
    using IRecordAccess = core::storage::datastore::IRecordAccess;

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

    std::function<IRecordAccess::tView(SoundAccess&, unsigned int offset)> view{};
    std::function<void(SoundAccess&, unsigned int offset, unsigned int position, const void* data, unsigned int size,
                       bool changed)>
        write{};
    std::function<IRecordAccess::tView(SoundAccess&, unsigned int offset)> written{};  // what it gives
    std::function<void(SoundAccess&)> enter{};
    std::function<void(SoundAccess&)> leave{};
    std::function<unsigned long long(const SoundAccess&)> changes{};
    std::function<std::unique_ptr<IRecordAccess::IAttachment>&(SoundAccess&)> attachment{};
};

using tMakeBreakage = Breakage (*)();

/// Stores whose `access()` is broken in one way, by the name of the breakage.
const std::map<std::string, tMakeBreakage>& brokenAccesses();

/// A store with one breakage: what the examination has to notice.
class BrokenStore final : public core::storage::datastore::IDataStore, public core::storage::datastore::IRecordAccess {
public:
    explicit BrokenStore(Breakage breakage) : _broken(std::move(breakage)) {}

    /// Loses its power and comes up again.
    void reopen() {
        _broken.reopen ? _broken.reopen(_sound) : _sound.crash();
        _access.reopen();
    }

    ILock* lock() override { return _broken.lock ? _broken.lock(_sound) : _sound.lock(); }
    void flush() override { _broken.flush ? _broken.flush(_sound) : _sound.flush(); }
    void version(unsigned int number) override {
        _broken.setVersion ? _broken.setVersion(_sound, number) : _sound.version(number);
    }
    unsigned int version() const override { return _broken.version ? _broken.version(_sound) : _sound.version(); }
    unsigned long long extent() override { return _broken.extent ? _broken.extent(_sound) : _sound.extent(); }
    unsigned int create(const void* data, unsigned int size) override {
        const unsigned int offset = _broken.create ? _broken.create(_sound, data, size) : _sound.create(data, size);
        _access.countChange();
        return offset;
    }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        _broken.append ? _broken.append(_sound, offset, data, size) : _sound.append(offset, data, size);
        _access.countChange();
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        _broken.update ? _broken.update(_sound, offset, data, size, changed)
                       : _sound.update(offset, data, size, changed);
        if (changed) _access.countChange();
    }
    unsigned int size(unsigned int offset) override {
        return _broken.size ? _broken.size(_sound, offset) : _sound.size(offset);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        _broken.read ? _broken.read(_sound, offset, buffer, size) : _sound.read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        _broken.erase ? _broken.erase(_sound, offset) : _sound.erase(offset);
        _access.countChange();
    }
    core::storage::datastore::IRecordAccess* access() override { return this; }

    tView view(unsigned int offset) override {
        return _broken.view ? _broken.view(_access, offset) : _access.view(offset);
    }
    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                bool changed) override {
        if (_broken.write) {
            _broken.write(_access, offset, position, data, size, changed);
        } else {
            _access.write(offset, position, data, size, changed);
        }
        return _broken.written ? _broken.written(_access, offset) : view(offset);
    }
    void enter() override { _broken.enter ? _broken.enter(_access) : _access.enter(); }
    void leave() noexcept override { _broken.leave ? _broken.leave(_access) : _access.leave(); }
    unsigned long long changes() const override {
        return _broken.changes ? _broken.changes(_access) : _access.changes();
    }
    std::unique_ptr<IAttachment>& attachment() override {
        return _broken.attachment ? _broken.attachment(_access) : _access.attachment();
    }

private:
    ForgetfulStore _sound;
    SoundAccess _access{_sound};
    const Breakage _broken;
};

}  // namespace lumivard::platform::store_contract
