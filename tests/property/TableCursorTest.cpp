#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// The cursor over the properties of a table.
class TableCursor : public ClientTest {
protected:
    void SetUp() override { top()->create(L"table", kNoSchema); }

    SharedPtr<IPropertyFilter> cursor() { return asTable(property(L"table")).properties(); }

    unsigned int offsetOfTable() { return stored::children(store(), stored::children(store(), 0).at(0)).at(0); }

    void add(const wchar_t* name) { asTable(property(L"table")).create(name, metadata::kInt32, units::kNoUnit); }

    /// Adds a container, which a table counts among its items though it is no property.
    void addContainer(const wchar_t* name) {
        top()->create(IContainer::kGroup, name, kNoSchema);
        const unsigned int owner = stored::children(store(), 0).at(0);
        stored::move(store(), stored::children(store(), owner).back(), owner, offsetOfTable());
    }

    /// Adds a record to the list that is no item at all.
    void addForeign() { stored::enlist(store(), offsetOfTable(), stored::makeList(store())); }

    bool destroy(const wchar_t* name) { return asTable(property(L"table")).destroy(name); }
};
LVP_ON_EACH_STORE(TableCursor);

TEST_P(TableCursor, HasNothingInAnEmptyTable) {
    const auto filter = cursor();
    const auto none = filter->current();
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->prev());
    EXPECT_FALSE(filter->current());
}

TEST_P(TableCursor, HasNothingWhereThereIsNoProperty) {
    addContainer(L"group");
    const auto filter = cursor();
    EXPECT_FALSE(filter->current());
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->prev());
    EXPECT_FALSE(filter->current());
}

TEST_P(TableCursor, HasNothingAmongForeignRecords) {
    addForeign();
    const auto filter = cursor();
    EXPECT_FALSE(filter->current());
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->prev());
}

TEST_P(TableCursor, VisitsItemsInTheOrderOfTheirAdding) {
    add(L"z");
    asTable(property(L"table")).create(L"m", kNoSchema);
    add(L"a");
    EXPECT_EQ((tNames{L"z", L"m", L"a"}), names(*cursor()));
}

TEST_P(TableCursor, StandsOnTheFirstPropertyAtOnce) {
    addContainer(L"group");
    add(L"one");
    EXPECT_EQ(L"one", current(*cursor()));
}

TEST_P(TableCursor, GivesPropertiesOfTheRightType) {
    add(L"number");
    asTable(property(L"table")).create(L"inner", kNoSchema);
    const auto filter = cursor();
    EXPECT_EQ(0u, filter->current()->type());
    EXPECT_NE(nullptr, IPrimitive::to(filter->current().get()));
    filter->next();
    EXPECT_EQ(1u, filter->current()->type());
    EXPECT_NE(nullptr, ITable::to(filter->current().get()));
}

TEST_P(TableCursor, PassesOverWhatIsNoPropertyInBothDirections) {
    add(L"one");
    addContainer(L"group");
    add(L"two");
    const auto filter = cursor();
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"two", current(*filter));
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
}

TEST_P(TableCursor, RunsOffTheEndAndStepsBackOntoTheLastProperty) {
    add(L"one");
    add(L"two");
    addContainer(L"group");
    const auto filter = cursor();
    EXPECT_TRUE(filter->next());
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->current());
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->current());
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"two", current(*filter));
}

TEST_P(TableCursor, StaysOnTheFirstPropertyWhenThereIsNoneBefore) {
    addContainer(L"group");
    add(L"one");
    add(L"two");
    const auto filter = cursor();
    EXPECT_FALSE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
    EXPECT_TRUE(filter->next());
    EXPECT_TRUE(filter->prev());
    EXPECT_FALSE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"two", current(*filter));
}

TEST_P(TableCursor, GoesNoFurtherThanTheNumberOfItems) {
    // A record that is no item takes a place in the list without being counted, so the last item is out of reach.
    add(L"one");
    addForeign();
    add(L"two");
    const auto filter = cursor();
    EXPECT_EQ(L"one", current(*filter));
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->current());
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
}

TEST_P(TableCursor, DoesNotReachWhatIsAddedLater) {
    add(L"one");
    const auto filter = cursor();
    add(L"two");
    EXPECT_FALSE(filter->next());
    EXPECT_EQ((tNames{L"one", L"two"}), names(*cursor()));
}

TEST_P(TableCursor, HasNothingIfTheTableWasEmptyWhenItWasMade) {
    const auto filter = cursor();
    add(L"one");
    EXPECT_FALSE(filter->current());
    EXPECT_FALSE(filter->next());
}

TEST_P(TableCursor, ReadsTheListAnewAfterARemoval) {
    for (const wchar_t* name : {L"one", L"two", L"three"}) add(name);
    const auto filter = cursor();
    EXPECT_TRUE(destroy(L"one"));
    // The rest has moved up: the cursor stands where "one" was.
    EXPECT_EQ(L"two", current(*filter));
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"three", current(*filter));
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->current());
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"three", current(*filter));
}

TEST_P(TableCursor, StandsOnNothingWhereTheLastItemWasRemoved) {
    add(L"one");
    add(L"two");
    const auto filter = cursor();
    filter->next();
    EXPECT_TRUE(destroy(L"two"));
    EXPECT_FALSE(filter->current());
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
}

TEST_P(TableCursor, ReachesAddedItemsBelowTheOldCount) {
    add(L"one");
    add(L"two");
    const auto filter = cursor();
    EXPECT_TRUE(destroy(L"two"));
    add(L"three");
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"three", current(*filter));
}

TEST_P(TableCursor, HoldsTheTableOpen) {
    add(L"one");
    auto filter = cursor();
    EXPECT_EQ(1u, stored::refs(store(), offsetOfTable()));
    filter.reset();
    EXPECT_EQ(0u, stored::refs(store(), offsetOfTable()));
}

TEST_P(TableCursor, MayOutliveTheTableThatItCameFrom) {
    add(L"one");
    add(L"two");
    auto table = property(L"table");
    const auto filter = asTable(table).properties();
    table.reset();
    EXPECT_EQ((tNames{L"one", L"two"}), names(*filter));
}

TEST_P(TableCursor, GivesANewObjectAtEachCall) {
    add(L"one");
    const auto filter = cursor();
    const auto one = filter->current();
    const auto two = filter->current();
    EXPECT_NE(one.get(), two.get());
}

TEST_P(TableCursor, SeesItemsThatTheObjectItCameFromDoesNotKnow) {
    const auto earlier = property(L"table");
    add(L"one");
    EXPECT_EQ(0u, asTable(earlier).items());
    EXPECT_EQ(tNames{L"one"}, names(*asTable(earlier).properties()));
}

}  // namespace
