#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lumivard/platform/store_contract/ForwardingStore.h"

namespace lumivard::platform::test_support {

using core::storage::datastore::IDataStore;
using store_contract::ForwardingStore;

/// A store that notes when its guard is taken and given back, in a log that it shares with another one: "+name" and
/// "-name". Everything else is handed to a store below.
class NotingStore final : public ForwardingStore {
public:
    NotingStore(IDataStore& under, std::string name, std::vector<std::string>& log)
        : ForwardingStore(under), _name(std::move(name)), _log(log) {}

    ILock* lock() override {
        _log.push_back("+" + _name);
        return new Guard(*this);
    }

private:
    class Guard final : public ILock {
    public:
        explicit Guard(NotingStore& store) : _store(store) {}
        ~Guard() override { _store._log.push_back("-" + _store._name); }

    private:
        NotingStore& _store;
    };

    std::string _name;
    std::vector<std::string>& _log;
};

}  // namespace lumivard::platform::test_support
