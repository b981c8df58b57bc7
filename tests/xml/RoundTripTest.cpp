#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::FileReader;

/// The documents that come with the project.
class RoundTrip : public XmlTest {
protected:
    /// Reads a document of the examples into the store.
    void readExample(const char* name) {
        Reporter reporter;
        FileReader reader(std::string(LVP_SOURCE_DIR "/examples/data/") + name);
        IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, &reporter);
        EXPECT_EQ(reporter.messages(), kNone);
        EXPECT_EQ(reporter.broken, kNone);
    }
};
LVP_ON_EACH_STORE(RoundTrip);

std::size_t occurrences(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto found = text.find(part); found != std::string::npos; found = text.find(part, found + 1)) ++count;
    return count;
}

TEST_P(RoundTrip, OfTheMaterialsIsStableFromTheSecondWritingOn) {
    readExample("materials.xml");
    const std::string first = written();
    EXPECT_EQ(occurrences(first, "<node "), 119u);
    EXPECT_EQ(occurrences(first, "<group "), 7u);
    EXPECT_EQ(occurrences(first, "<double "), 913u);
    EXPECT_EQ(occurrences(first, "<string "), 287u);
    EXPECT_EQ(occurrences(first, "<name "), 197u);
    ASSERT_EQ(readInto(other(), first), kNone);
    EXPECT_EQ(writtenFrom(other()), first);
}

TEST_P(RoundTrip, OfTheSchemasIsStableFromTheSecondWritingOn) {
    readExample("schemas.xml");
    const std::string first = written();
    EXPECT_EQ(occurrences(first, "<table "), 2u);
    EXPECT_EQ(occurrences(first, "<default "), 2u);
    ASSERT_EQ(readInto(other(), first), kNone);
    EXPECT_EQ(writtenFrom(other()), first);
}

TEST_P(RoundTrip, OfTheMaterialsKeepsValuesUnitsAndNames) {
    readExample("materials.xml");
    const unsigned int density = at(L"Carbon.Graphite.Density");
    EXPECT_EQ(values<double>(density), std::vector<double>{1750});
    EXPECT_EQ(Design::Primitive(store(), density).units(), units::kKilogramPerCubicMeter);
    EXPECT_EQ(text(at(L"Carbon.Graphite.KindOfMaterial")), L"Solid|");
    std::wstring name;
    std::wstring locale;
    Structural::Container graphite(store(), at(L"Carbon.Graphite"), true);
    graphite.locale(0, name, locale);
    EXPECT_EQ(name, L"Graphite");
    EXPECT_EQ(locale, L"en-us");
}

}  // namespace
