#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "design/Stride.h"
#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"

namespace lumivard::platform::test_support {

/// A layout of the fields that it is given, and of sums that a test may falsify.
class FakeLayout final : public data::metadata::IStructLayout {
public:
    /// Adds a field behind the others, as long as its kind and dimension ask.
    FakeLayout& add(data::metadata::tValue kind, unsigned int dim = 1) {
        return addOfSize(kind, dim, data::Design::stride(kind) * dim);
    }
    FakeLayout& addOfSize(data::metadata::tValue kind, unsigned int dim, unsigned int size) {
        _fields.push_back({L"field", kind, dim, _stride, size});
        _stride += size;
        _values += dim;
        return *this;
    }

    unsigned int fields() const override { return falseFields.value_or(static_cast<unsigned int>(_fields.size())); }
    unsigned int stride() const override { return falseStride.value_or(_stride); }
    unsigned int values() const override { return falseValues.value_or(_values); }
    const tField* get(core::string::WideString) override { return nullptr; }
    const tField* get(unsigned int index) override { return index < _fields.size() ? &_fields[index] : nullptr; }

    std::optional<unsigned int> falseFields;
    std::optional<unsigned int> falseStride;
    std::optional<unsigned int> falseValues;

private:
    std::vector<tField> _fields;
    unsigned int _stride = 0;
    unsigned int _values = 0;
};

/// A locator that knows the layouts which it is given by their URI, and keeps what it was asked for.
class FakeLocator final : public data::metadata::ISchemaLocator {
public:
    using WideString = core::string::WideString;
    using IDataStore = core::storage::datastore::IDataStore;

    /// The layout of a URI, made when it is not there.
    FakeLayout& operator[](const std::wstring& uri) { return _layouts[uri]; }

    core::memory::SharedPtr<data::metadata::ISchema> resolve(WideString uri) override {
        const std::wstring name = static_cast<const wchar_t*>(uri);
        asked.push_back(name);
        if (withoutLayout == name && !name.empty()) return schema(nullptr);
        const auto found = _layouts.find(name);
        if (found == _layouts.end()) return {};
        return schema(&found->second);
    }
    void push(IDataStore*) override {}
    bool pop(IDataStore*) override { return false; }
    void reset() override {}

    std::vector<std::wstring> asked;
    /// A URI under which a schema without a layout is found.
    std::wstring withoutLayout;

private:
    class FakeSchema final : public data::metadata::ISchema {
    public:
        explicit FakeSchema(FakeLayout* layout) : _layout(layout) {}
        WideString path() const override { return {}; }
        data::metadata::IStructLayout* layout() override { return _layout; }

    private:
        FakeLayout* _layout;
    };

    static core::memory::SharedPtr<data::metadata::ISchema> schema(FakeLayout* layout) {
        return core::memory::share<data::metadata::ISchema>(std::make_unique<FakeSchema>(layout));
    }

    std::map<std::wstring, FakeLayout> _layouts;
};

}  // namespace lumivard::platform::test_support
