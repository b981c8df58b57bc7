#include "record/Table.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// An element under a name that its parent has already.
class Merging : public XmlTest {
protected:
    static constexpr unsigned char kHidden = 4;
    static constexpr unsigned char kInherited = 2;

    unsigned char flags(const wchar_t* path) { return stored::byte(store(), at(path), stored::kFlags); }
    void hide(const wchar_t* path) {
        stored::putByte(store(), at(path), stored::kFlags,
                        static_cast<unsigned char>(flags(path) | kHidden | kInherited));
    }

    /// Reads a document into the container that stands at the top.
    tMessages readIntoTop(const std::string& document) {
        Reporter reporter;
        lumivard::platform::core::io::MemoryReader reader(document);
        auto top = lumivard::platform::data::structure::IContainerFrontEnd::find(store(), L"g");
        IXMLFrontEnd::parse(top.get(), &reader, nullptr, nullptr, &reporter);
        EXPECT_EQ(reporter.broken, kNone);
        return reporter.messages();
    }
};
LVP_ON_EACH_STORE(Merging);

TEST_P(Merging, FillsTheEquivalentPrimitive) {
    for (const char* parent : {"group", "node", "link", "table"}) {
        const std::string name = parent;
        const auto fresh = GetParam().make();
        EXPECT_EQ(
            readInto(fresh.get(),
                     "<" + name + " name='g'><int32 name='a'>1 2</int32><int32 name='a'>3</int32></" + name + ">"),
            kNone);
        EXPECT_EQ(writtenFrom(fresh.get()), "<" + name + " name=\"g\"><int32 name=\"a\">3 2</int32></" + name + ">");
    }
}

TEST_P(Merging, OverwritesATextFromItsStartAndAppendsVals) {
    ASSERT_EQ(read("<group name='g'><string name='a'>abcd</string><string name='a'>xy</string>"
                   "<string name='b'>ab</string><string name='b'><val>cd</val></string></group>"),
              kNone);
    EXPECT_EQ(text(at(L"a")), L"xy|d|");
    EXPECT_EQ(text(at(L"b")), L"ab|cd|");
}

TEST_P(Merging, TakesNothingFromTheAttributesOfTheSecond) {
    ASSERT_EQ(read("<group name='g'><double name='a' units='Meter' locale='de' dim='2'/>"
                   "<double name='a' units='Volt' locale='fr' uri='u' dim='9'>1</double></group>"),
              kNone);
    EXPECT_EQ(written(), "<group name=\"g\"><double name=\"a\" units=\"Meter\" locale=\"de\">1 0</double></group>");
}

TEST_P(Merging, KeepsAURIOfTheFirst) {
    ASSERT_EQ(read("<group name='g'><int32 name='a' uri='u'/><int32 name='a'>1</int32></group>"), kNone);
    EXPECT_EQ(written(), "<group name=\"g\"><int32 name=\"a\" uri=\"u\"/></group>");
}

TEST_P(Merging, FillsTheEquivalentTable) {
    ASSERT_EQ(read("<group name='g'><table name='t'><int32 name='a'>1</int32></table>"
                   "<table name='t' optional='true'><name>n</name><default unit='Meter' type='double'/>"
                   "<int32 name='b'>2</int32><int32 name='a'>3</int32></table></group>"),
              kNone);
    EXPECT_EQ(written(),
              "<group name=\"g\"><table name=\"t\"><default unit=\"Meter\" type=\"double\"/>"
              "<name locale=\"en-us\">n</name><int32 name=\"a\">3</int32><int32 name=\"b\">2</int32></table></group>");
    EXPECT_EQ(flags(L"t"), 0);
}

TEST_P(Merging, IsRefusedBetweenKindsOfItems) {
    EXPECT_EQ(read("<group name='g'><int32 name='a'>1</int32><table name='a'/><node name='a'/>"
                   "<table name='b'/><int32 name='b'>1</int32><node name='b'/>"
                   "<node name='c'/><int32 name='c'>1</int32><table name='c'/></group>"),
              (tMessages{"table : could not nest the element", "node : could not nest the element",
                         "int32 : could not nest the element", "node : could not nest the element",
                         "int32 : could not nest the element", "table : could not nest the element"}));
    EXPECT_EQ(written(), "<group name=\"g\"><int32 name=\"a\">1</int32><table name=\"b\"/><node name=\"c\"/></group>");
}

TEST_P(Merging, IsRefusedBetweenKindsOfValues) {
    EXPECT_EQ(
        read("<table name='g'><int32 name='a'>1</int32><double name='a'>2</double><int32 name='a'>3</int32></table>"),
        tMessages{"double : could not nest the element"});
    EXPECT_EQ(written(), "<table name=\"g\"><int32 name=\"a\">3</int32></table>");
}

TEST_P(Merging, IsRefusedBetweenTablesOfOtherSchemas) {
    using namespace lumivard::platform::data;
    ASSERT_EQ(read("<root name='r'><group name='g'><table name='t'/></group></root>"), kNone);
    Record::Table(store(), at(L"g.t")).arrays(Record::Table::kBase, reinterpret_cast<const char*>(L"S"), 8);
    EXPECT_EQ(readIntoTop("<group name='g'><table name='t'/></group>"),
              tMessages{"table : could not nest the element"});
}

TEST_P(Merging, ShowsWhatWasHiddenWithItsOwners) {
    ASSERT_EQ(read("<root name='r'><group name='g'><table name='t'><int32 name='a'>1</int32></table>"
                   "<int32 name='b'>2</int32></group></root>"),
              kNone);
    for (const wchar_t* path : {L"g.t", L"g.t.a", L"g.b"}) hide(path);
    EXPECT_EQ(written(), "<root version=\"0\" name=\"r\"><group name=\"g\"/></root>");
    EXPECT_EQ(readIntoTop("<group name='g'><table name='t'><int32 name='a'>5</int32></table></group>"), kNone);
    EXPECT_EQ(written(),
              "<root version=\"0\" name=\"r\"><group name=\"g\"><table name=\"t\"><int32 name=\"a\">5</int32></table>"
              "</group></root>");
    EXPECT_EQ(flags(L"g.t"), kInherited);
    EXPECT_EQ(flags(L"g.t.a"), kInherited);
    EXPECT_EQ(flags(L"g.b"), kInherited | kHidden);
}

TEST_P(Merging, LeavesTheSecondRecordAttachedToNothing) {
    ASSERT_EQ(read("<group name='g'><int32 name='a'>1</int32></group>"), kNone);
    const auto extent = store()->extent();
    ASSERT_EQ(read("<group name='g'><int32 name='a'>1</int32><int32 name='a'>2</int32></group>"), kNone);
    EXPECT_GT(store()->extent(), extent);
    EXPECT_EQ(stored::children(store(), 0).size(), 1u);
}

}  // namespace
