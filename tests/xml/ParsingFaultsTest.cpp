#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// What is reported, in which words and where; and that nothing more is lost than the element and what is in it.
class ParsingFaults : public XmlTest {
protected:
    std::vector<Report> reports(const std::string& document) {
        Reporter reporter;
        lumivard::platform::core::io::MemoryReader reader(document);
        IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, &reporter);
        EXPECT_EQ(reporter.broken, kNone);
        return reporter.reports;
    }
};
LVP_ON_EACH_STORE(ParsingFaults);

TEST_P(ParsingFaults, AreToldInTheseWords) {
    const struct {
        const char* document;
        tMessages messages;
    } kFaults[] = {
        {"<unknown/>", {"unknown : unknown element, skipping"}},
        {"<root/>", {"root : missing mandatory 'id' attribute"}},
        {"<table class='c'/>", {"table : missing mandatory 'id' attribute"}},
        {"<node/>", {"node : missing mandatory 'id' attribute"}},
        {"<group/>", {"group : missing mandatory 'id' attribute"}},
        {"<link to='a'/>", {"link : missing mandatory 'id' attribute"}},
        {"<int32>1</int32>", {"int32 : missing mandatory 'id' attribute"}},
        {"<struct/>", {"struct : missing mandatory 'id' attribute"}},
        {"<struct type='S'/>", {"struct : missing mandatory 'id' attribute"}},
        {"<struct name='a'/>", {"struct : missing mandatory 'type' attribute for <struct>"}},
        {"<struct name='a' type='S'/>", {"struct : missing locator to resolve the 'type' attribute"}},
        {"<root name='r'><root name='s'/></root>", {"root : could not nest the element"}},
        {"<root name='r'><int32 name='a'/></root>", {"int32 : could not nest the element"}},
        {"<table name='t'><node name='a'/></table>", {"node : could not nest the element"}},
        {"<group name='g'><name><val/></name></group>", {"val : cannot nest anything under a sub-element"}},
        {"<group name='g'><name><group name='h'/></name></group>",
         {"group : cannot nest anything under a sub-element"}},
        {"<group name='g'><name><x/></name></group>", {"x : cannot nest anything under a sub-element"}},
        {"<string name='s'><val><val/></val></string>", {"val : cannot nest anything under a sub-element"}},
        {"<table name='t'><val/></table>", {"val : unknown element, skipping"}},
        {"<group name='g'><default unit='Meter' type='scalar'/></group>", {"default : unknown element, skipping"}},
        {"<table name='t'><default unit='Meter'/></table>", {"default : unknown element, skipping"}},
        {"<table name='t'><default type='scalar'/></table>", {"default : unknown element, skipping"}},
        {"<name/>", {"name : unknown element, skipping"}},
        {"<val/>", {"val : unknown element, skipping"}},
        {"<vec3 name='a'/>", {"vec3 : unknown element, skipping"}},
        {"<mtx2x2 name='a'/>", {"mtx2x2 : unknown element, skipping"}},
    };
    for (const auto& [document, messages] : kFaults) EXPECT_EQ(read(document), messages) << document;
}

TEST_P(ParsingFaults, NameTheElementAsItIsSpelledOrFoldedByTheirKind) {
    EXPECT_EQ(read("<GROUP/>"), tMessages{"GROUP : missing mandatory 'id' attribute"});
    EXPECT_EQ(read("<Unknown/>"), tMessages{"unknown : unknown element, skipping"});
    EXPECT_EQ(read("<root name='r'><Int32 name='a'/></root>"), tMessages{"int32 : could not nest the element"});
    EXPECT_EQ(read("<group name='g'><name><VAL/></name></group>"),
              tMessages{"VAL : cannot nest anything under a sub-element"});
}

TEST_P(ParsingFaults, TellALongNameWholeOrCutByTheirKind) {
    const std::string name(300, 'X');
    EXPECT_EQ(read("<" + name + "/>"), tMessages{std::string(256, 'x') + " : unknown element, skipping"});
    EXPECT_EQ(read("<group name='g'><name><" + name + "/></name></group>"),
              tMessages{name + " : cannot nest anything under a sub-element"});
}

TEST_P(ParsingFaults, CutALongNameBetweenBytesAndMarkWhatIsBroken) {
    const std::string name = std::string(255, 'x') + "\xc3\xa4";
    EXPECT_EQ(read("<" + name + "/>"), tMessages{std::string(255, 'x') + "\xef\xbf\xbd : unknown element, skipping"});
}

TEST_P(ParsingFaults, TellWhereTheStartTagIs) {
    EXPECT_EQ(reports("<root name='r'>\n"
                      "  <unknown>\n"
                      "    <group/>\n"
                      "  </unknown>\n"
                      "\t<int32 name='a'/> <group\n"
                      "/></root>"),
              (std::vector<Report>{{"unknown : unknown element, skipping", 2, 3},
                                   {"int32 : could not nest the element", 5, 2},
                                   {"group : missing mandatory 'id' attribute", 5, 20}}));
}

TEST_P(ParsingFaults, CountColumnsInCharacters) {
    EXPECT_EQ(reports("<group name='\xc3\xa4\xe2\x82\xac'><x/></group>"),
              (std::vector<Report>{{"x : unknown element, skipping", 1, 18}}));
}

TEST_P(ParsingFaults, CostTheElementWithAllThatIsInItAndNothingMore) {
    EXPECT_EQ(read("<root name='r'>"
                   "<group name='a'/>"
                   "<unknown><group name='b'><group name='c'/></group><group name='d'/></unknown>"
                   "<group name='e'/>"
                   "<group><group name='f'/></group>"
                   "<group name='g'/>"
                   "<group name='a'><group name='h'/></group>"
                   "<group name='i'/>"
                   "</root>"),
              (tMessages{"unknown : unknown element, skipping", "group : missing mandatory 'id' attribute",
                         "group : could not nest the element"}));
    EXPECT_EQ(
        written(),
        "<root version=\"0\" name=\"r\"><group name=\"a\"/><group name=\"e\"/><group name=\"g\"/><group name=\"i\"/>"
        "</root>");
}

TEST_P(ParsingFaults, AreNotToldInsideWhatIsSkipped) {
    EXPECT_EQ(read("<unknown><other/><root/><x><y/></x></unknown>"), tMessages{"unknown : unknown element, skipping"});
}

TEST_P(ParsingFaults, SkipJustTheSameWithoutAReporter) {
    lumivard::platform::core::io::MemoryReader reader(
        "<root name='r'><x><group name='a'/></x><group name='b'/></root>");
    IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, nullptr);
    EXPECT_EQ(written(), "<root version=\"0\" name=\"r\"><group name=\"b\"/></root>");
}

TEST_P(ParsingFaults, ReachAReporterThatKnowsNothingOfPlaces) {
    class Plain : public IXMLFrontEnd::IErrorReporter {
    public:
        void report(const WideString& message) override { last = message.string(); }
        std::string last;
    } reporter;
    lumivard::platform::core::io::MemoryReader reader("<x/><");
    IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, &reporter);
    EXPECT_EQ(reporter.last, "x : unknown element, skipping");
}

TEST_P(ParsingFaults, OfOneElementDoNotStickToTheNext) {
    EXPECT_EQ(
        read("<root name='r'><group/><group name='a'/><struct/><group name='b'><struct name='c'/></group></root>"),
        (tMessages{"group : missing mandatory 'id' attribute", "struct : missing mandatory 'id' attribute",
                   "struct : missing mandatory 'type' attribute for <struct>"}));
}

TEST_P(ParsingFaults, LeaveTheRecordOfARefusedElementAttachedToNothing) {
    ASSERT_EQ(read("<root name='r'><int32 name='a'>5</int32></root>"), tMessages{"int32 : could not nest the element"});
    EXPECT_EQ(stored::word(store(), 0, stored::kChildren), kNoItem);
    const unsigned int refused = GetParam().name == std::string("odd") ? 16 : 1;
    const Design::Primitive primitive(store(), refused);
    EXPECT_STREQ(primitive.tag(), L"a");
    EXPECT_EQ(primitive.dimension(), 0u) << "its content was skipped";
    EXPECT_EQ(stored::word(store(), refused, stored::kParent), kNoItem);
}

TEST_P(ParsingFaults, AreForgivenInTheNamesOfAttributesAndTheirOrder) {
    EXPECT_EQ(rewritten("<group unknown='1' to='x' name='a' units='Meter' xml:lang='en'/>"), "<group name=\"a\"/>");
}

TEST_P(ParsingFaults, IncludeAttributesOfAnotherCase) {
    EXPECT_EQ(read("<STRING NAME='a'/>"), tMessages{"STRING : missing mandatory 'id' attribute"});
}

}  // namespace
