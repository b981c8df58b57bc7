#pragma once

#include "lumivard/platform/data.h"

namespace lumivard::platform::test_support {

/// A container that the library did not make, and that knows nothing but its store.
class ForeignContainer final : public data::structure::IContainer {
public:
    using WideString = core::string::WideString;
    using IDataStore = core::storage::datastore::IDataStore;
    template <class T>
    using SharedPtr = core::memory::SharedPtr<T>;

    explicit ForeignContainer(IDataStore* store) : _store(store) {}

    WideString tag() const override { return {}; }
    WideString path() const override { return {}; }
    IDataStore* store() const override { return _store; }
    SharedPtr<IContainer> parent() override { return {}; }
    WideString base() const override { return {}; }
    bool empty() const override { return true; }
    tType type() const override { return kGroup; }
    bool destroy(WideString) override { return false; }
    bool rename(WideString) override { return false; }
    SharedPtr<IContainer> create(tType, WideString, data::metadata::ISchema*) override { return {}; }
    SharedPtr<data::metadata::IPrimitive> create(WideString, data::metadata::tValue) override { return {}; }
    SharedPtr<data::metadata::ITable> create(WideString, data::metadata::ISchema*) override { return {}; }
    bool has(WideString) override { return false; }
    SharedPtr<IContainer> container(WideString) override { return {}; }
    SharedPtr<data::metadata::IProperty> property(WideString) override { return {}; }
    SharedPtr<data::metadata::IPropertyFilter> properties() override { return {}; }
    SharedPtr<data::structure::IContainerFilter> containers() override { return {}; }
    bool validates(data::metadata::ISchema*, bool) override { return false; }
    bool validates(WideString, data::metadata::ISchema*, bool) override { return false; }
    bool copy(SharedPtr<IContainer>) override { return false; }
    bool clone(SharedPtr<IContainer>) override { return false; }
    bool clone(SharedPtr<data::metadata::IProperty>) override { return false; }
    bool clone(WideString, WideString, bool) override { return false; }
    bool clone(IDataStore*, WideString) override { return false; }
    unsigned int locales() override { return 0; }
    WideString locale(unsigned int) override { return {}; }
    void describe(WideString, WideString) override {}
    WideString localize(WideString) override { return {}; }

private:
    IDataStore* _store;
};

}  // namespace lumivard::platform::test_support
