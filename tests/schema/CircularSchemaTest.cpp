// Schemas that reach themselves through struct members.
#include "tests/schema/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::ElementsAre;

class CircularSchema : public SchemaTest {
protected:
    /// A schema with a struct member that names another schema, and a number behind it.
    unsigned int link(const wchar_t* name, const wchar_t* member, const wchar_t* base, unsigned int bytes,
                      const wchar_t* number, metadata::tValue kind = metadata::kInt32) {
        const unsigned int table = schema(name);
        addStruct(store(), table, member, base, bytes);
        addValues(store(), table, number, kind, 1);
        return table;
    }
};
LVP_ON_EACH_STORE(CircularSchema);

TEST_P(CircularSchema, ThatNamesItselfLosesThatMemberAlone) {
    const unsigned int a = link(L"a", L"self", L"a", 100, L"x");
    addStruct(store(), a, L"also", L"a", 100);
    addValues(store(), a, L"y", metadata::kInt32, 1);
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"x", L"y"));
    EXPECT_EQ(layout(L"a").stride(), 8u);
    EXPECT_EQ(stored::refs(store(), a), 1u);
}

TEST_P(CircularSchema, CountsANameMetAgainAsOneThatIsUnknown) {
    schemaOf(L"base", L"z");
    link(L"a", L"s", L"a;base", 4, L"x");
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"s.z", L"x"));
}

TEST_P(CircularSchema, ThroughASecondIsCutInsideAndLeavesTheSecondToBeFoundWhole) {
    link(L"a", L"b", L"b", 4, L"x");
    link(L"b", L"a", L"a", 8, L"y");
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"b.y", L"x"));
    EXPECT_THAT(names(layout(L"b")), ElementsAre(L"a.b.y", L"a.x", L"y"));
}

TEST_P(CircularSchema, ThroughASecondIsTheSameTheOtherWayRound) {
    link(L"a", L"b", L"b", 8, L"x");
    link(L"b", L"a", L"a", 4, L"y");
    EXPECT_THAT(names(layout(L"b")), ElementsAre(L"a.x", L"y"));
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"b.a.x", L"b.y", L"x"));
}

TEST_P(CircularSchema, ThatWasCutIsNotHeldUnderItsInnerName) {
    const unsigned int a = link(L"a", L"b", L"b", 4, L"x");
    const unsigned int b = link(L"b", L"a", L"a", 8, L"y");
    ASSERT_TRUE(resolve(L"a"));
    EXPECT_EQ(stored::refs(store(), a), 1u);
    EXPECT_EQ(stored::refs(store(), b), 0u);
}

TEST_P(CircularSchema, ResolvedInOneListIsAsOneAfterTheOther) {
    link(L"a", L"b", L"b", 4, L"x");
    link(L"b", L"a", L"a", 8, L"y");
    const auto found = layouts(resolve(L"a;b"));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_THAT(names(*found[0]), ElementsAre(L"b.y", L"x"));
    EXPECT_THAT(names(*found[1]), ElementsAre(L"a.b.y", L"a.x", L"y"));
}

TEST_P(CircularSchema, ThroughTwoOthersIsCutInsideThese) {
    const unsigned int a = link(L"a", L"b", L"b", 8, L"x");
    const unsigned int b = link(L"b", L"c", L"c", 4, L"y");
    const unsigned int c = link(L"c", L"a", L"a", 12, L"z");
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"b.c.z", L"b.y", L"x"));
    EXPECT_EQ(stored::refs(store(), a), 1u);
    EXPECT_EQ(stored::refs(store(), b), 0u);
    EXPECT_EQ(stored::refs(store(), c), 0u);
    EXPECT_THAT(names(layout(L"c")), ElementsAre(L"a.b.c.z", L"a.b.y", L"a.x", L"z"));
}

TEST_P(CircularSchema, IsWholeWhicheverOfItsNamesComesFirst) {
    link(L"a", L"b", L"b", 16, L"x", metadata::kDouble);
    link(L"b", L"c", L"c", 8, L"y", metadata::kDouble);
    link(L"c", L"a", L"a", 24, L"z", metadata::kDouble);
    const auto alone = [this](const wchar_t* uri) {
        const auto locator = ISchemaLocator::make(store());
        return names(*locator->resolve(uri)->layout());
    };
    EXPECT_THAT(alone(L"a"), ElementsAre(L"b.c.z", L"b.y", L"x"));
    EXPECT_THAT(alone(L"b"), ElementsAre(L"y")) << "its member has no room for an element";
    EXPECT_THAT(alone(L"c"), ElementsAre(L"a.b[0].y", L"a.b[1].y", L"a.x", L"z"));
}

TEST_P(CircularSchema, BesideTheCircleIsHeldAsAnyOther) {
    link(L"a", L"b", L"b", 8, L"x");
    const unsigned int b = link(L"b", L"a", L"a", 100, L"y");
    addStruct(store(), b, L"e", L"e", 4);
    const unsigned int e = schemaOf(L"e", L"z");
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"b.y", L"b.e.z", L"x"));
    EXPECT_EQ(stored::refs(store(), e), 1u);
}

TEST_P(CircularSchema, ThatIsReachedFromOutsideIsHeldAsIfItWereTheFirst) {
    link(L"out", L"a", L"a", 8, L"o");
    const unsigned int a = link(L"a", L"b", L"b", 4, L"x");
    const unsigned int b = link(L"b", L"a", L"a", 8, L"y");
    EXPECT_THAT(names(layout(L"out")), ElementsAre(L"a.b.y", L"a.x", L"o"));
    EXPECT_EQ(stored::refs(store(), a), 1u);
    EXPECT_EQ(stored::refs(store(), b), 0u);
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"b.y", L"x"));
}

TEST_P(CircularSchema, IsCutForEachMemberAnew) {
    const unsigned int a = link(L"a", L"one", L"b", 4, L"x");
    addStruct(store(), a, L"two", L"b", 8);
    link(L"b", L"a", L"a", 100, L"y");
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"one.y", L"x", L"two[0].y", L"two[1].y"));
}

TEST_P(CircularSchema, MayBeNamedByAPath) {
    const unsigned int c = tree::addContainer(store(), 0, L"c");
    const unsigned int t = tree::addTable(store(), tree::addTable(store(), c, L"t"), L"u");
    addStruct(store(), t, L"s", L"c.t.u", 100);
    addValues(store(), t, L"x", metadata::kInt32, 1);
    EXPECT_THAT(names(layout(L"c.t.u")), ElementsAre(L"x"));
}

TEST_P(CircularSchema, GoesWithItsStore) {
    const unsigned int a = link(L"a", L"b", L"b", 4, L"x");
    const unsigned int b = link(L"b", L"a", L"a", 8, L"y");
    ASSERT_TRUE(resolve(L"a;b"));
    EXPECT_TRUE(_locator->pop(store()));
    EXPECT_EQ(stored::refs(store(), a), 0u);
    EXPECT_EQ(stored::refs(store(), b), 0u);
    EXPECT_FALSE(resolve(L"a;b"));
}

}  // namespace
