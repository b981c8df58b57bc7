#include "tests/container/CopyFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// `clone` of a container into another store, or its own, under a new name.
class CloneToStore : public CopyingTest {
protected:
    void SetUp() override {
        const auto group = addGroup(*from(), L"group");
        addNumber(*group, L"inner", 3);
        addGroup(*group, L"deep");
    }

    SharedPtr<IContainer> group() { return from()->container(L"group"); }

    SharedPtr<IContainer> findOther(const wchar_t* path) { return IContainerFrontEnd::find(other(), path); }

    /// Expects that a call gives false and writes nothing in either store.
    void expectRefused(IContainer& source, IDataStore* target, const wchar_t* destination) {
        const auto before = contents(store());
        const auto otherBefore = contents(other());
        EXPECT_FALSE(source.clone(target, destination));
        EXPECT_EQ(before, contents(store()));
        EXPECT_EQ(otherBefore, contents(other()));
    }
};
LVP_ON_EACH_STORE(CloneToStore);

TEST_P(CloneToStore, AddsTheContainerUnderItsNewName) {
    const auto source = group();
    const auto before = contents(store());
    EXPECT_TRUE(source->clone(other(), L"to.copy"));
    EXPECT_EQ(before, contents(store()));
    const auto copy = findOther(L"to.copy");
    ASSERT_TRUE(copy);
    EXPECT_EQ(L"copy", text(copy->tag()));
    EXPECT_EQ(L"to.copy", text(copy->path()));
    EXPECT_EQ(IContainer::kGroup, copy->type());
    EXPECT_EQ(3, number(*copy, L"inner"));
    EXPECT_TRUE(copy->has(L"deep"));
}

TEST_P(CloneToStore, WritesTheNewNameWithItsTerminatorAndNoMore) {
    EXPECT_TRUE(group()->clone(other(), L"to.six"));
    const unsigned int copy = offsetOf(other(), L"to.six");
    EXPECT_EQ(16u, stored::word(other(), copy, 19));
    EXPECT_EQ(std::string::npos, hex(other(), copy).find(hexText(L"group")));
}

TEST_P(CloneToStore, TakesAPathToAnyDepth) {
    addGroup(*addGroup(*otherTo(), L"a"), L"b");
    EXPECT_TRUE(group()->clone(other(), L"to.a.b.copy"));
    EXPECT_EQ(3, number(*findOther(L"to.a.b.copy"), L"inner"));
}

TEST_P(CloneToStore, WithoutADotAddsToTheTopLevelItemOfThatName) {
    EXPECT_TRUE(group()->clone(other(), L"to"));
    EXPECT_EQ(L"to.to", text(findOther(L"to.to")->path()));
    EXPECT_EQ(3, number(*otherTo(), L"to.inner"));
}

TEST_P(CloneToStore, WithoutADotIsRefusedWhereThereIsNoSuchTopLevelItem) {
    expectRefused(*group(), other(), L"copy");
    EXPECT_FALSE(findOther(L"copy"));
}

TEST_P(CloneToStore, MayGoToItsOwnStore) {
    EXPECT_TRUE(group()->clone(store(), L"to.copy"));
    EXPECT_EQ(3, number(*to(), L"copy.inner"));
    EXPECT_EQ(3, number(*from(), L"group.inner"));
}

TEST_P(CloneToStore, TakesATopLevelContainer) {
    EXPECT_TRUE(from()->clone(other(), L"to.copy"));
    EXPECT_EQ(3, number(*otherTo(), L"copy.group.inner"));
}

TEST_P(CloneToStore, CopiesWhatIsInTheStoreNow) {
    const auto earlier = group();
    addNumber(*group(), L"late", 6);
    EXPECT_FALSE(earlier->has(L"late"));
    EXPECT_TRUE(earlier->clone(other(), L"to.copy"));
    EXPECT_EQ(6, number(*otherTo(), L"copy.late"));
}

TEST_P(CloneToStore, CopiesChildrenThatCameAfterAnEmptySourceWasOpened) {
    const auto earlier = from()->container(L"group.deep");
    addNumber(*from()->container(L"group.deep"), L"late", 6);
    EXPECT_TRUE(earlier->clone(other(), L"to.copy"));
    EXPECT_EQ(6, number(*otherTo(), L"copy.late"));
}

TEST_P(CloneToStore, IsNotSeenByObjectsThatAreOpenOverTheDestination) {
    const auto earlier = otherTo();
    EXPECT_TRUE(group()->clone(other(), L"to.copy"));
    EXPECT_FALSE(earlier->has(L"copy"));
    EXPECT_TRUE(otherTo()->has(L"copy"));
}

TEST_P(CloneToStore, SeesItsDestinationAsItIsNow) {
    const auto source = group();
    addGroup(*otherTo(), L"late");
    EXPECT_TRUE(source->clone(other(), L"to.late.copy"));
    EXPECT_TRUE(otherTo()->has(L"late.copy.inner"));
}

TEST_P(CloneToStore, OntoATakenNameGivesTrueAndKeepsWhatIsThere) {
    addNumber(*otherTo(), L"copy", 9);
    addNumber(*addGroup(*otherTo(), L"copy2"), L"own", 8);
    const unsigned int owner = offsetOf(other(), L"to");
    const std::string before = picture(other(), owner);
    const auto records = contents(other()).size();
    EXPECT_TRUE(group()->clone(other(), L"to.copy"));
    EXPECT_TRUE(group()->clone(other(), L"to.copy2"));
    EXPECT_EQ(before, picture(other(), owner));
    EXPECT_EQ(9, number(*otherTo(), L"copy"));
    EXPECT_EQ((tNames{L"own"}), children(*findOther(L"to.copy2")));
    // The copies are there all the same, attached to nothing.
    EXPECT_GT(contents(other()).size(), records);
}

TEST_P(CloneToStore, OntoItsOwnPlaceGivesTrueAndChangesNothingThere) {
    const unsigned int owner = offsetOf(store(), L"from");
    const std::string before = picture(store(), owner);
    EXPECT_TRUE(group()->clone(store(), L"from.group"));
    EXPECT_EQ(before, picture(store(), owner));
}

TEST_P(CloneToStore, AddsToATable) {
    otherTo()->create(L"table", kNoSchema)->create(L"item", metadata::kInt32, units::kNoUnit);
    EXPECT_TRUE(group()->clone(other(), L"to.table.copy"));
    const unsigned int table = offsetOf(other(), L"to.table");
    ASSERT_EQ(2u, stored::children(other(), table).size());
    const unsigned int copy = stored::children(other(), table).at(1);
    EXPECT_EQ(4u, stored::byte(other(), copy, 0));
    EXPECT_EQ(table, stored::word(other(), copy, stored::kParent));
    EXPECT_EQ(L"to.table.copy.deep", text(findOther(L"to.table.copy.deep")->path()));
    EXPECT_EQ(0u, stored::refs(other(), table));
}

TEST_P(CloneToStore, AddsToATableAtTheTop) {
    // The front end makes no such store; documents do.
    otherTo()->create(L"table", kNoSchema);
    const unsigned int table = offsetOf(other(), L"to.table");
    stored::move(other(), table, offsetOf(other(), L"to"), 0);
    EXPECT_TRUE(group()->clone(other(), L"table"));
    EXPECT_TRUE(findOther(L"table.table.deep"));
}

TEST_P(CloneToStore, OntoATakenNameInATableGivesTrueAndAddsNothing) {
    otherTo()->create(L"table", kNoSchema)->create(L"item", metadata::kInt32, units::kNoUnit);
    const unsigned int table = offsetOf(other(), L"to.table");
    const std::string before = picture(other(), table);
    EXPECT_TRUE(group()->clone(other(), L"to.table.item"));
    EXPECT_EQ(before, picture(other(), table));
}

TEST_P(CloneToStore, IsRefusedByADestinationOfAnyOtherKind) {
    addNumber(*otherTo(), L"number");
    const auto source = group();
    expectRefused(*source, other(), L"to.number.copy");
    expectRefused(*source, other(), L"to.number.beyond.copy");
}

TEST_P(CloneToStore, IsRefusedWhereThereIsNoDestination) {
    const auto source = group();
    for (const wchar_t* destination : {L"nothing.copy", L"to.nothing.copy", L"nothing.to.copy", L"from.group.copy"}) {
        expectRefused(*source, other(), destination);
    }
}

TEST_P(CloneToStore, WithoutANameIsRefused) {
    const auto source = group();
    for (const wchar_t* destination : {L"", L"to.", L".copy", L".", L"to..copy"}) {
        expectRefused(*source, other(), destination);
    }
    expectRefused(*source, other(), nullptr);
}

TEST_P(CloneToStore, WithoutAStoreIsRefused) {
    expectRefused(*group(), nullptr, L"to.copy");
}

TEST_P(CloneToStore, IntoAnEmptyStoreIsRefusedAndLeavesItEmpty) {
    const auto empty = GetParam().make();
    EXPECT_FALSE(group()->clone(empty.get(), L"to.copy"));
    EXPECT_FALSE(group()->clone(empty.get(), L"to"));
    EXPECT_EQ(0u, empty->extent());
}

TEST_P(CloneToStore, IntoItselfHasWhatWasThereBefore) {
    EXPECT_TRUE(group()->clone(store(), L"from.group.copy"));
    EXPECT_EQ((tNames{L"deep", L"copy", L"inner"}), children(*group()));
    EXPECT_EQ((tNames{L"deep", L"inner"}), children(*group()->container(L"copy")));
}

TEST_P(CloneToStore, BelowItselfHasWhatWasThereBefore) {
    EXPECT_TRUE(from()->clone(store(), L"from.group.deep.copy"));
    const auto copy = from()->container(L"group.deep.copy");
    ASSERT_TRUE(copy);
    EXPECT_EQ((tNames{L"deep", L"inner"}), children(*copy->container(L"group")));
    EXPECT_TRUE(copy->container(L"group.deep")->empty());
}

}  // namespace
