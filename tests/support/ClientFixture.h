#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "tests/support/StoreFixture.h"

namespace lumivard::platform::test_support {

using core::memory::SharedPtr;
using core::storage::datastore::IDataStore;
using core::string::WideString;
using data::metadata::IPrimitive;
using data::metadata::IProperty;
using data::metadata::IPropertyFilter;
using data::metadata::ISchema;
using data::metadata::ITable;
using data::structure::IContainer;
using data::structure::IContainerFilter;
using data::structure::IContainerFrontEnd;
using data::structure::IGroup;
using data::structure::ILink;
using data::structure::INode;
namespace metadata = data::metadata;
namespace units = data::units;

/// What an absent schema and a missing name are in a call.
inline constexpr ISchema* kNoSchema = nullptr;
inline const WideString kNoName;

using tNames = std::vector<std::wstring>;

/// The characters of a string, for comparing.
inline std::wstring text(const WideString& string) {
    return static_cast<const wchar_t*>(string);
}

/// The names of what a cursor gives, from where it stands to its end, behind which it is left; "(nothing)" where it
/// stops and gives null.
template <class Filter>
tNames names(Filter& filter) {
    tNames names;
    if (!filter.current()) return names;
    do {
        const auto item = filter.current();
        names.push_back(item ? text(item->tag()) : L"(nothing)");
    } while (filter.next());
    return names;
}

/// The name of what a cursor stands on; empty where it stands on nothing.
template <class Filter>
std::wstring current(Filter& filter) {
    const auto item = filter.current();
    return item ? text(item->tag()) : std::wstring();
}

/// A property that is known to be a table, or a primitive; it is not used once the pointer is gone.
inline ITable& asTable(const SharedPtr<IProperty>& property) {
    return *ITable::to(property.get());
}
inline IPrimitive& asPrimitive(const SharedPtr<IProperty>& property) {
    return *IPrimitive::to(property.get());
}

/// All values of a primitive, as elements of a type; none when they cannot be read.
template <class Element>
std::vector<Element> values(IPrimitive& primitive) {
    std::vector<Element> all(primitive.dimension());
    if (!all.empty() && !primitive.get(all.data(), 0, primitive.dimension())) all.clear();
    return all;
}

/// A client of the public interfaces, on each kind of store.
class ClientTest : public StoreTest {
protected:
    /// The top-level group "top", made when it is not there: a new object at each call.
    SharedPtr<IContainer> top() { return IContainerFrontEnd::toplevel(store(), L"top"); }

    /// The container at a path from the top of the store; null when there is none.
    SharedPtr<IContainer> find(const wchar_t* path) { return IContainerFrontEnd::find(store(), path); }

    /// A property at a path from "top"; null when there is none.
    SharedPtr<IProperty> property(const wchar_t* path) { return top()->property(path); }
};

}  // namespace lumivard::platform::test_support
