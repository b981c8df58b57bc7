#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// The two cursors over the content of a container.
class Cursor : public ClientTest {
protected:
    unsigned int offsetOfTop() { return stored::children(store(), 0).at(0); }

    /// Adds something that is neither a property nor a container to the list of "top".
    void addForeign() {
        top();
        stored::enlist(store(), offsetOfTop(), stored::makeList(store()));
    }

    void addPrimitive(const wchar_t* name) { top()->create(name, metadata::kInt32); }
    void addTable(const wchar_t* name) { top()->create(name, kNoSchema); }
    void addContainer(const wchar_t* name) { top()->create(IContainer::kGroup, name, kNoSchema); }

    /// Checks a cursor that has nothing to stand on.
    template <class Filter>
    static void expectNothing(Filter& filter) {
        const auto none = filter.current();
        EXPECT_FALSE(none);
        EXPECT_EQ(nullptr, none.counter());
        EXPECT_FALSE(filter.next());
        EXPECT_FALSE(filter.prev());
        EXPECT_FALSE(filter.current());
    }
};
LVP_ON_EACH_STORE(Cursor);

TEST_P(Cursor, HasNothingInAContainerThatNeverHeldAnything) {
    expectNothing(*top()->properties());
    expectNothing(*top()->containers());
}

TEST_P(Cursor, HasNothingInAContainerThatWasEmptied) {
    addPrimitive(L"number");
    top()->destroy(L"number");
    expectNothing(*top()->properties());
    expectNothing(*top()->containers());
}

TEST_P(Cursor, HasNothingWhereNothingIsOfItsKind) {
    addContainer(L"group");
    expectNothing(*top()->properties());
    EXPECT_EQ(L"group", current(*top()->containers()));
}

TEST_P(Cursor, HasNothingAmongForeignRecords) {
    addForeign();
    addForeign();
    expectNothing(*top()->properties());
    expectNothing(*top()->containers());
}

TEST_P(Cursor, StandsOnTheFirstItemAtOnce) {
    addContainer(L"group");
    addPrimitive(L"number");
    EXPECT_EQ(L"number", current(*top()->properties()));
    EXPECT_EQ(L"group", current(*top()->containers()));
}

TEST_P(Cursor, SkipsTheFirstItemWhenMovedBeforeItIsRead) {
    addPrimitive(L"first");
    addPrimitive(L"second");
    const auto filter = top()->properties();
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"second", current(*filter));
}

TEST_P(Cursor, VisitsItsOwnKindsInStoredOrder) {
    addPrimitive(L"z primitive");
    addContainer(L"y container");
    addForeign();
    addTable(L"x table");
    addContainer(L"w container");
    addPrimitive(L"a primitive");
    const auto properties = top()->properties();
    EXPECT_EQ((tNames{L"z primitive", L"x table", L"a primitive"}), names(*properties));
    const auto containers = top()->containers();
    EXPECT_EQ((tNames{L"y container", L"w container"}), names(*containers));
}

TEST_P(Cursor, GivesPropertiesOfTheRightType) {
    addPrimitive(L"number");
    addTable(L"table");
    const auto filter = top()->properties();
    const auto number = filter->current();
    EXPECT_NE(nullptr, IPrimitive::to(number.get()));
    EXPECT_EQ(nullptr, ITable::to(number.get()));
    filter->next();
    const auto table = filter->current();
    EXPECT_NE(nullptr, ITable::to(table.get()));
    EXPECT_EQ(nullptr, IPrimitive::to(table.get()));
}

TEST_P(Cursor, GivesContainersInTheirRoles) {
    const auto owner = top();
    owner->create(IContainer::kNode, L"node", kNoSchema);
    owner->create(IContainer::kGroup, L"group", kNoSchema);
    owner->create(IContainer::kLink, L"link", kNoSchema);
    const auto filter = owner->containers();
    EXPECT_NE(nullptr, INode::to(filter->current().get()));
    filter->next();
    EXPECT_NE(nullptr, IGroup::to(filter->current().get()));
    filter->next();
    EXPECT_NE(nullptr, ILink::to(filter->current().get()));
}

TEST_P(Cursor, StopsAtAContainerOfAnUnknownTypeAndGivesNull) {
    const auto owner = top();
    owner->create(IContainer::kNode, L"one", kNoSchema);
    owner->create(static_cast<IContainer::tType>(3), L"odd", kNoSchema);
    owner->create(IContainer::kNode, L"two", kNoSchema);
    const auto filter = owner->containers();
    EXPECT_TRUE(filter->next());
    EXPECT_FALSE(filter->current());
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"two", current(*filter));
}

TEST_P(Cursor, RunsOffTheEndAndStaysThere) {
    addPrimitive(L"one");
    addPrimitive(L"two");
    const auto filter = top()->properties();
    EXPECT_TRUE(filter->next());
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->current());
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->current());
}

TEST_P(Cursor, StepsBackOntoTheLastItemFromPastTheEnd) {
    addPrimitive(L"one");
    addPrimitive(L"two");
    addContainer(L"group");
    addForeign();
    const auto filter = top()->properties();
    while (filter->next()) {
    }
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"two", current(*filter));
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
}

TEST_P(Cursor, StaysOnTheFirstItemWhenThereIsNoneBefore) {
    addForeign();
    addContainer(L"group");
    addPrimitive(L"one");
    addPrimitive(L"two");
    const auto filter = top()->properties();
    EXPECT_FALSE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
    EXPECT_TRUE(filter->next());
    EXPECT_TRUE(filter->prev());
    EXPECT_FALSE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"two", current(*filter));
}

TEST_P(Cursor, PassesOverForeignItemsInBothDirections) {
    addContainer(L"one");
    addForeign();
    addPrimitive(L"number");
    addContainer(L"two");
    const auto filter = top()->containers();
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"two", current(*filter));
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
}

TEST_P(Cursor, GoesBackFromTheOnlyItem) {
    addContainer(L"only");
    const auto filter = top()->containers();
    EXPECT_FALSE(filter->prev());
    EXPECT_FALSE(filter->next());
    EXPECT_FALSE(filter->current());
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"only", current(*filter));
}

TEST_P(Cursor, MayOutliveWhatItCameFrom) {
    addPrimitive(L"one");
    addPrimitive(L"two");
    auto owner = top();
    const auto filter = owner->properties();
    owner.reset();
    EXPECT_EQ((tNames{L"one", L"two"}), names(*filter));
}

TEST_P(Cursor, GivesANewObjectAtEachCall) {
    addContainer(L"group");
    const auto filter = top()->containers();
    const auto one = filter->current();
    const auto two = filter->current();
    EXPECT_NE(one.get(), two.get());
    EXPECT_EQ(2u, stored::refs(store(), stored::children(store(), offsetOfTop()).at(0)));
}

TEST_P(Cursor, DoesNotVisitWhatIsAddedLater) {
    addPrimitive(L"one");
    const auto earlier = top();
    const auto filter = earlier->properties();
    addPrimitive(L"two");
    EXPECT_EQ(tNames{L"one"}, names(*filter));
    // A new one does, whatever the object that it is taken from knows.
    EXPECT_FALSE(earlier->has(L"two"));
    EXPECT_EQ((tNames{L"one", L"two"}), names(*earlier->properties()));
}

TEST_P(Cursor, HasNothingIfTheContainerWasEmptyWhenItWasMade) {
    const auto filter = top()->properties();
    addPrimitive(L"one");
    expectNothing(*filter);
}

TEST_P(Cursor, PassesOverWhatIsDestroyedAheadOfIt) {
    for (const wchar_t* name : {L"one", L"two", L"three"}) addPrimitive(name);
    const auto filter = top()->properties();
    top()->destroy(L"two");
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"three", current(*filter));
    EXPECT_TRUE(filter->prev());
    EXPECT_EQ(L"one", current(*filter));
}

TEST_P(Cursor, GivesNullWhereTheItemIsDestroyedUnderIt) {
    addPrimitive(L"one");
    addPrimitive(L"two");
    const auto filter = top()->properties();
    top()->destroy(L"one");
    EXPECT_FALSE(filter->current());
    EXPECT_TRUE(filter->next());
    EXPECT_EQ(L"two", current(*filter));
    EXPECT_FALSE(filter->prev());
    EXPECT_EQ(L"two", current(*filter));
}

TEST_P(Cursor, VisitsWhatCameFromASchema) {
    addPrimitive(L"hidden");
    property(L"hidden")->on(0x06);
    EXPECT_EQ(tNames{L"hidden"}, names(*top()->properties()));
}

TEST_P(Cursor, ShowsNewNames) {
    addPrimitive(L"old");
    const auto filter = top()->properties();
    property(L"old")->rename(L"new");
    EXPECT_EQ(L"new", current(*filter));
}

TEST_P(Cursor, OpensNothingWhileItMoves) {
    addPrimitive(L"one");
    addTable(L"two");
    addContainer(L"three");
    LoggingStore logged(*store());
    const auto owner = IContainerFrontEnd::find(&logged, L"top");
    logged.clearLog();
    for (const auto& filter : {owner->properties(), owner->properties()}) {
        while (filter->next()) {
        }
        while (filter->prev()) {
        }
    }
    EXPECT_EQ(0u, logged.count(LoggingStore::tCall::kUpdate));
}

}  // namespace
