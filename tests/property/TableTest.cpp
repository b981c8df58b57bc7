#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// A table as a set of properties.
class Table : public ClientTest {
protected:
    /// The table "table", opened anew at each call.
    SharedPtr<IProperty> opened() {
        const auto owner = top();
        if (!owner->has(L"table")) owner->create(L"table", kNoSchema);
        return owner->property(L"table");
    }

    unsigned int offsetOfTable() { return stored::children(store(), stored::children(store(), 0).at(0)).at(0); }

    static SharedPtr<IPrimitive> add(ITable& table, const wchar_t* name) {
        return table.create(name, metadata::kInt32, units::kNoUnit);
    }

    /// The names of the items by their index.
    static tNames items(ITable& table) {
        tNames items;
        for (unsigned int index = 0; index < table.items(); ++index) {
            const auto item = table.at(index);
            items.push_back(item ? text(item->tag()) : L"(none)");
        }
        return items;
    }
};
LVP_ON_EACH_STORE(Table);

TEST_P(Table, IsEmptyAtFirst) {
    const auto property = opened();
    ITable& table = asTable(property);
    EXPECT_EQ(0u, table.items());
    EXPECT_FALSE(table.at(0));
    EXPECT_FALSE(table.lookup(L"item"));
    EXPECT_EQ(nullptr, table.base().value());
}

TEST_P(Table, MakesPrimitives) {
    const auto property = opened();
    const auto made = asTable(property).create(L"length", metadata::kDouble, units::kMeter);
    ASSERT_TRUE(made);
    EXPECT_EQ(metadata::kDouble, made->valuetype());
    EXPECT_EQ(units::kMeter, made->units());
    EXPECT_EQ(0u, made->dimension());
    EXPECT_EQ(L"top.table.length", text(made->container()->path()));
    EXPECT_EQ(L"table", text(made->container()->parent()->container()->tag()));
    EXPECT_EQ(1u, asTable(property).items());
}

TEST_P(Table, MakesTables) {
    const auto property = opened();
    const auto made = asTable(property).create(L"inner", kNoSchema);
    ASSERT_TRUE(made);
    EXPECT_EQ(L"top.table.inner", text(made->container()->path()));
    EXPECT_EQ(0u, made->items());
    EXPECT_TRUE(add(*made, L"item"));
    EXPECT_TRUE(asTable(property).lookup(L"inner.item"));
}

TEST_P(Table, RefusesANameThatIsTaken) {
    const auto property = opened();
    ITable& table = asTable(property);
    add(table, L"number");
    table.create(L"inner", kNoSchema);
    table.defaults(units::kMeter, metadata::kDouble);
    const auto extent = store()->extent();
    for (const wchar_t* name : {L"number", L"inner"}) {
        EXPECT_FALSE(add(table, name));
        EXPECT_FALSE(table.create(name, kNoSchema));
        EXPECT_FALSE(table.create(name, units::group(units::kMeter)));
        EXPECT_EQ(nullptr, table.create(name, kNoSchema).counter());
    }
    EXPECT_EQ(extent, store()->extent());
    EXPECT_EQ(2u, table.items());
}

TEST_P(Table, RefusesANameThatLeadsSomewhereAsAPath) {
    const auto property = opened();
    ITable& table = asTable(property);
    add(*table.create(L"inner", kNoSchema), L"item");
    add(table, L"number");
    const auto extent = store()->extent();
    EXPECT_FALSE(add(table, L"inner.item"));
    EXPECT_FALSE(table.create(L"inner.item", kNoSchema));
    // A path that goes one name beyond a primitive ends on that primitive.
    EXPECT_FALSE(add(table, L"number.beyond"));
    EXPECT_EQ(extent, store()->extent());
}

TEST_P(Table, TakesADottedNameThatLeadsNowhere) {
    const auto property = opened();
    ITable& table = asTable(property);
    table.create(L"inner", kNoSchema);
    EXPECT_TRUE(add(table, L"inner.item"));
    EXPECT_TRUE(table.create(L"a.b", kNoSchema));
    EXPECT_FALSE(table.lookup(L"inner.item"));
    EXPECT_FALSE(table.lookup(L"a.b"));
    EXPECT_EQ((tNames{L"inner", L"inner.item", L"a.b"}), items(table));
}

TEST_P(Table, RefusesADottedNameThatAnItemBears) {
    const auto property = opened();
    ITable& table = asTable(property);
    add(table, L"a.b");
    const auto extent = store()->extent();
    EXPECT_FALSE(add(table, L"a.b"));
    EXPECT_FALSE(table.create(L"a.b", kNoSchema));
    EXPECT_EQ(extent, store()->extent());
}

TEST_P(Table, MakesPrimitivesOfUnknownKinds) {
    const auto property = opened();
    const auto made = asTable(property).create(L"odd", static_cast<metadata::tValue>(25), units::kMeter);
    ASSERT_TRUE(made);
    EXPECT_EQ(25u, made->valuetype());
    EXPECT_EQ(0u, made->dimension());
    EXPECT_EQ(units::kMeter, made->units());
}

TEST_P(Table, FindsItemsByNameAndByPath) {
    const auto property = opened();
    ITable& table = asTable(property);
    add(*table.create(L"inner", kNoSchema), L"item");
    add(table, L"number");
    EXPECT_EQ(0u, table.lookup(L"number")->type());
    EXPECT_EQ(1u, table.lookup(L"inner")->type());
    EXPECT_EQ(L"top.table.inner.item", text(table.lookup(L"inner.item")->path()));
    EXPECT_EQ(L"number", text(table.lookup(L"number.ignored")->tag()));
    for (const wchar_t* path :
         {L"item", L"nothing", L"inner.nothing", L"table.number", L"inner.", L".number", L"number.two.more"}) {
        EXPECT_FALSE(table.lookup(path));
    }
}

TEST_P(Table, FindsNoContainer) {
    const auto property = opened();
    top()->create(IContainer::kGroup, L"group", kNoSchema);
    const unsigned int top = stored::children(store(), 0).at(0);
    stored::move(store(), stored::children(store(), top).at(1), top, offsetOfTable());
    const auto again = opened();
    EXPECT_EQ(1u, asTable(again).items());
    EXPECT_FALSE(asTable(again).lookup(L"group"));
    EXPECT_FALSE(asTable(again).at(0));
    EXPECT_FALSE(add(asTable(again), L"group"));
}

TEST_P(Table, GivesItemsInTheOrderOfTheirAdding) {
    const auto property = opened();
    ITable& table = asTable(property);
    add(table, L"z");
    table.create(L"m", kNoSchema);
    add(table, L"a");
    EXPECT_EQ((tNames{L"z", L"m", L"a"}), items(table));
    EXPECT_EQ((tNames{L"z", L"m", L"a"}), items(asTable(opened())));
    EXPECT_FALSE(table.at(3));
    EXPECT_FALSE(table.at(0xFFFFFFFFu));
    EXPECT_FALSE(table.at(0x3FFFFFFFu));
    EXPECT_FALSE(table.at(0x40000000u));
}

TEST_P(Table, DestroysItems) {
    const auto property = opened();
    ITable& table = asTable(property);
    for (const wchar_t* name : {L"a", L"b", L"c"}) add(table, name);
    EXPECT_TRUE(table.destroy(L"b"));
    EXPECT_FALSE(table.destroy(L"b"));
    EXPECT_FALSE(table.lookup(L"b"));
    EXPECT_EQ((tNames{L"a", L"c"}), items(table));
    EXPECT_EQ((tNames{L"a", L"c"}), items(asTable(opened())));
    EXPECT_TRUE(add(table, L"b"));
    EXPECT_EQ((tNames{L"a", L"c", L"b"}), items(table));
}

TEST_P(Table, DestroysByNameAndNotByPath) {
    const auto property = opened();
    ITable& table = asTable(property);
    add(*table.create(L"inner", kNoSchema), L"item");
    EXPECT_FALSE(table.destroy(L"inner.item"));
    EXPECT_TRUE(table.destroy(L"inner"));
}

TEST_P(Table, DoesNotDestroyWhatIsOpen) {
    const auto property = opened();
    ITable& table = asTable(property);
    add(*table.create(L"inner", kNoSchema), L"item");
    auto held = table.lookup(L"inner.item");
    EXPECT_FALSE(table.destroy(L"inner"));
    held.reset();
    EXPECT_TRUE(table.destroy(L"inner"));
}

TEST_P(Table, DoesNotDestroyWhatCameFromASchema) {
    const auto property = opened();
    ITable& table = asTable(property);
    add(table, L"item")->container()->on(0x02);
    EXPECT_FALSE(table.destroy(L"item"));
    table.lookup(L"item")->off(0x02);
    EXPECT_TRUE(table.destroy(L"item"));
}

TEST_P(Table, KnowsOnlyWhatIsDoneThroughItself) {
    const auto earlier = opened();
    const auto other = opened();
    add(asTable(other), L"item");
    EXPECT_EQ(0u, asTable(earlier).items());
    EXPECT_FALSE(asTable(earlier).lookup(L"item"));
    EXPECT_FALSE(asTable(earlier).destroy(L"item"));
    EXPECT_EQ(1u, asTable(other).items());
}

TEST_P(Table, ReadsTheStoredListByIndex) {
    const auto adding = opened();
    add(asTable(adding), L"first");
    const auto earlier = opened();
    add(asTable(adding), L"second");
    // The list is the store's; a table that never had one when it was opened does not know where it is.
    EXPECT_EQ(L"second", text(asTable(earlier).at(1)->tag()));
    EXPECT_EQ(1u, asTable(earlier).items());
}

TEST_P(Table, GoesOnKnowingWhatAnotherObjectDestroyed) {
    const auto adding = opened();
    add(asTable(adding), L"item");
    const auto earlier = opened();
    EXPECT_TRUE(asTable(adding).destroy(L"item"));
    EXPECT_EQ(1u, asTable(earlier).items());
    EXPECT_FALSE(asTable(earlier).lookup(L"item"));
    EXPECT_FALSE(asTable(earlier).at(0));
    EXPECT_FALSE(add(asTable(earlier), L"item"));
}

TEST_P(Table, AddsToAListThatAnotherObjectMade) {
    const auto one = opened();
    const auto two = opened();
    add(asTable(one), L"first");
    add(asTable(two), L"second");
    EXPECT_EQ((tNames{L"first", L"second"}), items(asTable(opened())));
}

}  // namespace
