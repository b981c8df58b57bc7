// The set of stores of a locator, and what it keeps of them.
#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/schema/SchemaFixture.h"
#include "tests/support/Offsets.h"

namespace {

using namespace lumivard::platform::test_support;
using data::Metadata::Root;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;
using testing::ElementsAre;

using lumivard::platform::test_support::kRoot;

class LocatorStores : public SchemaTest {};
LVP_ON_EACH_STORE(LocatorStores);

TEST_P(LocatorStores, AreSearchedOncePushed) {
    schema(other(), L"a");
    EXPECT_FALSE(resolve(L"a"));
    _locator->push(other());
    EXPECT_TRUE(resolve(L"a"));
}

TEST_P(LocatorStores, HoldAStoreThatIsPushedTwiceOnce) {
    schema(L"a");
    _locator->push(store());
    EXPECT_TRUE(_locator->pop(store()));
    EXPECT_FALSE(resolve(L"a"));
    EXPECT_FALSE(_locator->pop(store()));
}

TEST_P(LocatorStores, DoNotHoldNull) {
    schema(L"a");
    _locator->push(nullptr);
    EXPECT_FALSE(_locator->pop(nullptr));
    EXPECT_TRUE(resolve(L"a"));
}

TEST_P(LocatorStores, DoNotLetGoOfWhatTheyDoNotHold) {
    schema(L"a");
    const auto found = layouts(resolve(L"a"));
    EXPECT_FALSE(_locator->pop(other()));
    EXPECT_EQ(layouts(resolve(L"a")), found);
}

TEST_P(LocatorStores, AreNoStackSoThatAnyOneCanGo) {
    schema(store(), L"a");
    schema(other(), L"b");
    _locator->push(other());
    EXPECT_TRUE(_locator->pop(store()));
    EXPECT_FALSE(resolve(L"a"));
    EXPECT_TRUE(resolve(L"b"));
}

TEST_P(LocatorStores, TakeTheirLayoutsWithThemAndNoOthers) {
    schema(store(), L"a");
    schema(store(), L"b");
    schema(other(), L"c");
    _locator->push(other());
    const auto kept = layouts(resolve(L"c"));
    ASSERT_EQ(layouts(resolve(L"a;b;c")).size(), 3u);
    EXPECT_TRUE(_locator->pop(store()));
    EXPECT_EQ(layouts(resolve(L"a;b;c")), kept);
}

TEST_P(LocatorStores, LetAnotherTableTakeTheNameOfOneThatWent) {
    schema(store(), L"a");
    const unsigned int a = schema(other(), L"a");
    ASSERT_TRUE(resolve(L"a"));
    _locator->push(other());
    _locator->pop(store());
    const auto found = layouts(resolve(L"a"));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0]->store(), other());
    EXPECT_EQ(found[0]->offset(), a);
}

TEST_P(LocatorStores, AreReadAnewAfterAPopAndAPush) {
    const unsigned int a = schemaOf(L"a", L"x");
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"x"));
    _locator->pop(store());
    addValues(store(), a, L"y", metadata::kInt32, 1);
    _locator->push(store());
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"x", L"y"));
}

TEST_P(LocatorStores, LeaveTheFieldsThatOthersTookFromThem) {
    addStruct(store(), schema(L"a"), L"s", L"base", 4);
    schemaOf(other(), L"base", L"x");
    _locator->push(other());
    const auto found = layouts(resolve(L"a"));
    ASSERT_TRUE(resolve(L"base"));
    EXPECT_TRUE(_locator->pop(other()));
    EXPECT_FALSE(resolve(L"base"));
    EXPECT_EQ(layouts(resolve(L"a")), found);
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"s.x"));
}

TEST_P(LocatorStores, AreForgottenByResetButNotTheirLayouts) {
    schema(L"a");
    schema(L"b");
    const auto found = layouts(resolve(L"a"));
    _locator->reset();
    EXPECT_EQ(layouts(resolve(L"a")), found);
    EXPECT_FALSE(resolve(L"b"));
    EXPECT_FALSE(_locator->pop(store()));
    EXPECT_EQ(layouts(resolve(L"a")), found) << "which a pop that did nothing leaves where it is";
}

TEST_P(LocatorStores, TakeTheirLayoutsAlongWhenTheyComeBackAfterAResetAndGo) {
    schema(L"a");
    ASSERT_TRUE(resolve(L"a"));
    _locator->reset();
    _locator->push(store());
    EXPECT_TRUE(_locator->pop(store()));
    EXPECT_FALSE(resolve(L"a"));
}

/// A name that was resolved once.
class KnownName : public SchemaTest {};
LVP_ON_EACH_STORE(KnownName);

TEST_P(KnownName, GoesOnMeaningTheSameTableWhateverIsPushed) {
    schema(store(), L"a");
    schema(other(), L"a");
    const auto found = layouts(resolve(L"a"));
    _locator->push(other());
    EXPECT_EQ(layouts(resolve(L"a")), found);
    EXPECT_EQ(found.at(0)->store(), store());
}

TEST_P(KnownName, GoesOnShowingWhatTheTableWas) {
    const unsigned int a = schemaOf(L"a", L"x");
    const auto found = layouts(resolve(L"a"));
    addValues(store(), a, L"y", metadata::kInt32, 1);
    EXPECT_TRUE(data::Design::Table(store(), a, false).remove(L"x"));
    EXPECT_EQ(layouts(resolve(L"a")), found);
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"x"));
}

TEST_P(KnownName, StaysWhenTheTableIsRenamed) {
    const unsigned int a = schema(L"a");
    const auto found = layouts(resolve(L"a"));
    ASSERT_TRUE(Root(store(), kRoot).rename(L"a", L"b"));
    EXPECT_EQ(layouts(resolve(L"a")), found);
    const auto renamed = layouts(resolve(L"b"));
    ASSERT_EQ(renamed.size(), 1u);
    EXPECT_NE(renamed, found);
    EXPECT_EQ(renamed[0]->offset(), a);
    EXPECT_EQ(stored::refs(store(), a), 2u) << "one for each name";
}

TEST_P(KnownName, ResolvesWithoutTouchingAStore) {
    const unsigned int a = schemaOf(L"a", L"x");
    schemaOf(L"base", L"y");
    addStruct(store(), a, L"s", L"base", 4);
    LoggingStore log(*store());
    const auto locator = ISchemaLocator::make(&log);
    const auto found = layouts(locator->resolve(L"a"));
    log.clearLog();
    EXPECT_EQ(layouts(locator->resolve(L"a")), found);
    EXPECT_EQ(layouts(locator->resolve(L"base;a")).size(), 2u) << "the schema of a member is known as well";
    EXPECT_TRUE(log.log().empty());
}

TEST_P(KnownName, HasItsFieldsAtHandWithoutTouchingAStore) {
    schemaOf(L"a", L"x");
    LoggingStore log(*store());
    const auto locator = ISchemaLocator::make(&log);
    const auto found = locator->resolve(L"a");
    log.clearLog();
    EXPECT_THAT(names(*found->layout()), ElementsAre(L"x"));
    EXPECT_TRUE(found->layout()->get(L"x"));
    EXPECT_STREQ(found->path(), L"a");
    EXPECT_TRUE(log.log().empty());
}

TEST_P(KnownName, HoldsOneCountOnItsTableUntilThePop) {
    const unsigned int a = schemaOf(L"a", L"x");
    resolve(L"a");
    const auto again = resolve(L"a;a");
    EXPECT_EQ(stored::refs(store(), a), 1u);
    EXPECT_FALSE(Root(store(), kRoot).remove(L"a"));
    EXPECT_TRUE(_locator->pop(store()));
    EXPECT_EQ(stored::refs(store(), a), 0u);
    EXPECT_TRUE(Root(store(), kRoot).remove(L"a"));
}

TEST_P(KnownName, HoldsItsCountUntilTheEndOfTheLocatorWithoutAPop) {
    const unsigned int a = schemaOf(L"a", L"x");
    resolve(L"a");
    _locator->reset();
    EXPECT_EQ(stored::refs(store(), a), 1u);
    EXPECT_FALSE(Root(store(), kRoot).remove(L"a"));
    _locator.reset();
    EXPECT_EQ(stored::refs(store(), a), 0u);
    EXPECT_TRUE(Root(store(), kRoot).remove(L"a"));
}

TEST_P(KnownName, HoldsNothingButItsOwnTableAndThoseOfItsMembers) {
    const unsigned int a = schema(L"a");
    const unsigned int t = tree::addTable(store(), a, L"t");
    const unsigned int p = tree::addPrimitive(store(), t, L"p");
    const unsigned int s = addStruct(store(), a, L"s", L"base", 4);
    const unsigned int base = schemaOf(L"base", L"x");
    ASSERT_TRUE(resolve(L"a"));
    for (const unsigned int offset : {kRoot, t, p, s}) EXPECT_EQ(stored::refs(store(), offset), 0u);
    EXPECT_EQ(stored::refs(store(), a), 1u);
    EXPECT_EQ(stored::refs(store(), base), 1u);
}

TEST_P(KnownName, CountsOnceForEachLocator) {
    const unsigned int a = schema(L"a");
    const auto second = ISchemaLocator::make(store());
    EXPECT_NE(layouts(resolve(L"a")), layouts(second->resolve(L"a")));
    EXPECT_EQ(stored::refs(store(), a), 2u);
}

/// What a store throws in the middle of a search.
class FailingSearch : public SchemaTest {};
LVP_ON_EACH_STORE(FailingSearch);

TEST_P(FailingSearch, PassesThroughAndLeavesNothing) {
    const unsigned int a = schemaOf(L"a", L"x");
    FailingStore refusing(*store());
    const auto locator = ISchemaLocator::make(&refusing);
    refusing.failAfter(0, FailingStore::kRead);
    EXPECT_THROW(locator->resolve(L"a"), std::runtime_error);
    refusing.goOn();
    EXPECT_EQ(stored::refs(store(), a), 0u);
    EXPECT_TRUE(locator->resolve(L"a"));
    EXPECT_EQ(stored::refs(store(), a), 1u);
}

TEST_P(FailingSearch, KeepsTheSchemasThatWereFoundBefore) {
    schema(L"a");
    schema(L"b");
    FailingStore refusing(*store());
    const auto locator = ISchemaLocator::make(&refusing);
    const auto found = layouts(locator->resolve(L"a"));
    refusing.failAfter(0, FailingStore::kRead);
    EXPECT_THROW(locator->resolve(L"a;b"), std::runtime_error);
    EXPECT_EQ(layouts(locator->resolve(L"a")), found);
}

TEST_P(FailingSearch, OfAnyReadLeavesNoCount) {
    const unsigned int a = schemaOf(L"a", L"x");
    const unsigned int base = schemaOf(L"base", L"y");
    addStruct(store(), a, L"s", L"base", 4);
    tree::addPrimitive(store(), tree::addTable(store(), a, L"t"), L"z");
    bool failed = true;
    for (int read = 0; failed; ++read) {
        FailingStore failing(*store());
        failing.failAfter(read, FailingStore::kRead, FailingStore::tTimes::kOnce);
        const auto locator = ISchemaLocator::make(&failing);
        try {
            EXPECT_TRUE(locator->resolve(L"a"));
        } catch (const std::runtime_error&) {
            EXPECT_EQ(stored::refs(store(), a), 0u) << "read " << read;
        }
        failed = failing.failed() != 0;
        failing.goOn();
        EXPECT_EQ(names(*locator->resolve(L"a")->layout()), (tNames{L"x", L"s.y", L"t.z"})) << "read " << read;
        EXPECT_TRUE(locator->pop(&failing));
        EXPECT_EQ(stored::refs(store(), base), 0u) << "read " << read;
    }
    EXPECT_EQ(stored::refs(store(), a), 0u);
}

}  // namespace
