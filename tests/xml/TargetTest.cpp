#include "tests/xml/ForeignContainer.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::MemoryReader;
using lumivard::platform::data::structure::IContainer;
using lumivard::platform::data::structure::IContainerFrontEnd;

/// Documents that fill a container which is there.
class Target : public XmlTest {
protected:
    Target() : top(IContainerFrontEnd::toplevel(store(), L"top")) {}

    tMessages fill(IContainer* container, const std::string& document) {
        Reporter reporter;
        MemoryReader reader(document);
        IXMLFrontEnd::parse(container, &reader, nullptr, nullptr, &reporter);
        EXPECT_EQ(reporter.broken, kNone);
        return reporter.messages();
    }
    tMessages fill(const std::string& document) { return fill(top.get(), document); }

    std::string writtenTop() { return written(stored::children(store(), 0).at(0)); }

    SharedPtr<IContainer> top;
};
LVP_ON_EACH_STORE(Target);

TEST_P(Target, TakesWhatStandsInTheTopElement) {
    EXPECT_EQ(fill("<group name='x'><int32 name='a'>1</int32><group name='b'/></group>"), kNone);
    EXPECT_EQ(writtenTop(), "<group name=\"top\"><int32 name=\"a\">1</int32><group name=\"b\"/></group>");
}

TEST_P(Target, KnowsAtOnceWhatWasAdded) {
    fill("<group name='x'><int32 name='a'>1</int32></group>");
    EXPECT_TRUE(top->has(L"a"));
}

TEST_P(Target, IsFilledWhateverTheTopElementIs) {
    const char* kTops[] = {"node", "group", "link", "table", "root", "int32", "vector3", "string"};
    for (const char* element : kTops) {
        const std::string name = element;
        EXPECT_EQ(fill("<" + name + " name='x'><double name='" + name + "'>1</double></" + name + ">"), kNone) << name;
        EXPECT_TRUE(top->has(std::wstring(name.begin(), name.end()).c_str())) << name;
    }
}

TEST_P(Target, TakesTheRulesOfItsOwnType) {
    EXPECT_EQ(fill("<table name='x'><node name='a'/><val/></table>"), kNone) << "no table would take them";
    EXPECT_EQ(fill("<root name='x'><root name='y'/><int32 name='i'/></root>"),
              tMessages{"root : could not nest the element"});
}

TEST_P(Target, ThatIsStuckIsTheElementOfItsOwnType) {
    auto node = top->create(IContainer::kNode, L"n", nullptr);
    EXPECT_EQ(fill(node.get(),
                   "<group name='x'><val/><group name='a'><name>n</name></group>"
                   "<node name='b'><name>n</name></node></group>"),
              tMessages{"name : unknown element, skipping"});
}

TEST_P(Target, KeepsItsNameAndItsFlags) {
    fill("<group name='x' optional='true' class='c'/>");
    EXPECT_EQ(writtenTop(), "<group name=\"top\"/>");
    EXPECT_EQ(stored::byte(store(), stored::children(store(), 0).at(0), stored::kFlags), 0);
}

TEST_P(Target, SetsTheVersionOfTheStoreWhereTheTopElementIsARoot) {
    fill("<root name='x' version='7'/>");
    EXPECT_EQ(store()->version(), 7u);
}

TEST_P(Target, TakesNamesWhichAreSavedWhenItIsClosed) {
    EXPECT_EQ(fill("<group name='x'><name locale='de'>Oben</name></group>"), kNone);
    EXPECT_EQ(writtenTop(), "<group name=\"top\"/>");
    top.reset();
    EXPECT_EQ(writtenTop(), "<group name=\"top\"><name locale=\"de\">Oben</name></group>");
}

TEST_P(Target, LeavesOutTheDocumentOfATopElementThatIsRefused) {
    EXPECT_EQ(fill("<group><int32 name='a'>1</int32></group>"), tMessages{"group : missing mandatory 'id' attribute"});
    EXPECT_EQ(fill("<unknown name='x'><int32 name='a'>1</int32></unknown>"),
              tMessages{"unknown : unknown element, skipping"});
    EXPECT_EQ(fill("<struct name='x' type='S'><int32 name='a'>1</int32></struct>"),
              tMessages{"struct : missing locator to resolve the 'type' attribute"});
    EXPECT_TRUE(top->empty());
}

TEST_P(Target, MergesWithWhatItHolds) {
    fill("<group name='x'><int32 name='a'>1 2</int32></group>");
    EXPECT_EQ(fill("<group name='x'><int32 name='a'>3</int32><double name='a'/></group>"),
              tMessages{"double : could not nest the element"});
    EXPECT_EQ(writtenTop(), "<group name=\"top\"><int32 name=\"a\">3 2</int32></group>");
}

TEST_P(Target, StaysOpen) {
    fill("<group name='x'/>");
    EXPECT_EQ(stored::refs(store(), stored::children(store(), 0).at(0)), 1u);
    EXPECT_EQ(top->tag().string(), "top");
}

TEST_P(Target, OfATypeThatDoesNotExistIsFilledAsAnyContainer) {
    top->create(static_cast<IContainer::tType>(7), L"odd", nullptr);
    const auto odd = IContainerFrontEnd::find(store(), L"top.odd");
    ASSERT_TRUE(odd);
    EXPECT_EQ(fill(odd.get(), "<Group name='x'><int32 name='a'>1</int32></Group>"), kNone);
    EXPECT_TRUE(odd->has(L"a"));
}

TEST_P(Target, WhoseRecordIsNoContainerAnyMoreCannotBeFilled) {
    stored::putByte(store(), stored::children(store(), 0).at(0), 0, 2);
    EXPECT_EQ(fill("<group name='x'><int32 name='a'>1</int32></group>"), tMessages{"group : could not..."});
    stored::putByte(store(), stored::children(store(), 0).at(0), 0, 4);
    EXPECT_TRUE(top->empty());
}

TEST_P(Target, ThatIsNullOrNotOurOwnIsLeftAlone) {
    class Reader : public lumivard::platform::core::io::IDataReader {
    public:
        bool open() override { return ++opened; }
        void close() override {}
        unsigned long read(void*, unsigned long) override { return 0; }
        int opened = 0;
    } reader;
    Reporter reporter;
    ForeignContainer foreign(store());
    IXMLFrontEnd::parse(&foreign, &reader, nullptr, nullptr, &reporter);
    IXMLFrontEnd::parse(static_cast<IContainer*>(nullptr), &reader, nullptr, nullptr, &reporter);
    EXPECT_EQ(reader.opened, 0);
    EXPECT_EQ(reporter.broken, kNone);
}

}  // namespace
