// Containers and tables by their path.
#include "tests/easy/EasyFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::ElementsAre;
using testing::IsEmpty;

class EasyMake : public EasyTest {};
LVP_ON_EACH_STORE(EasyMake);

TEST_P(EasyMake, MakesWhatIsMissingOnTheWay) {
    const auto made = easy::make(model(), L"a.b.c");
    ASSERT_TRUE(made);
    EXPECT_EQ(text(made->path()), L"top.a.b.c");
    EXPECT_EQ(made->type(), IContainer::kGroup);
    EXPECT_TRUE(find(L"top.a.b.c"));
    EXPECT_TRUE(easy::make(model(), L"a.b.d"));
    EXPECT_THAT(names(*find(L"top.a")->containers()), ElementsAre(L"b"));
    EXPECT_THAT(names(*find(L"top.a.b")->containers()), ElementsAre(L"c", L"d"));
}

TEST_P(EasyMake, GivesWhatIsThere) {
    top()->create(IContainer::kNode, L"node", kNoSchema)->create(L"value", metadata::kInt32);
    const auto found = easy::make(model(), L"node");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->type(), IContainer::kNode);
    EXPECT_TRUE(found->has(L"value"));
    EXPECT_THAT(names(*top()->containers()), ElementsAre(L"node"));
}

TEST_P(EasyMake, MakesTheTypeThatIsAskedFor) {
    EXPECT_EQ(easy::make(model(), L"a.b", IContainer::kNode)->type(), IContainer::kNode);
    EXPECT_EQ(find(L"top.a")->type(), IContainer::kNode);
    EXPECT_EQ(easy::make(store(), L"new.node", IContainer::kNode)->type(), IContainer::kNode);
    EXPECT_EQ(find(L"new")->type(), IContainer::kGroup);
}

TEST_P(EasyMake, IsKnownToTheObjectThatItWentThrough) {
    EXPECT_TRUE(easy::make(model(), L"a.b"));
    EXPECT_TRUE(model().container(L"a.b"));
    EXPECT_TRUE(easy::makeTable(model(), L"t"));
    EXPECT_TRUE(model().property(L"t"));
}

TEST_P(EasyMake, TakesTheNameOfAnItemThatIsGoneThoughTheObjectStillKnowsIt) {
    easy::make(model(), L"a");
    easy::makeTable(model(), L"t");
    easy::set(model(), L"v", 1);
    const auto known = model().container(L"a");
    const auto kept = std::pair(model().property(L"t"), model().property(L"v"));
    for (const wchar_t* name : {L"a", L"t", L"v"}) top()->destroy(name);
    ASSERT_TRUE(model().has(L"v")) << "it still knows that";
    EXPECT_TRUE(easy::make(model(), L"a"));
    EXPECT_TRUE(easy::makeTable(model(), L"t"));
    EXPECT_TRUE(easy::set(model(), L"v", 2));
    EXPECT_THAT(stored<int>(L"v"), ElementsAre(2));
    EXPECT_TRUE(find(L"top.a"));
    EXPECT_TRUE(metadata::ITable::to(there(L"t").get()));
}

TEST_P(EasyMake, BeginsAtTheTopOfAStoreAndSetsItUp) {
    const auto made = easy::make(other(), L"model");
    ASSERT_TRUE(made);
    EXPECT_TRUE(IGroup::to(made.get())) << "in its role";
    EXPECT_TRUE(easy::make(other(), L"model.a.b"));
    EXPECT_TRUE(IContainerFrontEnd::find(other(), L"model.a.b"));
}

TEST_P(EasyMake, MakesNothingUnderANameThatIsTakenOrMissing) {
    put<int>(L"value", metadata::kInt32, {1});
    model().create(L"table", kNoSchema);
    for (const wchar_t* path :
         {L"", L".", L"a.", L".a", L"a..b", L"value", L"value.a", L"value.a.b", L"table", L"table.a"}) {
        EXPECT_FALSE(easy::make(model(), path)) << path;
    }
    EXPECT_THAT(names(*top()->containers()), IsEmpty());
    EXPECT_FALSE(easy::make(other(), L"a..b"));
    EXPECT_FALSE(easy::make(other(), L""));
    EXPECT_FALSE(easy::make(other(), std::wstring(L"a\0b", 3)));
    EXPECT_EQ(other()->extent(), 0u);
    EXPECT_FALSE(easy::make(find(L"nothing"), L"a"));
    EXPECT_FALSE(easy::make(static_cast<IDataStore*>(nullptr), L"a"));
}

TEST_P(EasyMake, MakesTablesWithTheContainersOnTheWay) {
    EXPECT_TRUE(easy::makeTable(model(), L"direct"));
    EXPECT_TRUE(easy::makeTable(model(), L"a.b.table"));
    EXPECT_TRUE(easy::makeTable(store(), L"new.table"));
    EXPECT_TRUE(ITable::to(there(L"direct").get()));
    EXPECT_TRUE(ITable::to(there(L"a.b.table").get()));
    EXPECT_TRUE(ITable::to(find(L"new")->property(L"table").get()));
}

TEST_P(EasyMake, MakesTablesInTables) {
    EXPECT_TRUE(easy::makeTable(model(), L"outer"));
    EXPECT_TRUE(easy::makeTable(model(), L"outer.inner"));
    EXPECT_TRUE(ITable::to(there(L"outer.inner").get()));
    EXPECT_FALSE(easy::makeTable(model(), L"outer.missing.inner")) << "what is missing would be containers";
    EXPECT_THAT(names(*asTable(there(L"outer")).properties()), ElementsAre(L"inner"));
}

TEST_P(EasyMake, KeepsTheTableThatIsThere) {
    EXPECT_TRUE(easy::makeTable(model(), L"table"));
    EXPECT_TRUE(easy::set(model(), L"table.value", 1));
    EXPECT_TRUE(easy::makeTable(model(), L"table"));
    EXPECT_TRUE(there(L"table.value"));
    top()->create(L"theirs", kNoSchema);
    EXPECT_TRUE(easy::makeTable(model(), L"theirs"));
    EXPECT_THAT(names(*top()->properties()), ElementsAre(L"table", L"theirs"));
}

TEST_P(EasyMake, MakesNoTableUnderANameThatIsTakenOrMissing) {
    put<int>(L"value", metadata::kInt32, {1});
    model().create(IContainer::kGroup, L"group", kNoSchema);
    for (const wchar_t* path : {L"", L".", L"a.", L".a", L"a..b", L"value", L"value.a", L"value.a.b", L"group"}) {
        EXPECT_FALSE(easy::makeTable(model(), path)) << path;
    }
    EXPECT_THAT(names(*top()->properties()), ElementsAre(L"value"));
    EXPECT_THAT(names(*top()->containers()), ElementsAre(L"group"));
    EXPECT_FALSE(easy::makeTable(store(), L"new"));
    EXPECT_FALSE(find(L"new"));
    EXPECT_FALSE(easy::makeTable(find(L"nothing"), L"a"));
    EXPECT_FALSE(easy::makeTable(static_cast<IDataStore*>(nullptr), L"a.b"));
}

}  // namespace
