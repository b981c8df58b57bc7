#include "tests/container/CopyFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// `clone` from a path to a path, in one store.
class ClonePath : public CopyingTest {
protected:
    void SetUp() override {
        const auto source = from();
        addNumber(*addGroup(*source, L"group"), L"inner", 3);
        addNumber(*source, L"number", 4);
        source->create(L"table", kNoSchema)->create(L"item", metadata::kDouble, units::kMeter);
    }

    /// Expects that a call through `owner` gives false and writes nothing.
    void expectRefused(IContainer& owner, const wchar_t* source, const wchar_t* destination, bool fromRoot) {
        const auto before = contents(store());
        EXPECT_FALSE(owner.clone(source, destination, fromRoot));
        EXPECT_EQ(before, contents(store()));
    }
};
LVP_ON_EACH_STORE(ClonePath);

TEST_P(ClonePath, GivesAContainerANewName) {
    EXPECT_TRUE(from()->clone(L"group", L"copy", false));
    const auto copy = from()->container(L"copy");
    ASSERT_TRUE(copy);
    EXPECT_EQ(L"copy", text(copy->tag()));
    EXPECT_EQ(L"from.copy", text(copy->path()));
    EXPECT_EQ(3, number(*copy, L"inner"));
    EXPECT_EQ(3, number(*from(), L"group.inner"));
}

TEST_P(ClonePath, GivesAPrimitiveANewName) {
    EXPECT_TRUE(from()->clone(L"number", L"copy", false));
    EXPECT_EQ(4, number(*from(), L"copy"));
    EXPECT_EQ(L"from.copy", text(from()->property(L"copy")->path()));
    EXPECT_EQ(4, number(*from(), L"number"));
}

TEST_P(ClonePath, GivesATableANewName) {
    EXPECT_TRUE(from()->clone(L"table", L"copy", false));
    EXPECT_EQ(L"from.copy.item", text(from()->property(L"copy.item")->path()));
    EXPECT_TRUE(from()->has(L"table.item"));
}

TEST_P(ClonePath, WritesTheNewNameWithItsTerminatorAndNoMore) {
    const struct {
        const wchar_t* source;
        const wchar_t* copy;
        unsigned int length;  // where the record has the length of its name
    } kItems[] = {{L"number", L"one", 30}, {L"table", L"two", 26}, {L"group", L"six", 19}};
    for (const auto& item : kItems) {
        EXPECT_TRUE(from()->clone(item.source, item.copy, false));
        const unsigned int copy = offsetOf(store(), std::wstring(L"from.") + item.copy);
        EXPECT_EQ(16u, stored::word(store(), copy, item.length));
        EXPECT_NE(std::string::npos, hex(store(), copy).find(hexText(item.copy)));
        EXPECT_EQ(std::string::npos, hex(store(), copy).find(hexText(item.source)));
    }
}

TEST_P(ClonePath, MayKeepTheSourcesNameElsewhere) {
    EXPECT_TRUE(to()->clone(L"from.number", L"number", true));
    EXPECT_EQ(4, number(*to(), L"number"));
}

TEST_P(ClonePath, WithoutADotAddsToThisContainerWhichKnowsItAtOnce) {
    const auto owner = from();
    const auto earlier = from();
    EXPECT_TRUE(owner->clone(L"number", L"copy", false));
    EXPECT_TRUE(owner->has(L"copy"));
    EXPECT_EQ(4, number(*owner, L"copy"));
    EXPECT_FALSE(earlier->has(L"copy"));
}

TEST_P(ClonePath, WithoutADotLearnsOfAllThatIsThereNow) {
    const auto owner = from();
    addNumber(*from(), L"late");
    EXPECT_FALSE(owner->has(L"late"));
    EXPECT_TRUE(owner->clone(L"number", L"copy", false));
    EXPECT_TRUE(owner->has(L"late"));
}

TEST_P(ClonePath, WithoutADotLooksForTheNameInTheContainerAsItIsNow) {
    const auto owner = from();
    addNumber(*from(), L"late", 5);
    expectRefused(*owner, L"number", L"late", false);
    EXPECT_TRUE(from()->destroy(L"late"));
    EXPECT_TRUE(owner->clone(L"number", L"late", false));
    EXPECT_EQ(4, number(*owner, L"late"));
}

TEST_P(ClonePath, WithADotAddsToTheContainerAtThePath) {
    addGroup(*from()->container(L"group"), L"deep");
    const auto owner = from();
    EXPECT_TRUE(owner->clone(L"number", L"group.deep.copy", false));
    EXPECT_EQ(4, number(*from(), L"group.deep.copy"));
    EXPECT_EQ(L"from.group.deep.copy", text(from()->property(L"group.deep.copy")->path()));
}

TEST_P(ClonePath, WithADotIsSeenByNewObjectsOverTheDestinationOnly) {
    const auto owner = from();
    const auto earlier = from()->container(L"group");
    EXPECT_TRUE(owner->clone(L"number", L"group.copy", false));
    EXPECT_FALSE(earlier->has(L"copy"));
    EXPECT_TRUE(from()->container(L"group")->has(L"copy"));
    EXPECT_TRUE(owner->container(L"group")->has(L"copy"));
}

TEST_P(ClonePath, WithADotDoesNotReachThisObjectWhereThePathLeadsBackToIt) {
    // A damaged store lists a container below itself: no other path leads back.
    const unsigned int self = offsetOf(store(), L"from");
    stored::enlist(store(), self, self);
    const auto owner = from();
    EXPECT_TRUE(owner->clone(L"number", L"from.copy", false));
    EXPECT_FALSE(owner->has(L"copy"));
    EXPECT_EQ(4, number(*from(), L"copy"));
}

TEST_P(ClonePath, TakesTheSourceFromTheTopOrFromHere) {
    // The same path leads to one item from the top of the store and to another from here.
    addNumber(*addGroup(*to(), L"from"), L"number", 8);
    EXPECT_TRUE(to()->clone(L"from.number", L"top", true));
    EXPECT_TRUE(to()->clone(L"from.number", L"here", false));
    EXPECT_EQ(4, number(*to(), L"top"));
    EXPECT_EQ(8, number(*to(), L"here"));
}

TEST_P(ClonePath, TakesTheDestinationFromHereAlways) {
    addGroup(*to(), L"from");
    EXPECT_TRUE(to()->clone(L"from.number", L"from.copy", true));
    EXPECT_FALSE(from()->has(L"copy"));
    EXPECT_EQ(4, number(*to(), L"from.copy"));
    expectRefused(*to(), L"from.number", L"to.copy", true);
}

TEST_P(ClonePath, TakesAPathToASourceThatLiesDeeper) {
    EXPECT_TRUE(from()->clone(L"group.inner", L"copy", false));
    EXPECT_TRUE(from()->clone(L"table.item", L"item", false));
    EXPECT_EQ(3, number(*from(), L"copy"));
    EXPECT_EQ(metadata::kDouble, asPrimitive(from()->property(L"item")).valuetype());
}

TEST_P(ClonePath, TakesAPathOneNameBeyondAPrimitiveForThatPrimitive) {
    EXPECT_TRUE(from()->clone(L"number.beyond", L"copy", false));
    EXPECT_EQ(4, number(*from(), L"copy"));
    EXPECT_TRUE(from()->clone(L"from.number.beyond", L"copy2", true));
    EXPECT_EQ(4, number(*from(), L"copy2"));
}

TEST_P(ClonePath, IsRefusedWhereThereIsNoSource) {
    const auto owner = from();
    for (const wchar_t* source : {L"nothing", L"group.nothing", L"nothing.inner", L"from.number"}) {
        expectRefused(*owner, source, L"copy", false);
    }
    for (const wchar_t* source : {L"nothing", L"number", L"group.inner", L"from.nothing"}) {
        expectRefused(*owner, source, L"copy", true);
    }
}

TEST_P(ClonePath, FindsASourceFromHereAsThisObjectKnowsIt) {
    const auto owner = from();
    addNumber(*from(), L"late");
    expectRefused(*owner, L"late", L"copy", false);
    EXPECT_TRUE(owner->clone(L"from.late", L"copy", true));
}

TEST_P(ClonePath, IsRefusedWhereThereIsNoDestination) {
    const auto owner = from();
    for (const wchar_t* destination : {L"nothing.copy", L"group.nothing.copy", L"from.copy"}) {
        expectRefused(*owner, L"number", destination, false);
    }
}

TEST_P(ClonePath, IsRefusedWhereTheDestinationIsNoContainer) {
    const auto owner = from();
    for (const wchar_t* destination : {L"number.copy", L"table.copy", L"table.item.copy", L"number.beyond.copy"}) {
        expectRefused(*owner, L"group.inner", destination, false);
    }
}

TEST_P(ClonePath, IsRefusedWhereTheNameIsTaken) {
    const auto owner = from();
    addNumber(*owner->container(L"group"), L"second");
    for (const wchar_t* source : {L"group", L"number", L"table"}) {
        for (const wchar_t* destination : {L"number", L"group", L"table", L"group.inner", L"group.second"}) {
            expectRefused(*owner, source, destination, false);
        }
    }
}

TEST_P(ClonePath, TakesTheNewNameExactly) {
    // What stands deeper under the same last name does not matter.
    EXPECT_TRUE(from()->clone(L"number", L"inner", false));
    EXPECT_TRUE(from()->clone(L"number", L"group.number", false));
    EXPECT_EQ(4, number(*from(), L"inner"));
    EXPECT_EQ(4, number(*from(), L"group.number"));
}

TEST_P(ClonePath, OfWhatAnotherObjectDestroyedIsRefused) {
    const auto owner = from();
    EXPECT_TRUE(from()->destroy(L"number"));
    EXPECT_TRUE(owner->has(L"number"));
    expectRefused(*owner, L"number", L"copy", false);
}

TEST_P(ClonePath, OfASourceWithoutANameIsRefused) {
    const auto owner = from();
    for (const bool fromRoot : {false, true}) {
        expectRefused(*owner, nullptr, L"copy", fromRoot);
        expectRefused(*owner, L"", L"copy", fromRoot);
    }
}

TEST_P(ClonePath, WithoutANameIsRefused) {
    const auto owner = from();
    for (const bool fromRoot : {false, true}) {
        const wchar_t* source = fromRoot ? L"from.number" : L"number";
        expectRefused(*owner, source, nullptr, fromRoot);
        expectRefused(*owner, source, L"", fromRoot);
        expectRefused(*owner, source, L"group.", fromRoot);
        expectRefused(*owner, source, L".copy", fromRoot);
        expectRefused(*owner, source, L".", fromRoot);
    }
}

TEST_P(ClonePath, IntoItselfHasWhatWasThereBefore) {
    EXPECT_TRUE(from()->clone(L"group", L"group.copy", false));
    EXPECT_EQ((tNames{L"copy", L"inner"}), children(*from()->container(L"group")));
    EXPECT_EQ(tNames{L"inner"}, children(*from()->container(L"group.copy")));
}

TEST_P(ClonePath, OfWhatIsAboveThisContainerHasWhatWasThereBefore) {
    EXPECT_TRUE(from()->container(L"group")->clone(L"from", L"copy", true));
    const auto copy = from()->container(L"group.copy");
    ASSERT_TRUE(copy);
    EXPECT_EQ((tNames{L"group", L"number", L"table"}), children(*copy));
    EXPECT_EQ(tNames{L"inner"}, children(*copy->container(L"group")));
}

}  // namespace
