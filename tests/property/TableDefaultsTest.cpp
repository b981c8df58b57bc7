#include <algorithm>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// The default kinds and units of a table's groups.
class TableDefaults : public ClientTest {
protected:
    static constexpr unsigned int kDefaults = 22;
    static constexpr units::tUnitGroup kLength = units::group(units::kMeter);
    static constexpr units::tUnitGroup kTime = units::group(units::kSecond);
    static constexpr auto kNoKind = static_cast<metadata::tValue>(0);

    void SetUp() override {
        _outer = top()->create(L"outer", kNoSchema);
        _middle = _outer->create(L"middle", kNoSchema);
        _inner = _middle->create(L"inner", kNoSchema);
    }

    ITable& outer() { return *_outer; }
    ITable& middle() { return *_middle; }
    ITable& inner() { return *_inner; }

    /// The outer table's list of defaults: pairs of a unit and a kind, from byte 4 on.
    unsigned int list() {
        return stored::word(store(), stored::children(store(), stored::children(store(), 0).at(0)).at(0), kDefaults);
    }

private:
    SharedPtr<ITable> _outer, _middle, _inner;
};
LVP_ON_EACH_STORE(TableDefaults);

TEST_P(TableDefaults, AreNoneAtFirst) {
    EXPECT_EQ(0u, outer().groups());
    EXPECT_EQ(kNoKind, outer().valuetype(kLength));
    EXPECT_EQ(units::kNoUnit, outer().units(kLength));
    EXPECT_EQ(units::kNoGroup, outer().group(0));
    EXPECT_FALSE(outer().create(L"length", kLength));
}

TEST_P(TableDefaults, AreKeptByGroup) {
    EXPECT_TRUE(outer().defaults(units::kKiloMeter, metadata::kDouble));
    EXPECT_TRUE(outer().defaults(units::kSecond, metadata::kInt32));
    EXPECT_EQ(2u, outer().groups());
    EXPECT_EQ(metadata::kDouble, outer().valuetype(kLength));
    EXPECT_EQ(units::kKiloMeter, outer().units(kLength));
    EXPECT_EQ(metadata::kInt32, outer().valuetype(kTime));
    EXPECT_EQ(units::kSecond, outer().units(kTime));
}

TEST_P(TableDefaults, StandInTheOrderOfTheirGroups) {
    const units::tUnitGroup low = std::min(kLength, kTime);
    const units::tUnitGroup high = std::max(kLength, kTime);
    outer().defaults(high == kTime ? units::kSecond : units::kMeter, metadata::kInt32);
    outer().defaults(low == kTime ? units::kSecond : units::kMeter, metadata::kInt32);
    EXPECT_EQ(low, outer().group(0));
    EXPECT_EQ(high, outer().group(1));
    EXPECT_EQ(units::kNoGroup, outer().group(2));
    EXPECT_EQ(units::kNoGroup, outer().group(0xFFFFFFFFu));
}

TEST_P(TableDefaults, OfAGroupAreReplaced) {
    outer().defaults(units::kMeter, metadata::kDouble);
    outer().defaults(units::kSecond, metadata::kInt32);
    EXPECT_TRUE(outer().defaults(units::kKiloMeter, metadata::kScalar));
    EXPECT_EQ(2u, outer().groups());
    EXPECT_EQ(units::kKiloMeter, outer().units(kLength));
    EXPECT_EQ(metadata::kScalar, outer().valuetype(kLength));
    EXPECT_EQ(units::kSecond, outer().units(kTime));
}

TEST_P(TableDefaults, AreRefusedWithoutAUnitOrAKind) {
    const auto extent = store()->extent();
    EXPECT_FALSE(outer().defaults(units::kNoUnit, metadata::kDouble));
    EXPECT_FALSE(outer().defaults(units::kMeter, kNoKind));
    EXPECT_EQ(0u, outer().groups());
    EXPECT_EQ(stored::BADOFF, list());
    EXPECT_EQ(extent, store()->extent());
}

TEST_P(TableDefaults, OfNoGroupAreNone) {
    outer().defaults(units::kMeter, metadata::kDouble);
    EXPECT_EQ(kNoKind, outer().valuetype(units::kNoGroup));
    EXPECT_EQ(units::kNoUnit, outer().units(units::kNoGroup));
    EXPECT_FALSE(outer().create(L"length", units::kNoGroup));
}

TEST_P(TableDefaults, AreThereWhenTheTableIsOpenedAnew) {
    outer().defaults(units::kSecond, metadata::kInt32);
    outer().defaults(units::kMeter, metadata::kDouble);
    const auto again = property(L"outer");
    EXPECT_EQ(2u, asTable(again).groups());
    EXPECT_EQ(metadata::kDouble, asTable(again).valuetype(kLength));
    EXPECT_EQ(units::kSecond, asTable(again).units(kTime));
    EXPECT_TRUE(asTable(again).defaults(units::kKiloMeter, metadata::kDouble));
    EXPECT_EQ(2u, asTable(again).groups());
}

TEST_P(TableDefaults, AreNotForeseenByAnObjectThatWasOpenedBefore) {
    const auto earlier = property(L"outer");
    outer().defaults(units::kMeter, metadata::kDouble);
    EXPECT_EQ(0u, asTable(earlier).groups());
    EXPECT_EQ(kNoKind, asTable(earlier).valuetype(kLength));
}

TEST_P(TableDefaults, GoIntoTheListThatAnotherObjectMade) {
    const auto earlier = property(L"outer");
    outer().defaults(units::kMeter, metadata::kDouble);
    EXPECT_TRUE(asTable(earlier).defaults(units::kSecond, metadata::kInt32));
    const auto again = property(L"outer");
    EXPECT_EQ(2u, asTable(again).groups());
    EXPECT_EQ(metadata::kDouble, asTable(again).valuetype(kLength));
    EXPECT_EQ(metadata::kInt32, asTable(again).valuetype(kTime));
}

TEST_P(TableDefaults, LeaveThoseThatAnotherObjectAdded) {
    outer().defaults(units::kMegaPascal, metadata::kInt8);
    const auto earlier = property(L"outer");
    outer().defaults(units::kMeter, metadata::kDouble);
    EXPECT_TRUE(asTable(earlier).defaults(units::kSecond, metadata::kInt32));
    const auto again = property(L"outer");
    EXPECT_EQ(3u, asTable(again).groups());
    EXPECT_EQ(metadata::kDouble, asTable(again).valuetype(kLength));
    EXPECT_EQ(metadata::kInt32, asTable(again).valuetype(kTime));
}

TEST_P(TableDefaults, MakePrimitives) {
    outer().defaults(units::kKiloMeter, metadata::kDouble);
    const auto made = outer().create(L"length", kLength);
    ASSERT_TRUE(made);
    EXPECT_EQ(metadata::kDouble, made->valuetype());
    EXPECT_EQ(units::kKiloMeter, made->units());
    EXPECT_EQ(L"top.outer.length", text(made->container()->path()));
}

TEST_P(TableDefaults, OfThePresentMomentMakePrimitives) {
    outer().defaults(units::kMeter, metadata::kDouble);
    outer().create(L"first", kLength);
    outer().defaults(units::kKiloMeter, metadata::kScalar);
    const auto second = outer().create(L"second", kLength);
    EXPECT_EQ(units::kKiloMeter, second->units());
    EXPECT_EQ(units::kMeter, asPrimitive(property(L"outer.first")).units());
}

TEST_P(TableDefaults, AreLookedUpInTheTableAroundIt) {
    outer().defaults(units::kMeter, metadata::kDouble);
    EXPECT_EQ(metadata::kDouble, middle().valuetype(kLength));
    EXPECT_EQ(units::kMeter, middle().units(kLength));
    EXPECT_EQ(0u, middle().groups());
    const auto made = middle().create(L"length", kLength);
    ASSERT_TRUE(made);
    EXPECT_EQ(metadata::kDouble, made->valuetype());
    EXPECT_EQ(units::kMeter, made->units());
}

TEST_P(TableDefaults, AreLookedUpNoFurtherThanThat) {
    outer().defaults(units::kMeter, metadata::kDouble);
    EXPECT_EQ(kNoKind, inner().valuetype(kLength));
    EXPECT_EQ(units::kNoUnit, inner().units(kLength));
    const auto extent = store()->extent();
    EXPECT_FALSE(inner().create(L"length", kLength));
    EXPECT_EQ(extent, store()->extent());
}

TEST_P(TableDefaults, OfItsOwnComeBeforeThoseAround) {
    outer().defaults(units::kMeter, metadata::kDouble);
    middle().defaults(units::kKiloMeter, metadata::kScalar);
    EXPECT_EQ(metadata::kScalar, middle().valuetype(kLength));
    EXPECT_EQ(units::kKiloMeter, middle().units(kLength));
    EXPECT_EQ(units::kMeter, outer().units(kLength));
}

TEST_P(TableDefaults, AreNotLookedUpInAContainer) {
    // What stands around the outer table is a group, and is not even opened.
    middle().defaults(units::kMeter, metadata::kDouble);
    LoggingStore logged(*store());
    const auto table = IContainerFrontEnd::find(&logged, L"top")->property(L"outer");
    logged.clearLog();
    EXPECT_EQ(kNoKind, asTable(table).valuetype(kLength));
    EXPECT_EQ(units::kNoUnit, asTable(table).units(kLength));
    EXPECT_EQ(0u, logged.count(LoggingStore::tCall::kUpdate));
}

TEST_P(TableDefaults, AreLookedUpForKindAndUnitByThemselves) {
    // A table whose list names a unit and no kind takes the kind from the table around it.
    outer().defaults(units::kMeter, metadata::kDouble);
    middle().defaults(units::kKiloMeter, metadata::kScalar);
    const unsigned int outerTable = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    const unsigned int middleTable = stored::children(store(), outerTable).at(0);
    const unsigned int pairs = stored::word(store(), middleTable, kDefaults);
    stored::putWord(store(), pairs, 8, 0);
    EXPECT_EQ(metadata::kDouble, middle().valuetype(kLength));
    EXPECT_EQ(units::kKiloMeter, middle().units(kLength));
    const auto made = middle().create(L"length", kLength);
    ASSERT_TRUE(made);
    EXPECT_EQ(metadata::kDouble, made->valuetype());
    EXPECT_EQ(units::kKiloMeter, made->units());
}

TEST_P(TableDefaults, WithoutAUnitMakePrimitivesWithoutOne) {
    // The unit of the pair is gone from the list since the table was opened, and with it the last default of a unit.
    outer().defaults(units::kMeter, metadata::kDouble);
    stored::putWord(store(), list(), 4, 0);
    EXPECT_EQ(metadata::kDouble, outer().valuetype(kLength));
    EXPECT_EQ(units::kNoUnit, outer().units(kLength));
    const auto made = outer().create(L"length", kLength);
    ASSERT_TRUE(made);
    EXPECT_EQ(metadata::kDouble, made->valuetype());
    EXPECT_EQ(units::kNoUnit, made->units());
}

TEST_P(TableDefaults, MakeNothingUnderATakenName) {
    outer().defaults(units::kMeter, metadata::kDouble);
    EXPECT_FALSE(outer().create(L"middle", kLength));
    EXPECT_TRUE(outer().create(L"length", kLength));
    EXPECT_FALSE(outer().create(L"length", kLength));
}

TEST_P(TableDefaults, ChangeNoItem) {
    outer().create(L"length", metadata::kInt32, units::kMeter);
    outer().defaults(units::kKiloMeter, metadata::kDouble);
    const auto length = property(L"outer.length");
    EXPECT_EQ(metadata::kInt32, asPrimitive(length).valuetype());
    EXPECT_EQ(units::kMeter, asPrimitive(length).units());
}

}  // namespace
