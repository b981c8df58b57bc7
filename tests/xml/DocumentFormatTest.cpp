#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// A document with everything in it that can be written without schemas.
class DocumentFormat : public XmlTest {
protected:
    static std::string sample(const std::string& structElement) {
        return "<root version=\"3\" name=\"sample\">\n"
               "  <name locale=\"en-us\">Sample</name>\n"
               "  <group name=\"geometry\" class=\"\">\n"
               "    <name locale=\"fr-fr\">Geometrie</name>\n"
               "    <scalar name=\"length\" units=\"Meter\">2.5</scalar>\n"
               "    <vector3 name=\"origin\" units=\"Meter\">0 0 1.5</vector3>\n"
               "    <matrix2x2 name=\"turn\">1 0 0 1</matrix2x2>\n"
               "    <bool name=\"visible\">1</bool>\n"
               "    <int32 name=\"counts\">4 8 15</int32>\n"
               "    <string name=\"title\" locale=\"en-us\">\n"
               "      <name locale=\"de-de\">Titel</name>\n"
               "      <val>First</val>\n"
               "      <val>Second</val>\n"
               "    </string>\n"
               "    <binary name=\"blob\">SGVsbG8=</binary>\n"
               "    <binary name=\"image\" uri=\"images/front.png\"/>\n" +
               structElement +
               "  </group>\n"
               "  <table name=\"materials\" class=\"MaterialSchema\">\n"
               "    <default unit=\"Meter\" type=\"scalar\"/>\n"
               "    <name locale=\"en-us\">Materials</name>\n"
               "    <double name=\"density\">7.85</double>\n"
               "  </table>\n"
               "  <link name=\"shortcut\" class=\"\" to=\"geometry.length\"/>\n"
               "</root>\n";
    }

    static constexpr const char* kWritten =
        "<root version=\"3\" name=\"sample\">"
        "<name locale=\"en-us\">Sample</name>"
        "<group name=\"geometry\">"
        "<name locale=\"fr-fr\">Geometrie</name>"
        "<scalar name=\"length\" units=\"Meter\">2.5</scalar>"
        "<vector3 name=\"origin\" units=\"Meter\">0 0 1.5</vector3>"
        "<matrix2x2 name=\"turn\">1 0 0 1</matrix2x2>"
        "<bool name=\"visible\">1</bool>"
        "<int32 name=\"counts\">4 8 15</int32>"
        "<string name=\"title\" locale=\"en-us\"><name locale=\"de-de\">Titel</name><val>First</val><val>Second</val>"
        "</string>"
        "<binary name=\"blob\">SGVsbG8=</binary>"
        "<binary name=\"image\" uri=\"images/front.png\"/>"
        "</group>"
        "<table name=\"materials\">"
        "<default unit=\"Meter\" type=\"scalar\"/>"
        "<name locale=\"en-us\">Materials</name>"
        "<double name=\"density\">7.85</double>"
        "</table>"
        "<link name=\"shortcut\" to=\"geometry.length\"/>"
        "</root>";
};
LVP_ON_EACH_STORE(DocumentFormat);

TEST_P(DocumentFormat, IsReadWholeAndWrittenInItsOrder) {
    EXPECT_EQ(rewritten(sample("")), kWritten);
    EXPECT_EQ(store()->version(), 3u);
    EXPECT_EQ(text(at(L"geometry.title")), L"First|Second|");
    EXPECT_EQ(values<double>(at(L"geometry.origin")), (std::vector<double>{0, 0, 1.5}));
}

TEST_P(DocumentFormat, LosesAStructAloneWithoutALocator) {
    EXPECT_EQ(read(sample("<struct name=\"pose\" type=\"PoseSchema\">1 2 3 4 5 6</struct>")),
              tMessages{"struct : missing locator to resolve the 'type' attribute"});
    EXPECT_EQ(written(), kWritten);
}

TEST_P(DocumentFormat, IsTheSameAfterASecondReading) {
    read(sample(""));
    EXPECT_EQ(readInto(other(), written()), kNone);
    EXPECT_EQ(writtenFrom(other()), kWritten);
}

TEST_P(DocumentFormat, ForgetsTheDimensionOfNumbersThatAreNotThere) {
    EXPECT_EQ(rewritten("<int32 name='a' dim='2'/>"), "<int32 name=\"a\">0 0</int32>");
}

TEST_P(DocumentFormat, GainsAnEmptyTextOverNoText) {
    {
        const Design::Primitive text(store(), metadata::kString, L"s");
        EXPECT_EQ(text.dimension(), 0u);
    }
    ASSERT_EQ(readInto(other(), written()), kNone);
    EXPECT_EQ(textOf(other(), 0), L"|");
    EXPECT_EQ(writtenFrom(other()), written());
}

TEST_P(DocumentFormat, KeepsNoNumbersAsNoNumbers) {
    ASSERT_EQ(read("<int32 name='a'/>"), kNone);
    ASSERT_EQ(readInto(other(), written()), kNone);
    EXPECT_EQ(Design::Primitive(other(), 0).dimension(), 0u);
}

TEST_P(DocumentFormat, LosesDigitsOfReals) {
    EXPECT_EQ(rewritten("<double name='a'>1234567.891 0.123456789</double>"),
              "<double name=\"a\">1234568 0.1234568</double>");
}

}  // namespace
