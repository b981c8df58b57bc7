#include "record/Table.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

class TableElement : public XmlTest {};
LVP_ON_EACH_STORE(TableElement);

constexpr auto kLengths = units::group(units::kMeter);

TEST_P(TableElement, TakesADefaultForTheGroupOfAUnit) {
    ASSERT_EQ(read("<table name='t'><default unit='Meter' type='vec3'/></table>"), kNone);
    const Design::Table table(store(), 0, true);
    EXPECT_EQ(table.groups(), std::vector<units::tUnitGroup>{kLengths});
    EXPECT_EQ(table.units(kLengths), units::kMeter);
    EXPECT_EQ(table.valuetype(kLengths), metadata::kVec3);
}

TEST_P(TableElement, TakesEachTypeOfDefault) {
    const std::pair<const char*, metadata::tValue> kTypes[] = {
        {"string", metadata::kString}, {"binary", metadata::kBinary}, {"scalar", metadata::kScalar},
        {"double", metadata::kDouble}, {"bool", metadata::kBool},     {"uuid", metadata::kUUID},
        {"time", metadata::kTime},     {"uri", metadata::kURI},       {"version", metadata::kVersion},
        {"int8", metadata::kInt8},     {"uint8", metadata::kUInt8},   {"int16", metadata::kInt16},
        {"uint16", metadata::kUInt16}, {"int32", metadata::kInt32},   {"uint32", metadata::kUInt32},
        {"int64", metadata::kInt64},   {"uint64", metadata::kUInt64}, {"mtx2x2", metadata::kMtx2x2},
        {"mtx3x3", metadata::kMtx3x3}, {"mtx4x4", metadata::kMtx4x4}, {"vec2", metadata::kVec2},
        {"vec3", metadata::kVec3},     {"vec4", metadata::kVec4},
    };
    for (const auto& [name, kind] : kTypes) {
        const auto fresh = GetParam().make();
        const std::string type = name;
        EXPECT_EQ(readInto(fresh.get(), "<table name='t'><default unit='Meter' type='" + type + "'/></table>"), kNone);
        EXPECT_EQ(Design::Table(fresh.get(), 0, true).valuetype(kLengths), kind);
        EXPECT_EQ(writtenFrom(fresh.get()),
                  "<table name=\"t\"><default unit=\"Meter\" type=\"" + type + "\"/></table>");
    }
}

TEST_P(TableElement, KeepsTheLaterOfTwoDefaultsOfAGroup) {
    EXPECT_EQ(
        rewritten("<table name='t'><default unit='Meter' type='double'/><default unit='Inch' type='scalar'/></table>"),
        "<table name=\"t\"><default unit=\"Inch\" type=\"scalar\"/></table>");
}

TEST_P(TableElement, WritesDefaultsByGroupThenNamesThenRows) {
    EXPECT_EQ(rewritten("<table name='t'><int32 name='a'>1</int32><name>n</name><default unit='Volt' type='double'/>"
                        "<table name='u'/><default unit='Meter' type='scalar'/></table>"),
              "<table name=\"t\"><default unit=\"Meter\" type=\"scalar\"/><default unit=\"Volt\" type=\"double\"/>"
              "<name locale=\"en-us\">n</name><int32 name=\"a\">1</int32><table name=\"u\"/></table>");
}

TEST_P(TableElement, IgnoresTheTextOfADefault) {
    EXPECT_EQ(rewritten("<table name='t'><default unit='Meter' type='double'>x</default></table>"),
              "<table name=\"t\"><default unit=\"Meter\" type=\"double\"/></table>");
}

TEST_P(TableElement, StoresNothingForADefaultOfAnUnknownUnitAndGoesOn) {
    EXPECT_EQ(rewritten("<table name='t'><default unit='meter' type='double'/><name>n</name></table>"),
              "<table name=\"t\"><name locale=\"en-us\">n</name></table>");
    EXPECT_TRUE(Design::Table(store(), 0, true).groups().empty());
}

TEST_P(TableElement, IsStuckAfterADefaultOfAnUnknownTypeWithAllTables) {
    EXPECT_EQ(read("<group name='g'>"
                   "<table name='t'><default unit='Meter' type='vector3'/><name>n</name>"
                   "<default unit='Meter' type='vec3'/><int32 name='a'>1</int32></table>"
                   "<table name='u'><name>n</name></table>"
                   "<node name='n'><name>n</name></node></group>"),
              (tMessages{"name : unknown element, skipping", "default : unknown element, skipping",
                         "name : unknown element, skipping"}));
    EXPECT_EQ(written(),
              "<group name=\"g\"><table name=\"t\"><int32 name=\"a\">1</int32></table><table name=\"u\"/>"
              "<node name=\"n\"><name locale=\"en-us\">n</name></node></group>");
}

TEST_P(TableElement, IsStuckAfterADefaultThatIsAStruct) {
    EXPECT_EQ(read("<table name='t'><default unit='Meter' type='struct'/><name/></table>"),
              tMessages{"name : unknown element, skipping"});
}

TEST_P(TableElement, GoesOnAfterADefaultThatIsRefused) {
    EXPECT_EQ(read("<table name='t'><default unit='Meter'/><default type='double'/><default/><name>n</name></table>"),
              (tMessages{"default : unknown element, skipping", "default : unknown element, skipping",
                         "default : unknown element, skipping"}));
    EXPECT_EQ(written(), "<table name=\"t\"><name locale=\"en-us\">n</name></table>");
}

TEST_P(TableElement, WritesADefaultWithoutATypeThatItCannotName) {
    {
        Design::Table table(store(), L"t");
        table.defaults(units::kMeter, metadata::kStruct);
    }
    EXPECT_EQ(written(), "<table name=\"t\"><default unit=\"Meter\"/></table>");
    EXPECT_EQ(readInto(other(), written()), tMessages{"default : unknown element, skipping"});
}

TEST_P(TableElement, WritesADefaultWithoutAUnitThatItCannotName) {
    {
        Design::Table table(store(), L"t");
        table.defaults(static_cast<units::tUnit>(0x2FFF), metadata::kDouble);
    }
    EXPECT_EQ(written(), "<table name=\"t\"><default type=\"double\"/></table>");
}

TEST_P(TableElement, IgnoresAClassWithoutALocator) {
    EXPECT_EQ(rewritten("<table name='t' class='S'/>"), "<table name=\"t\"/>");
}

TEST_P(TableElement, WritesTheSchemasThatItHas) {
    using namespace lumivard::platform::data;
    const Design::Table table(store(), L"t");
    Record::Table(store(), table.offset()).arrays(Record::Table::kBase, reinterpret_cast<const char*>(L"A;B"), 16);
    EXPECT_EQ(written(), "<table name=\"t\" class=\"A;B\"/>");
}

TEST_P(TableElement, KeepsTablesInTables) {
    const std::string document =
        "<table name=\"t\"><table name=\"u\"><default unit=\"Meter\" type=\"double\"/><table name=\"v\">"
        "<string name=\"s\">x</string></table></table></table>";
    EXPECT_EQ(rewritten(document), document);
}

}  // namespace
