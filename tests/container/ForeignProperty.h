#pragma once

#include "lumivard/platform/data.h"

namespace lumivard::platform::test_support {

/// A property that the library did not make, and that knows nothing but its store and its type.
class ForeignProperty final : public data::metadata::IProperty {
public:
    using WideString = core::string::WideString;
    using IDataStore = core::storage::datastore::IDataStore;

    ForeignProperty(IDataStore* store, unsigned int type) : _store(store), _type(type) {}

    WideString tag() const override { return L"foreign"; }
    WideString path() const override { return L"foreign"; }
    IDataStore* store() const override { return _store; }
    unsigned int type() const override { return _type; }
    bool rename(WideString) override { return false; }
    core::memory::SharedPtr<data::metadata::ITable> parent() override { return {}; }
    unsigned int locales() override { return 0; }
    WideString locale(unsigned int) override { return {}; }
    void describe(WideString, WideString) override {}
    WideString localize(WideString) override { return {}; }
    unsigned char flags() const override { return 0; }
    void on(unsigned char) override {}
    void off(unsigned char) override {}

private:
    IDataStore* _store;
    unsigned int _type;
};

}  // namespace lumivard::platform::test_support
