// Schemas that are deeper than a thread's stack, and such as would fill any memory.

#include <memory>
#include <string>

#include "lumivard/platform/stores.h"
#include "schema/Comparator.h"
#include "tests/schema/SchemaFixture.h"
#include "tests/support/Offsets.h"
#include "tests/support/SmallStack.h"

namespace {

using namespace lumivard::platform::test_support;
namespace stores = lumivard::platform::stores;
using data::Schema::Comparator;

constexpr unsigned int kDeep = 20000;
using lumivard::platform::test_support::kRoot;

/// A store in memory with a root.
class LargeSchema : public testing::Test {
protected:
    LargeSchema() { tree::root(store()); }

    IDataStore* store() { return _store.get(); }

    /// Tables "x", each in the one before, with a number "p" in the last; the first is named as told. Returns that.
    unsigned int addDeepTable(const wchar_t* name) {
        const unsigned int first = tree::addTable(store(), kRoot, name);
        unsigned int table = first;
        for (unsigned int level = 1; level < kDeep; ++level) table = tree::addTable(store(), table, L"x");
        addValues(store(), table, L"p", metadata::kInt32, 1);
        return first;
    }

    /// Tables "s0", "s1", and so on, each filled by `fill(table, number)`. Returns the first.
    template <class Fill>
    unsigned int addSchemas(unsigned int count, Fill fill) {
        data::Metadata::Root root(store(), kRoot);
        unsigned int first = kRoot;
        for (unsigned int number = 0; number < count; ++number) {
            const unsigned int table = tree::table(store(), (L"s" + std::to_wstring(number)).c_str());
            root.add(table);
            fill(table, number);
            if (number == 0) first = table;
        }
        return first;
    }

    const std::unique_ptr<IDataStore> _store = stores::memory();
    SharedPtr<ISchemaLocator> _locator = ISchemaLocator::make(store());
};

TEST_F(LargeSchema, OfTablesInTablesIsLaidOut) {
    addDeepTable(L"deep");
    onASmallStack([&] {
        const auto schema = _locator->resolve(L"deep");
        ASSERT_TRUE(schema);
        ASSERT_EQ(schema->layout()->fields(), 1u);
        const std::wstring name = schema->layout()->get(0u)->name;
        EXPECT_EQ(name.size(), 2 * (kDeep - 1) + 1);
        EXPECT_EQ(name.substr(0, 4), L"x.x.");
        EXPECT_EQ(name.substr(name.size() - 3), L"x.p");
    });
}

TEST_F(LargeSchema, OfTablesInTablesIsCompared) {
    const unsigned int deep = addDeepTable(L"deep");
    const unsigned int same = addDeepTable(L"same");
    onASmallStack([&] { EXPECT_TRUE(Comparator().compare(store(), same, store(), deep)); });
}

TEST_F(LargeSchema, OfTablesInTablesIsInherited) {
    addDeepTable(L"deep");
    const unsigned int heir = tree::addTable(store(), kRoot, L"heir");
    onASmallStack([&] {
        const auto schema = _locator->resolve(L"deep");
        EXPECT_TRUE(data::Design::Table(store(), heir, false).inherit(schema.get()));
    });
    unsigned int depth = 0;
    unsigned int offset = heir;
    for (; data::Record::peek(store(), offset) == data::Record::kTable; ++depth) {
        const auto children = stored::children(store(), offset);
        ASSERT_EQ(children.size(), 1u);
        offset = children[0];
        ASSERT_EQ(stored::byte(store(), offset, stored::kFlags), 0x06);
    }
    EXPECT_EQ(depth, kDeep);
}

TEST_F(LargeSchema, OfStructsInStructsIsFoundToItsEnd) {
    const auto uri = [](unsigned int number) { return L"s" + std::to_wstring(number); };
    const unsigned int first = addSchemas(kDeep, [&](unsigned int table, unsigned int number) {
        if (number != 0) addStruct(store(), table, L"m", uri(number - 1).c_str(), 0);
        addValues(store(), table, L"x", metadata::kInt32, 1);
    });
    onASmallStack([&] {
        const auto schema = _locator->resolve(uri(kDeep - 1).c_str());
        ASSERT_TRUE(schema);
        EXPECT_EQ(names(*schema->layout()), tNames{L"x"});
    });
    EXPECT_EQ(stored::refs(store(), first), 1u) << "the last of the row was found";
    EXPECT_EQ(names(*_locator->resolve(uri(kDeep / 2).c_str())->layout()), tNames{L"x"});
}

TEST_F(LargeSchema, OfThousandsOfStructsOfOneFieldIsWholeInALibraryOfManySchemas) {
    constexpr unsigned int kMembers = 3000;
    addSchemas(kDeep, [&](unsigned int table, unsigned int) { addValues(store(), table, L"x", metadata::kInt32, 1); });
    const unsigned int large = tree::addTable(store(), kRoot, L"large");
    data::Design::Table open(store(), large, false);
    for (unsigned int i = 0; i < kMembers; ++i) {
        const unsigned int member = tree::primitive(store(), (L"m" + std::to_wstring(i)).c_str(), metadata::kStruct);
        data::Design::Primitive(store(), member).reset(4);
        data::Design::Primitive(store(), member).base((L"s" + std::to_wstring(i)).c_str());
        ASSERT_TRUE(open.add(member));
    }
    EXPECT_EQ(_locator->resolve(L"large")->layout()->fields(), kMembers);
}

TEST_F(LargeSchema, OfSixteenThatAllNameEachOtherEnds) {
    constexpr unsigned int kSchemas = 16;
    std::vector<unsigned int> tables;
    for (unsigned int i = 0; i < kSchemas; ++i) {
        const unsigned int table = tree::addTable(store(), kRoot, (L"s" + std::to_wstring(i)).c_str());
        for (unsigned int j = 0; j < kSchemas; ++j) {
            const std::wstring other = L"s" + std::to_wstring(j);
            addStruct(store(), table, other.c_str(), other.c_str(), 64);
        }
        addValues(store(), table, L"x", metadata::kInt32, 1);
        tables.push_back(table);
    }
    const auto found = _locator->resolve(L"s0");
    ASSERT_TRUE(found);
    EXPECT_STREQ(found->path(), L"s0");
    EXPECT_EQ(stored::refs(store(), tables[0]), 1u);
    for (unsigned int i = 1; i < kSchemas; ++i) EXPECT_EQ(stored::refs(store(), tables[i]), 0u) << i;
}

TEST_F(LargeSchema, WhoseNamesWouldTakeGigabytesEndsWithTheFirstOfThem) {
    constexpr unsigned int kElements = 20000;
    const std::wstring longName(1 << 16, L'n');
    tree::addTable(store(), kRoot, L"byte");
    addValues(store(), stored::children(store(), kRoot)[0], L"b", metadata::kInt8, 1);
    const unsigned int large = tree::addTable(store(), kRoot, L"large");
    addValues(store(), large, L"first", metadata::kInt8, 1);
    addStruct(store(), large, longName.c_str(), L"byte", kElements);
    const auto found = _locator->resolve(L"large");
    ASSERT_TRUE(found);
    IStructLayout& layout = *found->layout();
    ASSERT_GE(layout.fields(), 2u);
    EXPECT_LT(layout.fields(), kElements);
    EXPECT_STREQ(layout.get(0u)->name, L"first");
    EXPECT_EQ(layout.get(1u)->name, longName + L"[0].b");
    EXPECT_EQ(layout.stride(), layout.fields()) << "of one byte each";
}

}  // namespace
