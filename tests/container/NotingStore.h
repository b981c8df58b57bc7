#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support {

using core::storage::datastore::IDataStore;

/// A store that notes when its guard is taken and given back, in a log that it shares with another one: "+name" and
/// "-name". Everything else is handed to a store below.
class NotingStore final : public IDataStore {
public:
    NotingStore(IDataStore& under, std::string name, std::vector<std::string>& log)
        : _under(under), _name(std::move(name)), _log(log) {}

    ILock* lock() override {
        _log.push_back("+" + _name);
        return new Guard(*this);
    }
    void flush() override { _under.flush(); }
    void version(unsigned int number) override { _under.version(number); }
    unsigned int version() const override { return _under.version(); }
    unsigned long long extent() override { return _under.extent(); }
    unsigned int create(const void* data, unsigned int size) override { return _under.create(data, size); }
    void append(unsigned int offset, const void* data, unsigned int size) override {
        _under.append(offset, data, size);
    }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        _under.update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override { return _under.size(offset); }
    void read(unsigned int offset, void* buffer, unsigned int size) override { _under.read(offset, buffer, size); }
    void erase(unsigned int offset) override { _under.erase(offset); }

private:
    class Guard final : public ILock {
    public:
        explicit Guard(NotingStore& store) : _store(store) {}
        ~Guard() override { _store._log.push_back("-" + _store._name); }

    private:
        NotingStore& _store;
    };

    IDataStore& _under;
    std::string _name;
    std::vector<std::string>& _log;
};

}  // namespace lumivard::platform::test_support
