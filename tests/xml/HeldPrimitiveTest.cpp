#include "tests/xml/XmlFixture.h"
#include "xml/XMLParsingLogic.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::MemoryReader;

/// Primitives with nothing but a text, whose records are made at their end, and such as are opened after all.
class HeldPrimitive : public XmlTest {
protected:
    /// Reads a document that is broken off.
    void readPart(const std::string& document) {
        MemoryReader reader(document);
        IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, &_reporter);
        EXPECT_EQ(_reporter.broken.size(), 1u) << document;
    }

    Reporter _reporter;
};
LVP_ON_EACH_STORE(HeldPrimitive);

TEST_P(HeldPrimitive, LiesBeforeTheListOfItsParent) {
    EXPECT_EQ(read("<table name='t'><int32 name='a'>1</int32><int32 name='b'>2</int32></table>"), kNone);
    const std::vector<unsigned int> children = stored::children(store(), 0);
    const unsigned int list = stored::word(store(), 0, stored::kChildren);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_LT(children[0], list);
    EXPECT_LT(list, children[1]);
    for (const unsigned int child : children) {
        EXPECT_EQ(stored::refs(store(), child), 0u);
        EXPECT_EQ(stored::word(store(), child, stored::kParent), 0u);
    }
}

TEST_P(HeldPrimitive, ThatTheDocumentBreaksOffInIsThereWithoutAValue) {
    readPart("<table name='t'><double name='a' units='Meter' locale='de'>1 2");
    const unsigned int offset = at(L"a");
    ASSERT_NE(offset, kNoItem);
    Design::Primitive primitive(store(), offset);
    EXPECT_EQ(primitive.dimension(), 0u);
    EXPECT_EQ(primitive.units(), units::kMeter);
    EXPECT_STREQ(primitive.valuelocale(), L"de");
    EXPECT_EQ(stored::refs(store(), 0), 0u);
}

TEST_P(HeldPrimitive, ThatTheDocumentBreaksOffInHasTheLengthOfItsKind) {
    readPart("<table name='t'><vector3 name='a'>1 2 3");
    EXPECT_EQ(values<double>(at(L"a")), std::vector<double>(3, 0));
}

TEST_P(HeldPrimitive, IsThereWhenAFaultInItIsReported) {
    class Looking final : public IXMLFrontEnd::IErrorReporter {
    public:
        explicit Looking(IDataStore* store) : _store(store) {}
        void report(const WideString&) override {
            children.push_back(stored::children(_store, 0).size());
            refs = stored::refs(_store, stored::children(_store, 0).back());
        }
        std::vector<std::size_t> children;
        unsigned int refs = 0;

    private:
        IDataStore* _store;
    } looking(store());
    MemoryReader reader(
        "<table name='t'><int8 name='a'>1</int8><int8 name='b'><x/>2</int8><y/><int8 name='c'/></table>");
    IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, &looking);
    EXPECT_EQ(looking.children, (std::vector<std::size_t>{2, 2}));
    EXPECT_EQ(stored::children(store(), 0).size(), 3u);
}

TEST_P(HeldPrimitive, IsMergedWithOneOfItsNameBeforeIt) {
    EXPECT_EQ(read("<table name='t'><int32 name='a'>1 2</int32><int8 name='b'/><int32 name='a'>3</int32>"
                   "<int8 name='a'>4</int8><table name='b'/><table name='c'/><int8 name='d'>5</int8></table>"),
              (tMessages{"int8 : could not nest the element", "table : could not nest the element"}));
    EXPECT_EQ(written(),
              "<table name=\"t\"><int32 name=\"a\">3 2</int32><int8 name=\"b\"/><table name=\"c\"/>"
              "<int8 name=\"d\">5</int8></table>");
}

TEST_P(HeldPrimitive, OfAllKindsIsWhatAnOpenedOneIs) {
    const char* kValues[] = {"binary",  "SGVs",      "uuid",      "u",   "string",  "\xc3\xa4", "time",    "",
                             "uri",     "u",         "bool",      "1",   "int8",    "300",      "uint16",  "1 x 3 ",
                             "int64",   "-5",        "scalar",    "0.1", "double",  "1e3",      "vector2", "1",
                             "vector4", "1 2 3 4 5", "matrix3x3", "x",   "version", "1"};
    for (std::size_t i = 0; i < std::size(kValues); i += 2) {
        const std::string kind = kValues[i];
        const std::string element = kind + " name='a' units='Meter'";
        const std::string value = kValues[i + 1];
        const auto held = lumivard::platform::stores::memory();
        const auto opened = lumivard::platform::stores::memory();
        readInto(held.get(), "<table name='t'><" + element + ">" + value + "</" + kind + "></table>");
        readInto(opened.get(), "<" + element + ">" + value + "</" + kind + ">");
        std::string first = stored::bytes(held.get(), 1);
        first.replace(stored::kParent, 4, std::string(4, '\xff'));
        EXPECT_EQ(first, stored::bytes(opened.get(), 0)) << kind;
    }
}

}  // namespace
