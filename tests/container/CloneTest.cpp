#include "tests/container/CopyFixture.h"
#include "tests/container/ForeignProperty.h"
#include "tests/xml/ForeignContainer.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::memory::share;

/// `clone` of an object: a copy as a child, under the source's name.
class Clone : public CopyingTest {
protected:
    void SetUp() override {
        const auto source = from();
        addNumber(*addGroup(*source, L"group"), L"inner", 3);
        addNumber(*source, L"number", 4);
        source->create(L"table", kNoSchema)->create(L"item", metadata::kDouble, units::kMeter);
    }

    /// Expects that a call gives false and writes nothing
    template <class Call>
    void expectRefused(Call call) {
        const auto before = contents(store());
        EXPECT_FALSE(call());
        EXPECT_EQ(before, contents(store()));
    }
};
LVP_ON_EACH_STORE(Clone);

TEST_P(Clone, OfAContainerBecomesAChildOfItsName) {
    const auto target = to();
    EXPECT_TRUE(target->clone(from()->container(L"group")));
    EXPECT_TRUE(target->has(L"group"));
    EXPECT_EQ(3, number(*target, L"group.inner"));
    EXPECT_EQ(L"to.group", text(to()->container(L"group")->path()));
    EXPECT_EQ(L"to", text(to()->container(L"group")->parent()->tag()));
    EXPECT_TRUE(from()->has(L"group.inner"));
}

TEST_P(Clone, OfAPrimitiveBecomesAChildOfItsName) {
    const auto target = to();
    EXPECT_TRUE(target->clone(from()->property(L"number")));
    EXPECT_EQ(4, number(*target, L"number"));
    EXPECT_EQ(L"to.number", text(to()->property(L"number")->path()));
}

TEST_P(Clone, OfATableBecomesAChildOfItsName) {
    const auto target = to();
    EXPECT_TRUE(target->clone(from()->property(L"table")));
    EXPECT_EQ(L"to.table.item", text(target->property(L"table.item")->path()));
    EXPECT_EQ(units::kMeter, asPrimitive(target->property(L"table.item")).units());
}

TEST_P(Clone, OfATablesItemStandsInTheContainer) {
    EXPECT_TRUE(to()->clone(from()->property(L"table.item")));
    EXPECT_EQ(L"to.item", text(to()->property(L"item")->path()));
    EXPECT_FALSE(to()->property(L"item")->parent());
}

TEST_P(Clone, OfATopLevelContainerStandsBelow) {
    EXPECT_TRUE(to()->clone(from()));
    EXPECT_EQ(3, number(*to(), L"from.group.inner"));
    EXPECT_EQ(4, number(*to(), L"from.number"));
}

TEST_P(Clone, TakesASourceInAnotherStore) {
    const auto target = otherTo();
    const auto before = contents(store());
    EXPECT_TRUE(target->clone(from()->container(L"group")));
    EXPECT_TRUE(target->clone(from()->property(L"number")));
    EXPECT_EQ(before, contents(store()));
    EXPECT_EQ(3, number(*target, L"group.inner"));
    EXPECT_EQ(4, number(*otherTo(), L"number"));
}

TEST_P(Clone, IsKnownToTheObjectThatMadeItAndNotToOthers) {
    const auto target = to();
    const auto earlier = to();
    EXPECT_TRUE(target->clone(from()->property(L"number")));
    EXPECT_TRUE(target->has(L"number"));
    EXPECT_FALSE(earlier->has(L"number"));
}

TEST_P(Clone, IsRefusedWhereTheNameIsTaken) {
    const auto group = from()->container(L"group");
    const auto primitive = from()->property(L"number");
    const auto table = from()->property(L"table");
    const auto target = to();
    for (const wchar_t* name : {L"group", L"number", L"table"}) addNumber(*target, name, 9);
    expectRefused([&] { return target->clone(group); });
    expectRefused([&] { return target->clone(primitive); });
    expectRefused([&] { return target->clone(table); });
    EXPECT_EQ(9, number(*target, L"group"));
}

TEST_P(Clone, IsRefusedBesideItsSource) {
    const auto target = from();
    const auto group = target->container(L"group");
    const auto primitive = target->property(L"number");
    expectRefused([&] { return target->clone(group); });
    expectRefused([&] { return target->clone(primitive); });
}

TEST_P(Clone, GoesByTheNameThatTheSourceObjectKnows) {
    const auto group = from()->container(L"group");
    EXPECT_TRUE(from()->container(L"group")->rename(L"renamed"));
    const auto target = to();
    addNumber(*target, L"group");
    expectRefused([&] { return target->clone(group); });
    // The record has the new name, and so has the copy.
    EXPECT_TRUE(otherTo()->clone(group));
    EXPECT_EQ(tNames{L"renamed"}, names(*otherTo()->containers()));
}

TEST_P(Clone, TakesTheSourcesNameAsAPath) {
    addNumber(*from(), L"group.inner");
    const auto dotted = from()->properties();
    while (current(*dotted) != L"group.inner") ASSERT_TRUE(dotted->next());
    const auto source = dotted->current();
    const auto full = to();
    addNumber(*addGroup(*full, L"group"), L"inner", 5);
    expectRefused([&] { return full->clone(source); });
    const auto free = addGroup(*to(), L"free");
    EXPECT_TRUE(free->clone(source));
    EXPECT_EQ(tNames{L"group.inner"}, names(*free->properties()));
}

TEST_P(Clone, GivesTrueForADottedNameThatIsTakenAndAddsNothing) {
    addNumber(*from(), L"a.b", 1);
    const auto dotted = from()->properties();
    while (current(*dotted) != L"a.b") ASSERT_TRUE(dotted->next());
    const auto target = to();
    addNumber(*target, L"a.b", 2);
    EXPECT_TRUE(target->clone(dotted->current()));
    EXPECT_EQ(1u, stored::children(store(), offsetOf(store(), L"to")).size());
}

TEST_P(Clone, IntoItselfHasWhatWasThereBefore) {
    const auto group = from()->container(L"group");
    EXPECT_TRUE(group->clone(group));
    const auto again = from()->container(L"group");
    EXPECT_EQ((tNames{L"group", L"inner"}), children(*again));
    EXPECT_EQ(tNames{L"inner"}, children(*again->container(L"group")));
}

TEST_P(Clone, BelowItselfHasWhatWasThereBefore) {
    addGroup(*from()->container(L"group"), L"below");
    EXPECT_TRUE(from()->container(L"group.below")->clone(from()));
    const auto copy = from()->container(L"group.below.from");
    ASSERT_TRUE(copy);
    EXPECT_EQ((tNames{L"group", L"number", L"table"}), children(*copy));
    EXPECT_TRUE(copy->container(L"group.below")->empty());
}

TEST_P(Clone, LeavesOutChildrenBelowASourceThatHadNoneWhenItWasOpened) {
    addGroup(*from(), L"late");
    const auto earlier = from()->container(L"late");
    addNumber(*from()->container(L"late"), L"number");
    EXPECT_TRUE(to()->clone(earlier));
    EXPECT_TRUE(to()->container(L"late")->empty());
    EXPECT_TRUE(otherTo()->clone(from()->container(L"late")));
    EXPECT_TRUE(otherTo()->has(L"late.number"));
}

TEST_P(Clone, LeavesOutTextsThatTheSourceObjectHasNotSaved) {
    auto group = from()->container(L"group");
    group->describe(L"de", L"Gruppe");
    EXPECT_TRUE(to()->clone(group));
    EXPECT_EQ(0u, to()->container(L"group")->locales());
    group.reset();
    EXPECT_TRUE(otherTo()->clone(from()->container(L"group")));
    EXPECT_EQ(L"Gruppe", text(otherTo()->container(L"group")->localize(L"de")));
}

TEST_P(Clone, OfNothingIsRefused) {
    const auto target = to();
    expectRefused([&] { return target->clone(SharedPtr<IContainer>()); });
    expectRefused([&] { return target->clone(SharedPtr<IProperty>()); });
}

TEST_P(Clone, OfAForeignObjectIsRefused) {
    const auto target = to();
    expectRefused([&] { return target->clone(share<IContainer>(std::make_unique<ForeignContainer>(store()))); });
    for (const unsigned int type : {0u, 1u}) {
        expectRefused(
            [&] { return target->clone(share<IProperty>(std::make_unique<ForeignProperty>(store(), type))); });
    }
}

}  // namespace
