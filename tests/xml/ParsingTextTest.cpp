#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// Which text reaches which value.
class ParsingText : public XmlTest {
protected:
    /// The stored text of a document that is one string, whatever was reported.
    std::wstring stringOf(const std::string& content) {
        read("<group name='g'><string name='s'>" + content + "</string></group>");
        return text(at(L"s"));
    }
};
LVP_ON_EACH_STORE(ParsingText);

/// The text of a first document alone.
#define EXPECT_STRING(content, expected) EXPECT_EQ(stringOf(content), expected)

TEST_P(ParsingText, IsTakenWithoutTrimming) {
    EXPECT_STRING("  a\n b\t", L"  a\n b\t|");
}

TEST_P(ParsingText, IsJoinedFromItsPieces) {
    EXPECT_STRING("a&amp;b&#228;<![CDATA[<c>]]><!-- no -->d", L"a&b\xe4<c>d|");
}

TEST_P(ParsingText, OfAnEmptyElementIsTheEmptyText) {
    EXPECT_STRING("", L"|");
}

TEST_P(ParsingText, BeforeAnUnknownElementIsLost) {
    EXPECT_STRING("a<x/>b", L"b|");
    EXPECT_EQ(written(), "<group name=\"g\"><string name=\"s\">b</string></group>");
}

TEST_P(ParsingText, OfASkippedElementReachesTheValueAroundIt) {
    EXPECT_STRING("<nonsense>x</nonsense>", L"x|");
}

TEST_P(ParsingText, OfASkippedElementIsJoinedWithWhatFollows) {
    EXPECT_STRING("<nonsense>x<y>z</y></nonsense>b", L"xzb|");
}

TEST_P(ParsingText, OfASkippedElementDoesNotReachTheNextElement) {
    read("<group name='g'><x>lost</x><string name='s'/></group>");
    EXPECT_EQ(text(at(L"s")), L"|");
}

TEST_P(ParsingText, OfAnElementIsLostOnceItHadASubElement) {
    EXPECT_STRING("<name>n</name>x", L"");
    EXPECT_EQ(written(), "<group name=\"g\"><string name=\"s\"><name locale=\"en-us\">n</name></string></group>");
}

TEST_P(ParsingText, BeforeAValIsLost) {
    EXPECT_STRING("x<val>y</val>z", L"y|");
}

TEST_P(ParsingText, OfTheNextElementCountsAgainAfterOneWithASubElement) {
    read("<group name='g'><string name='s'><val>a</val></string><string name='t'>b</string></group>");
    EXPECT_EQ(text(at(L"s")), L"a|");
    EXPECT_EQ(text(at(L"t")), L"b|");
}

TEST_P(ParsingText, OfAValOutlivesWhatIsRefusedInside) {
    EXPECT_STRING("<val>a<val>b</val>c</val>", L"abc|");
}

TEST_P(ParsingText, OfANameOutlivesWhatIsRefusedInside) {
    read("<group name='g'><name>a<x>b</x>c</name></group>");
    EXPECT_EQ(written(), "<group name=\"g\"><name locale=\"en-us\">abc</name></group>");
}

TEST_P(ParsingText, DoesNotCountAfterASubElementThatWasRefused) {
    EXPECT_STRING("<name/><unknown/>x", L"");
}

TEST_P(ParsingText, CountsBehindARefusedElementWhenNoSubElementWasTaken) {
    EXPECT_STRING("<int32 name='a'/>x", L"x|");
}

TEST_P(ParsingText, BetweenItemsIsNothing) {
    EXPECT_EQ(rewritten("<group name='g'> a <int32 name='i'>1</int32> b </group>"),
              "<group name=\"g\"><int32 name=\"i\">1</int32></group>");
}

TEST_P(ParsingText, InANameIsTheLocalizedText) {
    EXPECT_EQ(rewritten("<group name='g'><name locale='de-de'>  Gr\xc3\xbc\xc3\x9f\n</name></group>"),
              "<group name=\"g\"><name locale=\"de-de\">  Gr\xc3\xbc\xc3\x9f\n</name></group>");
}

TEST_P(ParsingText, OfAnEmptyNameIsAnEmptyText) {
    EXPECT_EQ(rewritten("<group name='g'><name/><name locale=''>x</name></group>"),
              "<group name=\"g\"><name locale=\"en-us\"/><name locale=\"\">x</name></group>");
}

TEST_P(ParsingText, OfALocaleThatComesTwiceIsTheLast) {
    EXPECT_EQ(
        rewritten("<group name='g'><name>a</name><name locale='de'>b</name><name locale='en-us'>c</name></group>"),
        "<group name=\"g\"><name locale=\"en-us\">c</name><name locale=\"de\">b</name></group>");
}

TEST_P(ParsingText, KeepsTheReservedTextsOfTheMaps) {
    const std::string document =
        "<group name=\"$$$$$_____empty_key\"><name locale=\"$$$$$_____deleted_key\">x</name>"
        "<name locale=\"$$$$$_____empty_key\">y</name></group>";
    EXPECT_EQ(rewritten(document), document);
}

}  // namespace
