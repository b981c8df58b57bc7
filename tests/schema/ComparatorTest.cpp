// Whether a set has the items of a schema's table.
#include "schema/Comparator.h"

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/schema/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using data::Schema::Comparator;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;

/// Which of the two sets that are compared has what the schema has.
struct tMatch {
    bool table;
    bool container;
    bool operator==(const tMatch&) const = default;
};
constexpr tMatch kBoth{true, true};
constexpr tMatch kNeither{false, false};

void PrintTo(const tMatch& match, std::ostream* out) {
    *out << "table: " << match.table << ", container: " << match.container;
}

/// A schema in the one store; in the other a table and a container, which get the same items.
class Compare : public SchemaTest {
protected:
    /// New items of the schema.
    unsigned int want(const wchar_t* name, metadata::tValue kind = metadata::kInt32) {
        return tree::add(store(), _schema, tree::primitive(store(), name, kind));
    }
    unsigned int wantTable(const wchar_t* name) { return tree::addTable(store(), _schema, name); }

    /// New items of both sets.
    void have(const wchar_t* name, metadata::tValue kind = metadata::kInt32) {
        for (const unsigned int set : {_table, _container})
            tree::add(other(), set, tree::primitive(other(), name, kind));
    }
    /// A table of these numbers.
    void haveTable(const wchar_t* name, const tNames& items) {
        for (const unsigned int set : {_table, _container}) list(set, name, items);
    }

    /// Adds an item to both sets even where its name is taken.
    void listAgain(const wchar_t* name, metadata::tValue kind = metadata::kInt32) {
        for (const unsigned int set : {_table, _container}) {
            stored::enlist(other(), set, tree::primitive(other(), name, kind));
        }
    }

    void list(unsigned int set, const wchar_t* name, const tNames& items) {
        const unsigned int table = tree::table(other(), name);
        for (const std::wstring& item : items) tree::addPrimitive(other(), table, item.c_str());
        stored::enlist(other(), set, table);
    }

    bool compare(unsigned int set) { return Comparator().compare(other(), set, store(), _schema); }

    tMatch compare() { return {compare(_table), compare(_container)}; }

    const unsigned int _schema = schema(L"schema");
    const unsigned int _table = schema(other(), L"table");
    const unsigned int _container = tree::addContainer(other(), 0, L"container");
};
LVP_ON_EACH_STORE(Compare);

TEST_P(Compare, AnEmptySchemaMatchesAnything) {
    EXPECT_EQ(compare(), kBoth);
    have(L"a");
    EXPECT_EQ(compare(), kBoth);
    EXPECT_TRUE(compare(tree::addPrimitive(other(), 0, L"p")));
}

TEST_P(Compare, AnEmptySetHasNoItem) {
    want(L"a");
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, TheSameItemsMatch) {
    for (const wchar_t* name : {L"a", L"b"}) {
        want(name);
        have(name);
    }
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, MoreItemsBeforeBetweenAndBehindAreNoMatter) {
    want(L"a");
    want(L"b");
    for (const wchar_t* name : {L"x", L"a", L"y", L"b", L"z"}) have(name);
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, AMissingItemFails) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) want(name);
    have(L"a");
    have(L"c");
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, AnotherOrderFails) {
    want(L"a");
    want(L"b");
    have(L"b");
    have(L"a");
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, AnotherValueKindFails) {
    want(L"a", metadata::kInt32);
    have(L"a", metadata::kUInt32);
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, AnItemOfAnotherValueKindIsPassedOverForALaterOne) {
    want(L"a", metadata::kDouble);
    have(L"a", metadata::kInt32);
    listAgain(L"a", metadata::kDouble);
    EXPECT_EQ(compare(), kNeither) << "one name: the second entry is not looked at";
    have(L"b");
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, NamesAreComparedWhole) {
    want(L"name");
    for (const wchar_t* name : {L"Name", L"nam", L"names", L""}) have(name);
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, NothingButNamesAndKindsMatters) {
    data::Design::Primitive wanted(store(), want(L"s", metadata::kStruct));
    wanted.base(L"x");
    wanted.reset(10);
    wanted.units(data::units::kMeter);
    wanted.on(0x07);
    wanted.localize(L"Name", L"de");
    wanted.valuelocale(L"de");
    have(L"s", metadata::kStruct);
    wantTable(L"t");
    haveTable(L"t", {});
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, ATableIsMatchedByItsContent) {
    tree::addPrimitive(store(), wantTable(L"t"), L"a");
    haveTable(L"t", {L"x", L"a"});
    EXPECT_EQ(compare(), kBoth);
    tree::addPrimitive(store(), stored::children(store(), _schema)[0], L"b");
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, AnEmptyTableOfTheSchemaIsMatchedByItsName) {
    wantTable(L"t");
    haveTable(L"u", {L"a"});
    EXPECT_EQ(compare(), kNeither);
    haveTable(L"t", {L"a"});
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, TheFirstTableOfTheNameDecides) {
    tree::addPrimitive(store(), wantTable(L"t"), L"a");
    haveTable(L"t", {L"wrong"});
    haveTable(L"t", {L"a"});
    have(L"more");
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, APrimitiveOfATablesNameIsPassedOver) {
    wantTable(L"t");
    have(L"t");
    haveTable(L"t", {});
    have(L"more");
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, ATableOfAPrimitivesNameIsPassedOver) {
    want(L"p");
    haveTable(L"p", {L"p"});
    listAgain(L"p");
    have(L"more");
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, ItemsBehindATableAreFoundBehindIt) {
    tree::addPrimitive(store(), wantTable(L"t"), L"a");
    want(L"b");
    have(L"b");
    haveTable(L"t", {L"a"});
    EXPECT_EQ(compare(), kNeither);
    listAgain(L"b");
    have(L"more");
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, OnlyDirectItemsAreLookedAt) {
    want(L"a");
    haveTable(L"t", {L"a"});
    tree::addPrimitive(other(), tree::addContainer(other(), _container, L"c"), L"a");
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, ASchemaWithAContainerIsMatchedByNothing) {
    tree::addContainer(store(), _schema, L"c");
    for (const unsigned int set : {_table, _container}) tree::addContainer(other(), set, L"c");
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, ASchemaWithAListAmongItsItemsIsMatchedByNothing) {
    stored::enlist(store(), _schema, stored::makeList(store()));
    want(L"a");
    for (const unsigned int set : {_table, _container}) stored::enlist(other(), set, stored::makeList(other()));
    have(L"a");
    have(L"more");
    EXPECT_EQ(compare(), kNeither);
}

TEST_P(Compare, ContainersOfTheSetArePassedOver) {
    want(L"c");
    for (const unsigned int set : {_table, _container}) tree::addContainer(other(), set, L"c");
    listAgain(L"c");
    have(L"more");
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, WhatIsNoTableIsNoSchema) {
    for (const unsigned int offset : {0u, tree::addContainer(store(), 0, L"c"), tree::addPrimitive(store(), 0, L"p"),
                                      stored::makeList(store()), 777u}) {
        EXPECT_FALSE(Comparator().compare(other(), _table, store(), offset)) << offset;
    }
}

TEST_P(Compare, WhatIsNeitherTableNorContainerHasNoItems) {
    want(L"container");
    EXPECT_FALSE(compare(0));
    EXPECT_FALSE(compare(tree::addPrimitive(other(), 0, L"container")));
    EXPECT_FALSE(compare(stored::makeList(other())));
    EXPECT_FALSE(compare(777));
}

TEST_P(Compare, AfterAMatchGoesOnBehindTheItemInAContainerAndOnItInATable) {
    want(L"a");
    stored::enlist(store(), _schema, tree::primitive(store(), L"a"));
    want(L"b");  // a second name, so that the second "a" is looked at
    ASSERT_EQ(stored::children(store(), _schema).size(), 3u);
    have(L"a");
    EXPECT_TRUE(compare(_table));
    EXPECT_FALSE(compare(_container));
    listAgain(L"a");
    have(L"more");
    EXPECT_TRUE(compare(_container));
}

TEST_P(Compare, InTablesBelowAContainerStaysOnTheItemToo) {
    const unsigned int t = wantTable(L"t");
    tree::addPrimitive(store(), t, L"a");
    stored::enlist(store(), t, tree::primitive(store(), L"a"));
    tree::addPrimitive(store(), t, L"b");
    haveTable(L"t", {L"a"});
    EXPECT_EQ(compare(), kBoth);
}

TEST_P(Compare, BeginsAnewEachTime) {
    want(L"a");
    have(L"a");
    Comparator comparator;
    for (int i = 0; i < 2; ++i) EXPECT_TRUE(comparator.compare(other(), _container, store(), _schema));
    EXPECT_FALSE(comparator.compare(store(), 0, store(), _schema));
    EXPECT_TRUE(comparator.compare(other(), _container, store(), _schema));
}

TEST_P(Compare, MayHaveBothInOneStoreAndMatchesATableWithItself) {
    want(L"a");
    tree::addPrimitive(store(), wantTable(L"t"), L"b");
    EXPECT_TRUE(Comparator().compare(store(), _schema, store(), _schema));
}

TEST_P(Compare, ChangesNothingAndLeavesNothingOpen) {
    want(L"a");
    tree::addPrimitive(store(), wantTable(L"t"), L"b");
    have(L"a");
    haveTable(L"t", {L"b"});
    LoggingStore log(*other());
    EXPECT_TRUE(Comparator().compare(&log, _container, store(), _schema));
    EXPECT_TRUE(log.updates(true).empty());
    EXPECT_EQ(log.count(LoggingStore::tCall::kLock), 0u);
    for (const unsigned int offset : stored::children(other(), _container))
        EXPECT_EQ(stored::refs(other(), offset), 0u);
    EXPECT_EQ(stored::refs(other(), _container), 0u);
    EXPECT_EQ(stored::refs(store(), _schema), 0u);
}

TEST_P(Compare, PassesOnWhatAStoreThrows) {
    want(L"a");
    have(L"a");
    FailingStore refusing(*other());
    refusing.failAfter(0, FailingStore::kRead);
    EXPECT_THROW(Comparator().compare(&refusing, _table, store(), _schema), std::runtime_error);
    EXPECT_EQ(stored::refs(other(), _table), 0u);
}

TEST_P(Compare, EndsWhereTheSchemaIsFoundBelowItself) {
    const unsigned int t = wantTable(L"t");
    stored::enlist(store(), t, t);
    haveTable(L"t", {L"a"});
    EXPECT_EQ(compare(), kNeither);
    EXPECT_FALSE(Comparator().compare(store(), _schema, store(), _schema));
}

TEST_P(Compare, GoesAsDeepAsTheSchemaWhereTheSetIsFoundBelowItself) {
    const unsigned int inner = tree::addTable(store(), wantTable(L"t"), L"t");
    tree::addPrimitive(store(), tree::addTable(store(), inner, L"t"), L"a");
    const unsigned int t = tree::addTable(other(), _table, L"t");
    stored::enlist(other(), t, t);
    tree::addPrimitive(other(), t, L"a");
    EXPECT_TRUE(compare(_table));
    tree::addPrimitive(store(), inner, L"b");
    EXPECT_FALSE(compare(_table));
}

}  // namespace
