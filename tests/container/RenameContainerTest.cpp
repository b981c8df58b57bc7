#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

class RenameContainer : public ClientTest {
protected:
    void SetUp() override {
        top()->create(IContainer::kGroup, L"old", kNoSchema)->create(IContainer::kNode, L"child", kNoSchema);
    }

    unsigned int offsetOfOld() { return stored::children(store(), stored::children(store(), 0).at(0)).at(0); }
};
LVP_ON_EACH_STORE(RenameContainer);

TEST_P(RenameContainer, GivesItANewNameAmongItsSiblings) {
    EXPECT_TRUE(top()->container(L"old")->rename(L"new"));
    EXPECT_FALSE(top()->has(L"old"));
    EXPECT_TRUE(top()->has(L"new"));
    EXPECT_EQ(L"new", text(top()->container(L"new")->tag()));
    EXPECT_EQ(L"top.new.child", text(top()->container(L"new.child")->path()));
}

TEST_P(RenameContainer, KeepsTheOldTagOnTheSameObject) {
    const auto renamed = top()->container(L"old");
    const auto child = renamed->container(L"child");
    renamed->rename(L"new");
    EXPECT_EQ(L"old", text(renamed->tag()));
    EXPECT_EQ(L"top.old", text(renamed->path()));
    // The names above an item come from the store.
    EXPECT_EQ(L"top.new.child", text(child->path()));
    EXPECT_EQ(L"new", text(renamed->container(kNoName)->tag()));
}

TEST_P(RenameContainer, GoesByTheOldNameASecondTime) {
    const auto renamed = top()->container(L"old");
    EXPECT_TRUE(renamed->rename(L"new"));
    EXPECT_FALSE(renamed->rename(L"newer"));
    EXPECT_TRUE(top()->container(L"new")->rename(L"newer"));
    EXPECT_TRUE(top()->has(L"newer"));
}

TEST_P(RenameContainer, DoesNotReachTheObjectsOverItsParent) {
    const auto earlier = top();
    earlier->container(L"old")->rename(L"new");
    EXPECT_TRUE(earlier->has(L"old"));
    EXPECT_FALSE(earlier->has(L"new"));
    EXPECT_TRUE(earlier->container(kNoName)->has(L"new"));
}

TEST_P(RenameContainer, IsRefusedAtTheTop) {
    const std::string before = stored::bytes(store(), stored::children(store(), 0).at(0));
    EXPECT_FALSE(top()->rename(L"new"));
    EXPECT_FALSE(find(L"top")->rename(L"new"));
    EXPECT_EQ(before, stored::bytes(store(), stored::children(store(), 0).at(0)));
    EXPECT_TRUE(find(L"top"));
}

TEST_P(RenameContainer, IsRefusedWhereASiblingBearsTheName) {
    const auto owner = top();
    owner->create(L"number", metadata::kInt32);
    const std::string before = stored::bytes(store(), offsetOfOld());
    EXPECT_FALSE(owner->container(L"old")->rename(L"number"));
    EXPECT_FALSE(owner->container(L"old")->rename(L"old"));
    EXPECT_EQ(before, stored::bytes(store(), offsetOfOld()));
}

TEST_P(RenameContainer, IsRefusedForWhatCameFromASchema) {
    stored::putByte(store(), offsetOfOld(), stored::kFlags, 0x02);
    EXPECT_FALSE(top()->container(L"old")->rename(L"new"));
    EXPECT_TRUE(top()->has(L"old"));
}

TEST_P(RenameContainer, TakesADotForACharacter) {
    EXPECT_TRUE(top()->container(L"old")->rename(L"new.name"));
    EXPECT_FALSE(top()->has(L"new.name"));
    EXPECT_EQ(tNames{L"new.name"}, names(*top()->containers()));
}

TEST_P(RenameContainer, WorksWhileObjectsStandOverIt) {
    const auto one = top()->container(L"old");
    const auto two = top()->container(L"old.child");
    EXPECT_TRUE(one->rename(L"new"));
}

TEST_P(RenameContainer, KeepsAllElse) {
    top()->container(L"old")->describe(L"en", L"text");
    const auto link = top()->create(IContainer::kLink, L"link", kNoSchema);
    ILink::to(link.get())->target(L"top.old");
    EXPECT_TRUE(link->rename(L"a much longer name than before"));
    EXPECT_TRUE(top()->container(L"old")->rename(L"n"));
    EXPECT_EQ(L"text", text(top()->container(L"n")->localize(L"en")));
    EXPECT_TRUE(top()->has(L"n.child"));
    const auto renamed = top()->container(L"a much longer name than before");
    EXPECT_EQ(L"top.old", text(ILink::to(renamed.get())->target()));
    EXPECT_EQ((tNames{L"n", L"a much longer name than before"}), names(*top()->containers()));
}

}  // namespace
