#include "record/Container.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// The elements of nodes, groups and links.
class ContainerElement : public XmlTest {
protected:
    using tType = Structural::Container::tType;
};
LVP_ON_EACH_STORE(ContainerElement);

TEST_P(ContainerElement, MakesTheTypeThatItNames) {
    ASSERT_EQ(read("<root name='r'><node name='a'/><group name='b'/><link name='c'/></root>"), kNone);
    EXPECT_EQ(Structural::Container(store(), at(L"a"), true).type(), tType::kNode);
    EXPECT_EQ(Structural::Container(store(), at(L"b"), true).type(), tType::kGroup);
    EXPECT_EQ(Structural::Container(store(), at(L"c"), true).type(), tType::kLink);
}

TEST_P(ContainerElement, IsMatchedInAnyCase) {
    EXPECT_EQ(rewritten("<GROUP name='g'><Node name='n'/><lInK name='l'/></GROUP>"),
              "<group name=\"g\"><node name=\"n\"/><link name=\"l\"/></group>");
}

TEST_P(ContainerElement, KeepsTheTargetOfALinkAlone) {
    ASSERT_EQ(read("<root name='r'><node name='a' to='x'/><group name='b' to='x'/><link name='c' to='x.y'/>"
                   "<link name='d'/><link name='e' to=''/></root>"),
              kNone);
    EXPECT_EQ(Structural::Container(store(), at(L"a"), true).info(), nullptr);
    EXPECT_EQ(Structural::Container(store(), at(L"b"), true).info(), nullptr);
    EXPECT_STREQ(Structural::Container(store(), at(L"c"), true).info(), L"x.y");
    EXPECT_EQ(written(),
              "<root version=\"0\" name=\"r\"><node name=\"a\"/><group name=\"b\"/><link name=\"c\" to=\"x.y\"/>"
              "<link name=\"d\"/><link name=\"e\"/></root>");
}

TEST_P(ContainerElement, DoesNotWriteTheTextOfWhatIsNoLink) {
    Structural::Container group(store(), tType::kGroup, L"g");
    group.info(L"x");
    EXPECT_EQ(written(), "<group name=\"g\"/>");
}

TEST_P(ContainerElement, IsOptionalOnlyForTheExactWord) {
    const std::pair<const char*, int> kWords[] = {{"true", 1}, {"truex", 0}, {"t", 0}, {"True", 0},
                                                  {"1", 0},    {" true", 0}, {"", 0},  {"false", 0}};
    for (const char* element : {"node", "group", "link", "table"}) {
        for (const auto& [word, flags] : kWords) {
            const auto fresh = GetParam().make();
            readInto(fresh.get(), std::string("<") + element + " name='a' optional='" + word + "'/>");
            EXPECT_EQ(stored::byte(fresh.get(), 0, stored::kFlags), flags) << element << ' ' << word;
        }
    }
}

TEST_P(ContainerElement, ForgetsInTheDocumentThatItIsOptional) {
    EXPECT_EQ(rewritten("<group name='g' optional='true'><table name='t' optional='true'/></group>"),
              "<group name=\"g\"><table name=\"t\"/></group>");
}

TEST_P(ContainerElement, IgnoresAClassWithoutALocator) {
    EXPECT_EQ(rewritten("<group name='g' class='Mechanical'/>"), "<group name=\"g\"/>");
    EXPECT_EQ(Structural::Container(store(), 0, true).base(), nullptr);
}

TEST_P(ContainerElement, WritesTheSchemasThatItHas) {
    using namespace lumivard::platform::data;
    Structural::Container link(store(), tType::kLink, L"l");
    link.info(L"x");
    Record::Container record(store(), link.offset());
    record.arrays(Record::Container::kBase, reinterpret_cast<const char*>(L"A;B"), 16);
    EXPECT_EQ(written(), "<link name=\"l\" class=\"A;B\" to=\"x\"/>");
}

TEST_P(ContainerElement, WritesItsNamesBeforeItsChildren) {
    EXPECT_EQ(rewritten("<group name='g'><int32 name='i'>1</int32><name>a</name><name locale='de'>b</name></group>"),
              "<group name=\"g\"><name locale=\"en-us\">a</name><name locale=\"de\">b</name>"
              "<int32 name=\"i\">1</int32></group>");
}

TEST_P(ContainerElement, WritesItsChildrenInTheOrderOfTheDocument) {
    const std::string document =
        "<group name=\"g\"><int32 name=\"z\">1</int32><group name=\"y\"/><table name=\"x\"/><int32 name=\"a\">2</int32>"
        "<link name=\"m\"/></group>";
    EXPECT_EQ(rewritten(document), document);
}

TEST_P(ContainerElement, RefusesAContainerOfATakenName) {
    EXPECT_EQ(read("<group name='g'><node name='a'/><node name='a'/><link name='a'/><group name='b'/></group>"),
              (tMessages{"node : could not nest the element", "link : could not nest the element"}));
    EXPECT_EQ(written(), "<group name=\"g\"><node name=\"a\"/><group name=\"b\"/></group>");
}

TEST_P(ContainerElement, IsStuckAfterAValWithAllOfItsName) {
    EXPECT_EQ(read("<root name='r'>"
                   "<node name='a'><val>x</val><name>n</name></node>"
                   "<node name='b'><name>n</name><val/></node>"
                   "<group name='c'><name>n</name></group></root>"),
              (tMessages{"name : unknown element, skipping", "name : unknown element, skipping",
                         "val : unknown element, skipping"}));
    EXPECT_EQ(written(),
              "<root version=\"0\" name=\"r\"><node name=\"a\"/><node name=\"b\"/>"
              "<group name=\"c\"><name locale=\"en-us\">n</name></group></root>");
}

TEST_P(ContainerElement, IsNoLongerStuckInTheNextDocument) {
    read("<node name='a'><val/></node>");
    EXPECT_EQ(read("<node name='a'><name>n</name></node>"), kNone);
}

}  // namespace
