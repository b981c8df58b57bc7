#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

class RenameProperty : public ClientTest {
protected:
    void SetUp() override {
        const auto owner = top();
        owner->create(L"number", metadata::kInt32);
        const auto table = owner->create(L"table", kNoSchema);
        table->create(L"item", metadata::kInt32, units::kNoUnit);
        table->create(L"inner", kNoSchema);
    }

    unsigned int offsetOfTop() { return stored::children(store(), 0).at(0); }
};
LVP_ON_EACH_STORE(RenameProperty);

TEST_P(RenameProperty, WorksInAContainer) {
    EXPECT_TRUE(property(L"number")->rename(L"new number"));
    EXPECT_TRUE(property(L"table")->rename(L"new table"));
    EXPECT_FALSE(property(L"number"));
    EXPECT_EQ(L"new number", text(property(L"new number")->tag()));
    EXPECT_EQ(L"top.new table.item", text(property(L"new table.item")->path()));
}

TEST_P(RenameProperty, WorksInATable) {
    EXPECT_TRUE(property(L"table.item")->rename(L"new item"));
    EXPECT_TRUE(property(L"table.inner")->rename(L"new inner"));
    EXPECT_FALSE(property(L"table.item"));
    EXPECT_EQ(L"new item", text(property(L"table.new item")->tag()));
    EXPECT_EQ(L"new inner", text(property(L"table.new inner")->tag()));
}

TEST_P(RenameProperty, KeepsTheOldTagOnTheSameObject) {
    const auto renamed = property(L"table.item");
    const auto inner = property(L"table.inner");
    EXPECT_TRUE(renamed->rename(L"new"));
    EXPECT_TRUE(property(L"table")->rename(L"new table"));
    EXPECT_EQ(L"item", text(renamed->tag()));
    EXPECT_EQ(L"top.new table.item", text(renamed->path()));
    EXPECT_EQ(L"top.new table.inner", text(inner->path()));
}

TEST_P(RenameProperty, GoesByTheOldNameASecondTime) {
    const auto renamed = property(L"number");
    EXPECT_TRUE(renamed->rename(L"new"));
    EXPECT_FALSE(renamed->rename(L"newer"));
    EXPECT_TRUE(property(L"new")->rename(L"newer"));
}

TEST_P(RenameProperty, DoesNotReachTheObjectsOverItsParent) {
    const auto table = property(L"table");
    property(L"table.item")->rename(L"new");
    EXPECT_TRUE(asTable(table).lookup(L"item"));
    EXPECT_FALSE(asTable(table).lookup(L"new"));
    EXPECT_EQ(L"new", text(asTable(table).lookup(L"item")->tag()));
}

TEST_P(RenameProperty, IsRefusedWhereASiblingBearsTheName) {
    const unsigned int number = stored::children(store(), offsetOfTop()).at(0);
    const std::string before = stored::bytes(store(), number);
    EXPECT_FALSE(property(L"number")->rename(L"table"));
    EXPECT_FALSE(property(L"number")->rename(L"number"));
    EXPECT_FALSE(property(L"table.item")->rename(L"inner"));
    EXPECT_EQ(before, stored::bytes(store(), number));
    EXPECT_TRUE(property(L"table.item"));
}

TEST_P(RenameProperty, IsRefusedUnderTheRoot) {
    // A property at the top is reached by no path; here one stays listed where it was and names the root as its owner.
    stored::putWord(store(), stored::children(store(), offsetOfTop()).at(0), stored::kParent, 0);
    EXPECT_FALSE(property(L"number")->rename(L"new"));
    EXPECT_TRUE(property(L"number"));
    EXPECT_EQ(L"number", text(property(L"number")->path()));
}

TEST_P(RenameProperty, IsRefusedForWhatCameFromASchema) {
    property(L"number")->on(0x02);
    property(L"table.item")->on(0x02);
    EXPECT_FALSE(property(L"number")->rename(L"new"));
    EXPECT_FALSE(property(L"table.item")->rename(L"new"));
    property(L"number")->off(0x02);
    EXPECT_TRUE(property(L"number")->rename(L"new"));
}

TEST_P(RenameProperty, TakesADotForACharacter) {
    EXPECT_TRUE(property(L"table.item")->rename(L"a.b"));
    EXPECT_FALSE(property(L"table.a.b"));
    EXPECT_EQ(L"a.b", text(asTable(property(L"table")).at(0)->tag()));
}

TEST_P(RenameProperty, KeepsValuesUnitsAndTexts) {
    {
        const auto number = top()->create(L"double", metadata::kStruct);
        number->schema(L"pose");
        number->valuelocale(L"en-us");
        number->set("abcdef", 0, 6);
        number->container()->describe(L"de", L"text");
        EXPECT_TRUE(number->container()->rename(L"a name that is longer than it was"));
    }
    const auto found = property(L"a name that is longer than it was");
    EXPECT_EQ(L"pose", text(asPrimitive(found).schema()));
    EXPECT_EQ(L"en-us", text(asPrimitive(found).valuelocale()));
    EXPECT_EQ((std::vector<char>{'a', 'b', 'c', 'd', 'e', 'f'}), values<char>(asPrimitive(found)));
    EXPECT_EQ(L"text", text(found->localize(L"de")));
}

TEST_P(RenameProperty, LeavesValuesToAnObjectThatIsOpen) {
    const auto open = property(L"number");
    const int numbers[] = {1, 2};
    asPrimitive(open).set(numbers, 0, 2);
    property(L"number")->rename(L"new");
    EXPECT_EQ((std::vector<int>{1, 2}), values<int>(asPrimitive(open)));
    const int more = 3;
    EXPECT_TRUE(asPrimitive(open).set(&more, 2, 1));
    EXPECT_EQ((std::vector<int>{1, 2, 3}), values<int>(asPrimitive(property(L"new"))));
}

}  // namespace
