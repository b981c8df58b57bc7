#include <random>

#include "tests/xml/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::FileReader;

/// Documents with schemas, written and read back.
class SchemaRoundTrip : public SchemaXmlTest {
protected:
    /// A new store with what a document holds, read through a locator, which may be null.
    std::unique_ptr<IDataStore> storeOf(const std::string& document, ISchemaLocator* through) {
        auto fresh = GetParam().make();
        EXPECT_EQ(readInto(fresh.get(), document, through), kNone) << document;
        return fresh;
    }

    /// Reads a document, writes it and reads that back, through the locator: the same items in the same order, hidden
    /// and shown, and the same document. Gives the document.
    std::string comesBack(const std::string& document) {
        const auto first = storeOf(document, locator.get());
        const std::string written = writtenFrom(first.get(), 0, locator.get());
        const auto second = storeOf(written, locator.get());
        EXPECT_EQ(writtenFrom(second.get(), 0, locator.get()), written);
        EXPECT_EQ(treeOf(second.get()), treeOf(first.get()));
        return written;
    }

    /// The names of everything below a record, those of untouched items in brackets.
    static std::string treeOf(IDataStore* store, unsigned int owner = 0) {
        std::string tree;
        const std::vector<unsigned int> children = stored::children(store, owner);
        const tItems items = itemsOf(store, owner);
        for (std::size_t i = 0; i < children.size(); ++i) {
            tree += items[i];
            if (stored::byte(store, children[i], 0) != lumivard::platform::data::Record::kPrimitive) {
                tree += "{" + treeOf(store, children[i]) + "}";
            }
            tree += ' ';
        }
        return tree;
    }

    void readExample(IDataStore* into, const char* name, ISchemaLocator* through) {
        Reporter reporter;
        FileReader reader(std::string(LVP_SOURCE_DIR "/examples/data/") + name);
        IXMLFrontEnd::parse(into, &reader, through, nullptr, &reporter);
        EXPECT_EQ(reporter.messages(), kNone);
        EXPECT_EQ(reporter.broken, kNone);
    }
};
LVP_ON_EACH_STORE(SchemaRoundTrip);

TEST_P(SchemaRoundTrip, OfFilledAndUntouchedItemsIsStable) {
    schemas(
        "<table name='S'><int32 name='a'>1</int32><double name='b' units='Meter'>2</double><string name='c'/>"
        "</table>");
    const std::string document =
        "<root version=\"1\" name=\"r\"><group name=\"g\" class=\"S\"><double name=\"b\" units=\"Meter\">5</double>"
        "<int32 name=\"own\">6</int32></group><table name=\"t\" class=\"S\"><string name=\"c\">text</string></table>"
        "<link name=\"l\" class=\"S\" to=\"g\"/></root>";
    EXPECT_EQ(comesBack(document), document);
    read(document);
    EXPECT_EQ(treeOf(store()), "g{(a) b (c) own } t{(a) (b) c } l{(a) (b) (c) } ");
}

TEST_P(SchemaRoundTrip, PutsTheItemsInTheOrderOfTheSchema) {
    schemas("<table name='S'><int32 name='a'/><int32 name='b'/></table>");
    EXPECT_EQ(comesBack("<group name='g' class='S'><int32 name='own'>1</int32><int32 name='b'>2</int32>"
                        "<int32 name='a'>3</int32></group>"),
              "<group name=\"g\" class=\"S\"><int32 name=\"a\">3</int32><int32 name=\"b\">2</int32>"
              "<int32 name=\"own\">1</int32></group>");
}

TEST_P(SchemaRoundTrip, OfTwoSchemasIsStable) {
    schemas(
        "<table name='A'><int32 name='x'/><int32 name='y'/></table><table name='B'><int32 name='z'/></table>"
        "<table name='C'><int32 name='x'/></table>");
    const std::string document =
        "<group name=\"g\" class=\"B;A\"><int32 name=\"z\">1</int32><int32 name=\"y\">2</int32>"
        "<node name=\"n\" class=\"A;C\"><int32 name=\"x\">3</int32></node></group>";
    EXPECT_EQ(comesBack(document), document);
}

TEST_P(SchemaRoundTrip, OfNestedTablesIsStable) {
    schemas(
        "<table name='S'><table name='t'><int32 name='a'/><table name='u'><int32 name='b'/><int32 name='c'/>"
        "</table></table><table name='v'><int32 name='d'/></table></table>");
    const std::string document =
        "<node name=\"n\" class=\"S\"><table name=\"t\"><table name=\"u\"><int32 name=\"c\">1</int32></table></table>"
        "</node>";
    EXPECT_EQ(comesBack(document), document);
    read(document);
    EXPECT_EQ(treeOf(store()), "t{(a) u{(b) c } } (v){(d) } ");
}

TEST_P(SchemaRoundTrip, OfTablesWithSchemasInSchemasIsStable) {
    schemas(
        "<table name='R'><int32 name='x'>1</int32><int32 name='y'>2</int32></table>"
        "<table name='S'><table name='t' class='R'/></table>");
    const std::string document =
        "<node name=\"n\" class=\"S\"><table name=\"t\" class=\"R\"><int32 name=\"y\">3</int32></table></node>";
    EXPECT_EQ(comesBack(document), document);
}

TEST_P(SchemaRoundTrip, OfTheSchemasThemselvesIsStable) {
    const std::string tables =
        "<root version=\"0\" name=\"schemas\"><table name=\"A\"><int32 name=\"x\">1</int32></table>"
        "<table name=\"B\" class=\"A\"><int32 name=\"y\">2</int32></table></root>";
    const auto first = GetParam().make();
    const auto again = GetParam().make();
    const auto own = ISchemaLocator::make(first.get());
    EXPECT_EQ(readInto(first.get(), tables, own.get()), kNone);
    const std::string written = writtenFrom(first.get());
    EXPECT_EQ(written, tables);
    const auto ownAgain = ISchemaLocator::make(again.get());
    EXPECT_EQ(readInto(again.get(), written, ownAgain.get()), kNone);
    EXPECT_EQ(treeOf(again.get()), "A{x } B{(x) y } ");
}

TEST_P(SchemaRoundTrip, WithoutALocatorLosesTheUntouchedItems) {
    schemas("<table name='S'><int32 name='a'>1</int32><int32 name='b'>2</int32></table>");
    const auto plain = storeOf("<group name='g' class='S'><int32 name='b'>5</int32></group>", locator.get());
    const auto second = storeOf(writtenFrom(plain.get()), nullptr);
    EXPECT_EQ(writtenFrom(second.get()), "<group name=\"g\"><int32 name=\"b\">5</int32></group>");
    EXPECT_EQ(treeOf(second.get()), "b ");
    EXPECT_EQ(flagsOf(second.get(), stored::children(second.get(), 0).at(0)), 0) << "it is an item like any other";
}

TEST_P(SchemaRoundTrip, IsWrittenTheSameWithAndWithoutALocator) {
    schemas("<table name='S'><int32 name='a'>1</int32><int32 name='b'>2</int32></table>");
    read("<group name='g' class='S'><int32 name='b'>5</int32></group>");
    EXPECT_EQ(written(), XmlTest::written());
}

TEST_P(SchemaRoundTrip, ThroughOtherSchemasOfTheNameHasTheirItems) {
    schemas("<table name='S'><int32 name='a'>1</int32><int32 name='b'>2</int32></table>");
    const auto first = storeOf("<group name='g' class='S'><int32 name='b'>5</int32></group>", locator.get());
    const auto edited = GetParam().make();
    ASSERT_EQ(readInto(edited.get(),
                       "<root name='r'><table name='S'><int32 name='b'>9</int32><int32 name='c'/></table></root>"),
              kNone);
    const auto through = ISchemaLocator::make(edited.get());
    const auto second = storeOf(writtenFrom(first.get()), through.get());
    EXPECT_EQ(treeOf(second.get()), "b (c) ");
    EXPECT_EQ(valuesOf<int>(second.get(), stored::children(second.get(), 0).at(0)), std::vector<int>{5});
}

TEST_P(SchemaRoundTrip, OfTextsLaidOverThoseOfTheSchemaAppendsThemToThese) {
    schemas("<table name='S'><string name='s'>abcd</string></table>");
    const auto first = storeOf("<group name='g' class='S'><string name='s'>xy</string></group>", locator.get());
    const std::string written = writtenFrom(first.get());
    EXPECT_EQ(written, "<group name=\"g\" class=\"S\"><string name=\"s\"><val>xy</val><val>d</val></string></group>");
    ASSERT_EQ(read(written), kNone);
    EXPECT_EQ(text(at(L"s")), L"abcd|xy|d|");
}

TEST_P(SchemaRoundTrip, OfTheMaterialsIsStable) {
    readExample(other(), "schemas.xml", nullptr);
    readExample(store(), "materials.xml", locator.get());
    const std::string first = written();
    const auto second = storeOf(first, locator.get());
    EXPECT_EQ(writtenFrom(second.get(), 0, locator.get()), first);
    EXPECT_EQ(treeOf(second.get()), treeOf(store()));
    EXPECT_NE(treeOf(store()).find('('), std::string::npos) << "some are untouched";
}

TEST_P(SchemaRoundTrip, OfRandomItemsShowsThoseOfTheDocument) {
    const unsigned int seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto chance = [&random] { return random() % 2 == 0; };
    const std::string kOwn = "<int32 name=\"own\">1</int32>";  // an element without content is written shorter
    std::string schema = "<table name='S'>";
    std::string document = "<node name=\"n\" class=\"S\">";
    std::string expected;
    for (int table = 0; table < 20; ++table) {
        const std::string name = "t" + std::to_string(table);
        const bool shown = chance();
        schema += "<table name='" + name + "'>";
        if (shown) document += "<table name=\"" + name + "\">";
        expected += shown ? name + "{" : "(" + name + "){";
        for (int item = 0; item < 5; ++item) {
            const std::string tag = "i" + std::to_string(item);
            const std::string start = "<int32 name=\"" + tag + "\">";
            schema += start + std::to_string(random() % 1000) + "</int32>";
            const bool filled = shown && chance();
            if (filled) document += start + std::to_string(random() % 1000) + "</int32>";
            expected += filled ? tag + " " : "(" + tag + ") ";
        }
        schema += "</table>";
        if (shown) document += kOwn + "</table>";
        expected += shown ? "own } " : "} ";
    }
    schemas(schema + "</table>");
    document += kOwn + "</node>";
    expected += "own ";
    EXPECT_EQ(comesBack(document), document);
    read(document);
    EXPECT_EQ(treeOf(store()), expected);
}

}  // namespace
