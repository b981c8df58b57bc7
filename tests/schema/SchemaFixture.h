#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "record/Entity.h"
#include "schema/Layout.h"
#include "schema/SchemaImpl.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace lumivard::platform::test_support {

namespace data = lumivard::platform::data;
namespace metadata = data::metadata;
using core::memory::SharedPtr;
using core::storage::datastore::IDataStore;
using core::string::WideString;
using data::Schema::Layout;
using data::Schema::SchemaImpl;
using metadata::ISchema;
using metadata::ISchemaLocator;
using metadata::IStructLayout;

using tNames = std::vector<std::wstring>;

/// The flags of an item that a schema has brought: inherited and hidden.
inline constexpr unsigned char kFromASchema = 0x06;

/// One field of a layout, for comparing.
struct tFieldIs {
    std::wstring name;
    metadata::tValue type;
    unsigned int dim;
    unsigned int offset;
    unsigned int size;
    bool operator==(const tFieldIs&) const = default;
};

inline void PrintTo(const tFieldIs& field, std::ostream* out) {
    *out << testing::PrintToString(field.name) << " of kind " << field.type << ", " << field.dim << " elements, "
         << field.size << " bytes at " << field.offset;
}

/// All fields of a layout, and their names alone, in the order of the block.
inline std::vector<tFieldIs> fields(IStructLayout& layout) {
    std::vector<tFieldIs> all;
    for (unsigned int i = 0; i < layout.fields(); ++i) {
        const IStructLayout::tField& field = *layout.get(i);
        all.push_back({field.name, field.type, field.dim, field.offset, field.size});
    }
    return all;
}

inline tNames names(IStructLayout& layout) {
    tNames all;
    for (unsigned int i = 0; i < layout.fields(); ++i) all.emplace_back(layout.get(i)->name);
    return all;
}

/// The layouts behind a schema, in their order.
inline std::vector<Layout*> layouts(const SharedPtr<ISchema>& schema) {
    return schema ? SchemaImpl::of(schema.get())->layouts() : std::vector<Layout*>();
}

/// A new child of so many elements, all zero.
inline unsigned int addValues(IDataStore* store, unsigned int owner, const wchar_t* name, metadata::tValue kind,
                              unsigned int count) {
    const unsigned int offset = tree::add(store, owner, tree::primitive(store, name, kind));
    data::Design::Primitive(store, offset).reset(count);
    return offset;
}

/// A new child that is a struct of so many bytes; `base` names its schema.
inline unsigned int addStruct(IDataStore* store, unsigned int owner, const wchar_t* name, const wchar_t* base,
                              unsigned int bytes) {
    const unsigned int offset = addValues(store, owner, name, metadata::kStruct, bytes);
    data::Design::Primitive(store, offset).base(base);
    return offset;
}

/// The names that a set of a store lists, in the order of its list.
inline tNames childNames(IDataStore* store, unsigned int owner) {
    tNames all;
    for (const unsigned int child : stored::children(store, owner)) {
        all.push_back(data::Record::Entity(store, child).name());
    }
    return all;
}

/// Two stores with a root each, and a locator over the first.
class SchemaTest : public StoreTest {
protected:
    SchemaTest() {
        tree::root(store());
        tree::root(other());
    }

    /// A new table at the top of the first store, or of another one: a schema without items.
    unsigned int schema(const wchar_t* name) { return tree::addTable(store(), 0, name); }
    static unsigned int schema(IDataStore* store, const wchar_t* name) { return tree::addTable(store, 0, name); }

    /// The same with one number in it.
    unsigned int schemaOf(const wchar_t* name, const wchar_t* item) { return schemaOf(store(), name, item); }
    static unsigned int schemaOf(IDataStore* store, const wchar_t* name, const wchar_t* item) {
        const unsigned int table = schema(store, name);
        addValues(store, table, item, metadata::kInt32, 1);
        return table;
    }

    SharedPtr<ISchema> resolve(const wchar_t* uri) { return _locator->resolve(uri); }

    /// The layout of a URI that is known to resolve.
    IStructLayout& layout(const wchar_t* uri) {
        const auto found = resolve(uri);
        EXPECT_TRUE(found);
        return *found->layout();
    }

    SharedPtr<ISchemaLocator> _locator = ISchemaLocator::make(store());
};

}  // namespace lumivard::platform::test_support
