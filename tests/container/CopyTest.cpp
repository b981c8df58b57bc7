#include "tests/container/CopyFixture.h"
#include "tests/xml/ForeignContainer.h"

namespace {

using namespace lumivard::platform::test_support;

/// What `copy` brings from one container into another.
class Copy : public CopyingTest {};
LVP_ON_EACH_STORE(Copy);

TEST_P(Copy, AddsEachChildOfTheSource) {
    const auto source = from();
    addNumber(*source, L"number", 7);
    source->create(L"table", kNoSchema);
    addNumber(*addGroup(*source, L"group"), L"inner", 8);
    const auto target = to();
    EXPECT_TRUE(target->copy(source));
    EXPECT_EQ((tNames{L"group", L"number", L"table"}), children(*target));
    EXPECT_EQ(7, number(*target, L"number"));
    EXPECT_EQ(8, number(*target, L"group.inner"));
    EXPECT_EQ(1u, target->property(L"table")->type());
    EXPECT_FALSE(target->has(L"from"));
}

TEST_P(Copy, KeepsTheStoredOrder) {
    const auto source = from();
    const tNames order{L"z", L"b", L"y", L"a", L"x"};
    for (const std::wstring& name : order) addNumber(*source, name.c_str());
    EXPECT_TRUE(to()->copy(source));
    EXPECT_EQ(order, names(*to()->properties()));
}

TEST_P(Copy, PutsTheCopiesBehindWhatIsThere) {
    addNumber(*to(), L"old");
    addNumber(*from(), L"a");
    addNumber(*from(), L"b");
    EXPECT_TRUE(to()->copy(from()));
    EXPECT_EQ((tNames{L"old", L"a", L"b"}), names(*to()->properties()));
}

TEST_P(Copy, PassesOverANameThatIsTaken) {
    const auto source = from();
    for (const wchar_t* name : {L"a", L"b", L"c"}) addNumber(*source, name, 1);
    addNumber(*to(), L"b", 2);
    const auto target = to();
    const std::string kept = picture(store(), offsetOf(store(), L"to.b"));
    EXPECT_TRUE(target->copy(source));
    EXPECT_EQ((tNames{L"b", L"a", L"c"}), names(*target->properties()));
    EXPECT_EQ(2, number(*target, L"b"));
    EXPECT_EQ(kept, picture(store(), offsetOf(store(), L"to.b")));
}

TEST_P(Copy, PassesOverANameThatAnotherKindBears) {
    addNumber(*from(), L"a");
    addGroup(*from(), L"b");
    addGroup(*to(), L"a");
    addNumber(*to(), L"b");
    const auto target = to();
    const auto source = from();
    const auto before = contents(store());
    EXPECT_TRUE(target->copy(source));
    EXPECT_EQ(before, contents(store()));
}

TEST_P(Copy, MergesTheFirstLevelOnly) {
    addNumber(*addGroup(*from(), L"both"), L"inner");
    addNumber(*from(), L"single");
    addGroup(*to(), L"both");
    EXPECT_TRUE(to()->copy(from()));
    EXPECT_TRUE(to()->container(L"both")->empty());
    EXPECT_TRUE(to()->has(L"single"));
}

TEST_P(Copy, OfAnEmptySourceChangesNothing) {
    const auto target = to();
    const auto source = from();
    const auto before = contents(store());
    EXPECT_TRUE(target->copy(source));
    EXPECT_EQ(before, contents(store()));
    EXPECT_TRUE(target->empty());
}

TEST_P(Copy, IsKnownToTheObjectThatMadeItAndNotToOthers) {
    addNumber(*from(), L"number");
    const auto target = to();
    const auto earlier = to();
    EXPECT_TRUE(target->copy(from()));
    EXPECT_TRUE(target->has(L"number"));
    EXPECT_FALSE(target->create(L"number", metadata::kInt32));
    EXPECT_FALSE(earlier->has(L"number"));
    EXPECT_TRUE(to()->has(L"number"));
}

TEST_P(Copy, TakesASourceInAnotherStoreAndLeavesThatAsItIs) {
    addNumber(*addGroup(*from(), L"group"), L"number", 5);
    addNumber(*from(), L"own", 6);
    const auto source = from();
    const auto before = contents(store());
    EXPECT_TRUE(otherTo()->copy(source));
    EXPECT_EQ(before, contents(store()));
    EXPECT_EQ(5, number(*otherTo(), L"group.number"));
    EXPECT_EQ(6, number(*otherTo(), L"own"));
    EXPECT_EQ(other(), otherTo()->property(L"own")->store());
}

TEST_P(Copy, TakesTheNamesOfTheSourceAsPaths) {
    addNumber(*from(), L"group.number", 1);
    addNumber(*from(), L"group.free", 2);
    addNumber(*addGroup(*to(), L"group"), L"number", 3);
    EXPECT_TRUE(to()->copy(from()));
    // The first leads somewhere as a path; the second leads nowhere, so it is added with its dot.
    EXPECT_EQ(tNames{L"group.free"}, names(*to()->properties()));
    EXPECT_EQ(3, number(*to(), L"group.number"));
}

TEST_P(Copy, LeavesALooseRecordForADottedNameThatIsTaken) {
    addNumber(*from(), L"a.b", 1);
    addNumber(*to(), L"a.b", 2);
    EXPECT_TRUE(to()->copy(from()));
    EXPECT_EQ(tNames{L"a.b"}, names(*to()->properties()));
    EXPECT_EQ(1u, stored::children(store(), offsetOf(store(), L"to")).size());
}

TEST_P(Copy, OfItselfAddsNothing) {
    addNumber(*to(), L"number");
    addGroup(*to(), L"group");
    const auto target = to();
    const auto before = contents(store());
    EXPECT_TRUE(target->copy(target));
    EXPECT_TRUE(target->copy(to()));
    EXPECT_EQ(before, contents(store()));
}

TEST_P(Copy, IntoAChildOfTheSourceEnds) {
    addNumber(*from(), L"a");
    addGroup(*from(), L"inner");
    addNumber(*from(), L"b");
    EXPECT_TRUE(from()->container(L"inner")->copy(from()));
    const auto inner = from()->container(L"inner");
    EXPECT_EQ((tNames{L"inner", L"a", L"b"}), children(*inner));
    EXPECT_EQ((tNames{L"inner", L"a", L"b"}), children(*from()));
    EXPECT_FALSE(inner->has(L"inner.inner"));
}

TEST_P(Copy, WalksAsFarAsTheSourceKnowsItsItems) {
    addNumber(*from(), L"a");
    const auto earlier = from();
    addNumber(*from(), L"b");
    EXPECT_TRUE(to()->copy(earlier));
    EXPECT_EQ(tNames{L"a"}, names(*to()->properties()));
}

TEST_P(Copy, IsFalseWhereTheSourceKnowsMoreThanTheStoreHas) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) addNumber(*from(), name);
    const auto earlier = from();
    EXPECT_TRUE(from()->destroy(L"b"));
    EXPECT_FALSE(to()->copy(earlier));
    EXPECT_EQ((tNames{L"a", L"c"}), names(*to()->properties()));
}

TEST_P(Copy, StopsAtARecordThatIsNoItemAndKeepsWhatCameBefore) {
    addNumber(*from(), L"a");
    stored::enlist(store(), offsetOf(store(), L"from"), stored::makeList(store()));
    for (const wchar_t* name : {L"b", L"c"}) addNumber(*from(), name);
    EXPECT_FALSE(to()->copy(from()));
    EXPECT_EQ(tNames{L"a"}, names(*to()->properties()));
}

TEST_P(Copy, StopsAtAnOffsetThatNamesNothing) {
    addNumber(*from(), L"a");
    stored::enlist(store(), offsetOf(store(), L"from"), 0x7FFFFFF0u);
    addNumber(*from(), L"b");
    EXPECT_FALSE(to()->copy(from()));
    EXPECT_EQ(tNames{L"a"}, names(*to()->properties()));
}

TEST_P(Copy, DoesNotComeToAnOddRecordBehindAsManyEntriesAsThereAreItems) {
    for (const wchar_t* name : {L"a", L"b"}) addNumber(*from(), name);
    stored::enlist(store(), offsetOf(store(), L"from"), stored::makeList(store()));
    EXPECT_TRUE(to()->copy(from()));
    EXPECT_EQ((tNames{L"a", L"b"}), names(*to()->properties()));
}

TEST_P(Copy, OfNothingIsRefused) {
    const auto target = to();
    const auto before = contents(store());
    EXPECT_FALSE(target->copy(SharedPtr<IContainer>()));
    EXPECT_EQ(before, contents(store()));
}

TEST_P(Copy, OfAForeignContainerIsRefused) {
    const auto target = to();
    const auto before = contents(store());
    const auto foreign =
        lumivard::platform::core::memory::share<IContainer>(std::make_unique<ForeignContainer>(store()));
    EXPECT_FALSE(target->copy(foreign));
    EXPECT_EQ(before, contents(store()));
}

}  // namespace
