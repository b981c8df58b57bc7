// What a URI resolves to.
#include <memory>
#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/schema/SchemaFixture.h"
#include "tests/support/Offsets.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;
using testing::ElementsAre;
using tCall = LoggingStore::tCall;

using lumivard::platform::test_support::kRoot;

class Resolve : public SchemaTest {
protected:
    /// The URIs behind a schema, in their order; none for null.
    tNames uris(const wchar_t* uri) {
        tNames found;
        for (const Layout* layout : layouts(resolve(uri))) found.emplace_back(layout->name());
        return found;
    }
};
LVP_ON_EACH_STORE(Resolve);

TEST_P(Resolve, OfANameIsTheTableOfThatName) {
    const unsigned int a = schemaOf(L"a", L"x");
    schemaOf(L"b", L"y");
    const auto found = resolve(L"a");
    ASSERT_TRUE(found);
    EXPECT_STREQ(found->path(), L"a");
    EXPECT_EQ(found->layout(), layouts(found).at(0));
    EXPECT_EQ(layouts(found)[0]->offset(), a);
    EXPECT_THAT(names(*found->layout()), ElementsAre(L"x"));
}

TEST_P(Resolve, OfNoTextIsNothingAndAsksNoStore) {
    schema(L"");
    LoggingStore log(*store());
    const auto locator = ISchemaLocator::make(&log);
    EXPECT_FALSE(locator->resolve(WideString()));
    EXPECT_FALSE(locator->resolve(nullptr));
    EXPECT_TRUE(log.log().empty());
}

TEST_P(Resolve, OfAnUnknownNameIsNothing) {
    schema(L"a");
    for (const wchar_t* uri : {L"x", L"A", L" a", L"a ", L"a,b", L"x;y", L";", L"a.", L".a"}) {
        EXPECT_FALSE(resolve(uri)) << uri;
    }
}

TEST_P(Resolve, OfSeveralNamesHasThemInTheirOrder) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) schema(name);
    EXPECT_THAT(uris(L"c;a;b"), ElementsAre(L"c", L"a", L"b"));
    EXPECT_THAT(uris(L"b;a"), ElementsAre(L"b", L"a"));
}

TEST_P(Resolve, OfANameGivenTwiceHasTheSameLayoutTwice) {
    schema(L"a");
    const auto found = layouts(resolve(L"a;a"));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0], found[1]);
}

TEST_P(Resolve, PassesOverUnknownNames) {
    schema(L"a");
    schema(L"b");
    EXPECT_THAT(uris(L"a;x"), ElementsAre(L"a"));
    EXPECT_THAT(uris(L"x;a;y;b;z"), ElementsAre(L"a", L"b"));
}

TEST_P(Resolve, ShowsThePathAndLayoutOfTheFirstThatWasFound) {
    schemaOf(L"a", L"x");
    schemaOf(L"b", L"y");
    const auto found = resolve(L"unknown;b;a");
    ASSERT_TRUE(found);
    EXPECT_STREQ(found->path(), L"b");
    EXPECT_THAT(names(*found->layout()), ElementsAre(L"y"));
}

TEST_P(Resolve, KeepsEmptyPieces) {
    schema(L"a");
    EXPECT_THAT(uris(L"a;"), ElementsAre(L"a"));
    schema(L"");
    EXPECT_THAT(uris(L"a;"), ElementsAre(L"a", L""));
    EXPECT_THAT(uris(L";a"), ElementsAre(L"", L"a"));
    EXPECT_THAT(uris(L";"), ElementsAre(L"", L""));
    EXPECT_FALSE(resolve(L"")) << "a string without characters is no text";
}

TEST_P(Resolve, TrimsNothing) {
    schema(L" a ");
    EXPECT_THAT(uris(L" a ;a"), ElementsAre(L" a "));
    EXPECT_THAT(uris(L"a; a "), ElementsAre(L" a "));
}

TEST_P(Resolve, FollowsDottedNames) {
    const unsigned int c = tree::addContainer(store(), kRoot, L"c");
    const unsigned int t = tree::addTable(store(), c, L"t");
    const unsigned int u = tree::addTable(store(), t, L"u");
    const auto found = layouts(resolve(L"c.t;c.t.u;c.x"));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0]->offset(), t);
    EXPECT_EQ(found[1]->offset(), u);
    EXPECT_STREQ(found[1]->name(), L"c.t.u");
}

TEST_P(Resolve, DoesNotReachATableWithADotInItsName) {
    schema(L"a.b");
    EXPECT_FALSE(resolve(L"a.b"));
}

TEST_P(Resolve, FindsTablesAndNothingElse) {
    const unsigned int c = tree::addContainer(store(), kRoot, L"c");
    tree::addPrimitive(store(), kRoot, L"p");
    tree::addPrimitive(store(), c, L"p");
    for (const wchar_t* uri : {L"c", L"p", L"p.x", L"c.p", L"c.p.x"}) EXPECT_FALSE(resolve(uri)) << uri;
}

TEST_P(Resolve, GoesOnWhereAStoreHasTheNameForSomethingElse) {
    schema(store(), L"a");
    tree::addPrimitive(other(), kRoot, L"a");
    tree::addContainer(store(), kRoot, L"b");
    schema(other(), L"b");
    _locator->push(other());
    const auto found = layouts(resolve(L"a;b"));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0]->store(), store());
    EXPECT_EQ(found[1]->store(), other());
}

TEST_P(Resolve, TakesOneOfTwoStoresThatHaveTheTableAndStaysWithIt) {
    schema(store(), L"a");
    schema(other(), L"a");
    _locator->push(other());
    const auto found = layouts(resolve(L"a;a"));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_THAT(found[0]->store(), testing::AnyOf(store(), other()));
    EXPECT_EQ(found[0], found[1]);
}

TEST_P(Resolve, AsksAnEmptyStoreForItsExtentAlone) {
    schema(L"a");
    const auto empty = GetParam().make();
    LoggingStore log(*empty);
    const auto locator = ISchemaLocator::make(&log);
    EXPECT_FALSE(locator->resolve(L"a"));
    EXPECT_EQ(log.log().size(), log.count(tCall::kExtent));
    locator->push(store());
    EXPECT_TRUE(locator->resolve(L"a"));
    EXPECT_EQ(empty->extent(), 0u);
}

TEST_P(Resolve, SeesAStoreThatWasEmptyWhenItWasPushed) {
    const auto late = GetParam().make();
    _locator->push(late.get());
    EXPECT_FALSE(resolve(L"a"));
    tree::root(late.get());
    schema(late.get(), L"a");
    EXPECT_TRUE(resolve(L"a"));
    _locator->pop(late.get());
}

TEST_P(Resolve, DoesNotRememberThatANameWasUnknown) {
    EXPECT_FALSE(resolve(L"a"));
    schema(L"a");
    EXPECT_TRUE(resolve(L"a"));
}

TEST_P(Resolve, OverNoStoresIsNothing) {
    schema(L"a");
    const auto locator = ISchemaLocator::make(nullptr);
    ASSERT_TRUE(locator);
    EXPECT_FALSE(locator->resolve(L"a"));
    locator->push(store());
    EXPECT_TRUE(locator->resolve(L"a"));
}

TEST_P(Resolve, TakesNoGuardAndChangesNothingButCounts) {
    const unsigned int a = schemaOf(L"a", L"x");
    schemaOf(L"base", L"y");
    addStruct(store(), a, L"s", L"base", 4);
    tree::addPrimitive(store(), tree::addTable(store(), a, L"t"), L"z");
    LoggingStore log(*store());
    const auto locator = ISchemaLocator::make(&log);
    ASSERT_TRUE(locator->resolve(L"a;unknown"));
    EXPECT_EQ(log.count(tCall::kLock), 0u);
    EXPECT_TRUE(log.updates(true).empty());
    for (const tCall call : {tCall::kCreate, tCall::kAppend, tCall::kErase, tCall::kSetVersion}) {
        EXPECT_EQ(log.count(call), 0u);
    }
}

TEST_P(Resolve, OfALongListHasAllOfIt) {
    schema(L"a");
    std::wstring uri = L"a";
    for (int i = 1; i < 1000; ++i) uri += i % 2 == 0 ? L";a" : L";unknown";
    EXPECT_EQ(layouts(resolve(uri.c_str())).size(), 500u);
}

}  // namespace
