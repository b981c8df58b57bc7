#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// What the front end finds at a path from the top of a store.
class Find : public ClientTest {
protected:
    void SetUp() override {
        const auto two = top()->create(IContainer::kGroup, L"two", kNoSchema);
        two->create(IContainer::kLink, L"three", kNoSchema);
        two->create(L"number", metadata::kInt32);
        top()->create(L"table", kNoSchema)->create(L"inner", kNoSchema);
    }
};
LVP_ON_EACH_STORE(Find);

TEST_P(Find, GivesTheTopLevel) {
    EXPECT_EQ(L"top", text(find(L"top")->path()));
}

TEST_P(Find, FollowsAPathToAnyDepth) {
    const auto three = find(L"top.two.three");
    ASSERT_TRUE(three);
    EXPECT_EQ(L"three", text(three->tag()));
    EXPECT_EQ(L"top.two.three", text(three->path()));
    EXPECT_EQ(store(), three->store());
}

TEST_P(Find, GivesAnObjectWithoutARole) {
    const auto three = find(L"top.two.three");
    EXPECT_EQ(IContainer::kLink, three->type());
    EXPECT_EQ(nullptr, ILink::to(three.get()));
}

TEST_P(Find, IsNullWhereThePathBreaksOff) {
    for (const wchar_t* path :
         {L"nothing", L"top.nothing", L"nothing.two", L"top.two.three.four", L"top.two.", L".top", L"top..two", L"."}) {
        const auto none = find(path);
        EXPECT_FALSE(none) << std::wstring(path).size();
        EXPECT_EQ(nullptr, none.counter());
    }
}

TEST_P(Find, IsNullForAProperty) {
    EXPECT_FALSE(find(L"top.two.number"));
    EXPECT_FALSE(find(L"top.two.number.beyond"));
    EXPECT_FALSE(find(L"top.table"));
    EXPECT_FALSE(find(L"top.table.inner"));
}

TEST_P(Find, IsNullWithoutAName) {
    EXPECT_FALSE(find(nullptr));
    EXPECT_FALSE(find(L""));
}

TEST_P(Find, DoesNotTakeTheNameOfTheRoot) {
    EXPECT_FALSE(find(L"root"));
    EXPECT_FALSE(find(L"root.top"));
}

TEST_P(Find, MakesNothing) {
    const auto extent = store()->extent();
    find(L"top.two.three");
    find(L"top.nothing");
    EXPECT_EQ(extent, store()->extent());
}

TEST_P(Find, IsNullInAnEmptyStoreAndLeavesItEmpty) {
    EXPECT_FALSE(IContainerFrontEnd::find(other(), L"top"));
    EXPECT_EQ(0u, other()->extent());
}

TEST_P(Find, SeesWhatWasMadeThroughObjectsThatAreStillOpen) {
    const auto two = find(L"top.two");
    const auto made = two->create(IContainer::kNode, L"late", kNoSchema);
    EXPECT_TRUE(find(L"top.two.late"));
}

TEST_P(Find, ReachesThroughATableToAContainerBelowIt) {
    // A table holds properties only, but a path goes through it to whatever a store holds there.
    const unsigned int top = stored::children(store(), 0).at(0);
    const unsigned int two = stored::children(store(), top).at(0);
    const unsigned int table = stored::children(store(), top).at(1);
    stored::move(store(), stored::children(store(), two).at(0), two, table);
    EXPECT_EQ(L"top.table.three", text(find(L"top.table.three")->path()));
}

}  // namespace
