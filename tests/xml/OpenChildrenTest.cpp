#include "xml/OpenChildren.h"

#include "tests/xml/XmlFixture.h"
#include "xml/WholePrimitive.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::OpenChildren;

class OpenChildrenOfATable : public XmlTest {
protected:
    unsigned int make(const std::wstring& name) {
        return lumivard::platform::data::create(
            store(), {metadata::kInt8, units::kNoUnit, table.offset(), name, nullptr, "x"}, _scratch);
    }
    void add(OpenChildren& children, const std::wstring& name) {
        EXPECT_TRUE(children.claim(name.c_str()));
        offsets.push_back(make(name));
        children.add(offsets.back());
    }

    Design::Table table{store(), L"t"};
    std::vector<unsigned int> offsets;

private:
    std::vector<char> _scratch;
};
LVP_ON_EACH_STORE(OpenChildrenOfATable);

TEST_P(OpenChildrenOfATable, StandInItsListInTheirOrder) {
    OpenChildren children(&table, true);
    for (const wchar_t* name : {L"b", L"a", L"c"}) add(children, name);
    EXPECT_EQ(stored::children(store(), table.offset()), offsets);
    EXPECT_EQ(table.items(), 0u) << "its index does not know yet";
}

TEST_P(OpenChildrenOfATable, AreInItsIndexOnceItIsSettled) {
    OpenChildren children(&table, true);
    add(children, L"a");
    EXPECT_EQ(&children.settle(), &table);
    EXPECT_EQ(table.find(L"a"), offsets.at(0));
    add(children, L"b");
    EXPECT_EQ(table.find(L"b"), offsets.at(1));
    EXPECT_EQ(stored::children(store(), table.offset()), offsets);
}

TEST_P(OpenChildrenOfATable, HaveDifferentNames) {
    OpenChildren children(&table, true);
    add(children, L"a");
    EXPECT_FALSE(children.claim(L"a"));
    EXPECT_FALSE(children.claim(L"a"));
    add(children, L"b");
    EXPECT_FALSE(children.claim(L"b"));
}

TEST_P(OpenChildrenOfATable, WhoseIndexIsUsedFromTheBeginningAreThere) {
    table.add(make(L"a"));
    OpenChildren children(&table, false);
    EXPECT_FALSE(children.claim(L"a"));
    add(children, L"b");
    EXPECT_EQ(table.find(L"b"), offsets.at(0));
}

TEST_P(OpenChildrenOfATable, GoIntoAListThatAnotherObjectHasMade) {
    OpenChildren children(&table, true);
    {
        Design::Table other(store(), table.offset(), false);
        offsets.push_back(make(L"other"));
        other.add(offsets.back());
    }
    add(children, L"a");
    EXPECT_EQ(stored::children(store(), table.offset()), offsets);
}

TEST_P(OpenChildrenOfATable, AreAdoptedWithTheSetAsTheirParent) {
    for (const bool isNew : {true, false}) {
        Design::Table parent(store(), L"p");
        Design::Table child(store(), L"c");
        OpenChildren children(&parent, isNew);
        EXPECT_TRUE(children.claim(L"c"));
        children.adopt(child.offset());
        EXPECT_FALSE(children.claim(L"c"));
        EXPECT_EQ(parent.find(L"c"), child.offset());
        EXPECT_EQ(stored::children(store(), parent.offset()), std::vector<unsigned int>{child.offset()});
        EXPECT_EQ(stored::word(store(), child.offset(), stored::kParent), parent.offset());
    }
}

TEST_P(OpenChildrenOfATable, ThatWereOnlyClaimedAreNotThere) {
    OpenChildren children(&table, true);
    EXPECT_TRUE(children.claim(L"a"));
    EXPECT_EQ(children.settle().items(), 0u);
    EXPECT_TRUE(children.claim(L"a"));
}

}  // namespace
