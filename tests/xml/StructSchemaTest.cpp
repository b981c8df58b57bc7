#include <cstdint>
#include <cstring>
#include <limits>

#include "tests/xml/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::metadata::IStructLayout;

constexpr const char* kPose =
    "<table name='Pose'><double name='position' dim='3'/><double name='rotation' dim='4'/><int64 name='time' dim='1'/>"
    "</table>";

/// Struct values, over the layouts of schemas.
class StructSchema : public SchemaXmlTest {
protected:
    /// The layout of a schema, which is there.
    IStructLayout& layout(const wchar_t* uri) {
        schema = locator->resolve(uri);
        return *schema->layout();
    }

    /// The names of a layout's fields with their dimension, place and size.
    static std::vector<std::string> fieldsOf(IStructLayout& layout) {
        std::vector<std::string> fields;
        for (unsigned int i = 0; i < layout.fields(); ++i) {
            const IStructLayout::tField& field = *layout.get(i);
            fields.push_back(WideString(field.name).string() + ' ' + std::to_string(field.dim) + ' ' +
                             std::to_string(field.offset) + '+' + std::to_string(field.size));
        }
        return fields;
    }

    /// The elements of a field in one block of a value.
    template <class T>
    std::vector<T> field(const wchar_t* uri, const wchar_t* name, unsigned int block = 0, unsigned int offset = 0) {
        IStructLayout& layout = this->layout(uri);
        const IStructLayout::tField* field = layout.get(WideString(name));
        const std::vector<char> bytes = values<char>(offset);
        if (!field || bytes.size() < std::size_t{block + 1} * layout.stride()) return {};
        EXPECT_EQ(field->size, field->dim * sizeof(T));
        std::vector<T> elements(field->dim);
        std::memcpy(elements.data(), bytes.data() + std::size_t{block} * layout.stride() + field->offset, field->size);
        return elements;
    }
    unsigned int bytes(unsigned int offset = 0) { return Design::Primitive(store(), offset).valuesize(); }

    SharedPtr<metadata::ISchema> schema;
};
LVP_ON_EACH_STORE(StructSchema);

using tDoubles = std::vector<double>;
using tTimes = std::vector<std::int64_t>;

TEST_P(StructSchema, LaysItsMembersOutWithoutGaps) {
    schemas(kPose);
    EXPECT_EQ(fieldsOf(layout(L"Pose")),
              (std::vector<std::string>{"position 3 0+24", "rotation 4 24+32", "time 1 56+8"}));
    EXPECT_EQ(layout(L"Pose").stride(), 64u);
    EXPECT_EQ(layout(L"Pose").values(), 8u);
}

TEST_P(StructSchema, FillsTheFieldsOfOneStruct) {
    schemas(kPose);
    const std::string document = "<struct name=\"p\" type=\"Pose\">1.5 2 -3 0 0.5 0 1 9223372036854775807</struct>";
    EXPECT_EQ(rewritten(document), document);
    EXPECT_EQ(bytes(), 64u);
    EXPECT_EQ(field<double>(L"Pose", L"position"), (tDoubles{1.5, 2, -3}));
    EXPECT_EQ(field<double>(L"Pose", L"rotation"), (tDoubles{0, 0.5, 0, 1}));
    EXPECT_EQ(field<std::int64_t>(L"Pose", L"time"), tTimes{9223372036854775807});
}

TEST_P(StructSchema, FillsTheFieldsOfSeveralStructs) {
    schemas(kPose);
    const std::string document =
        "<struct name=\"p\" type=\"Pose\">1 2 3 4 5 6 7 8 -1 -2 -3 -4 -5 -6 -7 -8 9 9 9 9 9 9 9 9</struct>";
    EXPECT_EQ(rewritten(document), document);
    EXPECT_EQ(bytes(), 3 * 64u);
    EXPECT_EQ(field<double>(L"Pose", L"position", 1), (tDoubles{-1, -2, -3}));
    EXPECT_EQ(field<double>(L"Pose", L"rotation", 1), (tDoubles{-4, -5, -6, -7}));
    EXPECT_EQ(field<std::int64_t>(L"Pose", L"time", 1), tTimes{-8});
    EXPECT_EQ(field<double>(L"Pose", L"position", 2), (tDoubles{9, 9, 9}));
}

TEST_P(StructSchema, DropsTheSurplusTokensOfAPartialStruct) {
    schemas(kPose);
    for (const char* surplus : {" 9", " 9 9 9 9 9 9 9", " "}) {
        const auto fresh = GetParam().make();
        const std::string tokens = "1 2 3 4 5 6 7 8";
        ASSERT_EQ(
            readInto(fresh.get(), "<struct name='p' type='Pose'>" + tokens + surplus + "</struct>", locator.get()),
            kNone);
        EXPECT_EQ(writtenFrom(fresh.get(), 0, locator.get()),
                  "<struct name=\"p\" type=\"Pose\">" + tokens + "</struct>");
    }
}

TEST_P(StructSchema, StoresNothingFromFewerTokensThanOneStruct) {
    schemas(kPose);
    EXPECT_EQ(rewritten("<struct name='p' type='Pose'>1 2 3 4 5 6 7</struct>"), "<struct name=\"p\" type=\"Pose\"/>");
    EXPECT_EQ(bytes(), 0u);
}

TEST_P(StructSchema, ReservesWholeStructs) {
    schemas(kPose);
    ASSERT_EQ(read("<struct name='p' type='Pose' dim='3'>1 2 3 4 5 6 7 8</struct>"), kNone);
    EXPECT_EQ(bytes(), 3 * 64u);
    EXPECT_EQ(field<double>(L"Pose", L"position", 0), (tDoubles{1, 2, 3}));
    EXPECT_EQ(field<double>(L"Pose", L"position", 2), (tDoubles{0, 0, 0}));
}

TEST_P(StructSchema, TakesItsTypeFromTheFirstOfTwoSchemas) {
    schemas("<table name='A'><int8 name='x' dim='2'/></table><table name='B'><double name='y' dim='1'/></table>");
    const std::string document = "<struct name=\"p\" type=\"X;A;B\">1 2 3 4</struct>";
    EXPECT_EQ(rewritten(document), document);
    EXPECT_EQ(bytes(), 4u);
}

TEST_P(StructSchema, OfAnUnknownTypeIsKeptWithoutTypeAndValue) {
    schemas(kPose);
    EXPECT_EQ(rewritten("<struct name='p' type='pose'>1 2 3 4 5 6 7 8</struct>"), "<struct name=\"p\"/>");
}

TEST_P(StructSchema, PacksTheMembersOfTablesInTheSchema) {
    schemas(
        "<table name='S'><int8 name='a' dim='1'/><table name='t'><int16 name='b' dim='1'/><table name='u'>"
        "<int32 name='c' dim='2'/></table></table><int8 name='d' dim='1'/></table>");
    const std::string document = "<struct name=\"p\" type=\"S\">1 2 3 4 5 -1 -2 -3 -4 -5</struct>";
    EXPECT_EQ(rewritten(document), document);
    EXPECT_EQ(fieldsOf(layout(L"S")), (std::vector<std::string>{"a 1 0+1", "t.b 1 1+2", "t.u.c 2 3+8", "d 1 11+1"}));
    EXPECT_EQ(field<std::int16_t>(L"S", L"t.b", 1), std::vector<std::int16_t>{-2});
    EXPECT_EQ(field<std::int32_t>(L"S", L"t.u.c", 1), (std::vector<std::int32_t>{-3, -4}));
    EXPECT_EQ(field<std::int8_t>(L"S", L"d", 0), std::vector<std::int8_t>{5});
}

TEST_P(StructSchema, PacksTheMembersThatASchemaInherits) {
    schemas(
        "<table name='A'><int16 name='x' dim='1'/></table><table name='B' class='A'><int8 name='y' dim='1'/></table>");
    const std::string document = "<struct name=\"p\" type=\"B\">1 2</struct>";
    EXPECT_EQ(rewritten(document), document);
    EXPECT_EQ(fieldsOf(layout(L"B")), (std::vector<std::string>{"x 1 0+2", "y 1 2+1"}));
}

TEST_P(StructSchema, PacksStructsInStructs) {
    schemas(std::string(kPose) +
            "<table name='Step'><int8 name='kind' dim='1'/><struct name='from' type='Pose' dim='1'/>"
            "<struct name='to' type='Pose' dim='2'/></table>");
    EXPECT_EQ(
        fieldsOf(layout(L"Step")),
        (std::vector<std::string>{"kind 1 0+1", "from.position 3 1+24", "from.rotation 4 25+32", "from.time 1 57+8",
                                  "to[0].position 3 65+24", "to[0].rotation 4 89+32", "to[0].time 1 121+8",
                                  "to[1].position 3 129+24", "to[1].rotation 4 153+32", "to[1].time 1 185+8"}));
    std::string tokens;
    for (int i = 0; i < 2 * 25; ++i) tokens += (i == 0 ? "" : " ") + std::to_string(i);
    const std::string document = "<struct name=\"p\" type=\"Step\">" + tokens + "</struct>";
    EXPECT_EQ(rewritten(document), document);
    EXPECT_EQ(bytes(), 2 * 193u);
    EXPECT_EQ(field<std::int8_t>(L"Step", L"kind", 1), std::vector<std::int8_t>{25});
    EXPECT_EQ(field<double>(L"Step", L"from.rotation", 1), (tDoubles{29, 30, 31, 32}));
    EXPECT_EQ(field<double>(L"Step", L"to[1].position", 0), (tDoubles{17, 18, 19}));
    EXPECT_EQ(field<std::int64_t>(L"Step", L"to[1].time", 1), tTimes{49});
}

TEST_P(StructSchema, TakesTheNumberOfInnerStructsFromTheValueInTheSchema) {
    schemas(
        "<table name='P'><int16 name='x' dim='2'/></table><table name='S'><struct name='p' type='P'>1 2 3 4</struct>"
        "</table>");
    EXPECT_EQ(fieldsOf(layout(L"S")), (std::vector<std::string>{"p[0].x 2 0+4", "p[1].x 2 4+4"}));
    const std::string document = "<struct name=\"p\" type=\"S\">5 6 7 8</struct>";
    EXPECT_EQ(rewritten(document), document);
    EXPECT_EQ(field<std::int16_t>(L"S", L"p[1].x"), (std::vector<std::int16_t>{7, 8}));
}

TEST_P(StructSchema, GivesNoFieldsToAnInnerStructWithoutValueOrType) {
    schemas(
        "<table name='P'><int16 name='x' dim='2'/></table><table name='Q'><int16 name='y' dim='1'/></table>"
        "<table name='S'><struct name='none' type='P'/><struct name='unknown' type='X' dim='1'/>"
        "<struct name='two' type='P;Q' dim='1'/><struct name='away' type='P' uri='u' dim='1'/>"
        "<int8 name='a' dim='1'/></table>");
    EXPECT_EQ(fieldsOf(layout(L"S")), std::vector<std::string>{"a 1 0+1"});
}

TEST_P(StructSchema, TakesAnEmptyTextAsOneTokenInASchemaToo) {
    schemas("<table name='P'><int16 name='x' dim='1'/></table><table name='S'><struct name='p' type='P'/></table>");
    EXPECT_EQ(fieldsOf(layout(L"S")), std::vector<std::string>{"p.x 1 0+2"});
}

TEST_P(StructSchema, GivesNoTokenAndNoBytesToAMemberWithoutElements) {
    schemas(
        "<table name='S'><double name='none'/><int16 name='a' dim='1'/><int32 name='alsoNone'/>"
        "<int8 name='b' dim='1'/></table>");
    const std::string document = "<struct name=\"p\" type=\"S\">1 2 3 4</struct>";
    EXPECT_EQ(rewritten(document), document);
    EXPECT_EQ(fieldsOf(layout(L"S")), (std::vector<std::string>{"none 0 0+0", "a 1 0+2", "alsoNone 0 2+0", "b 1 2+1"}));
    EXPECT_EQ(bytes(), 6u);
    EXPECT_EQ(field<std::int16_t>(L"S", L"a", 1), std::vector<std::int16_t>{3});
    EXPECT_EQ(field<std::int8_t>(L"S", L"b", 1), std::vector<std::int8_t>{4});
}

TEST_P(StructSchema, OfNoBytesHasNoElements) {
    schemas(
        "<table name='Empty'/><table name='None'><double name='a'/><int8 name='b'/></table>"
        "<table name='S'><struct name='e' type='Empty' dim='2'/><struct name='n' type='None' dim='2'/>"
        "<int8 name='c' dim='1'/></table>");
    for (const std::string type : {"Empty", "None"}) {
        const auto fresh = GetParam().make();
        ASSERT_EQ(readInto(fresh.get(), "<struct name='p' type='" + type + "' dim='9'>1 2 3</struct>", locator.get()),
                  kNone);
        EXPECT_EQ(writtenFrom(fresh.get(), 0, locator.get()), "<struct name=\"p\" type=\"" + type + "\"/>");
    }
    EXPECT_EQ(layout(L"None").stride(), 0u);
    EXPECT_EQ(layout(L"None").fields(), 2u);
    EXPECT_EQ(fieldsOf(layout(L"S")), std::vector<std::string>{"c 1 0+1"});
}

TEST_P(StructSchema, LeavesInTheSlotOfATokenThatDoesNotScanWhatWasExtracted) {
    schemas(
        "<table name='S'><int32 name='i' dim='2'/><double name='d' dim='1'/><int8 name='b' dim='1'/>"
        "<uint16 name='u' dim='1'/></table>");
    ASSERT_EQ(read("<struct name='p' type='S'>x 99999999999 1e400 99999999999 x 7 8 9 10 11</struct>"), kNone);
    ASSERT_EQ(bytes(), 2 * 19u);
    EXPECT_EQ(field<std::int32_t>(L"S", L"i"), (std::vector<std::int32_t>{0, 2147483647}));
    EXPECT_EQ(field<double>(L"S", L"d"), tDoubles{std::numeric_limits<double>::max()});
    EXPECT_EQ(field<std::int8_t>(L"S", L"b"), std::vector<std::int8_t>{-1}) << "the low byte of the largest integer";
    EXPECT_EQ(field<std::uint16_t>(L"S", L"u"), std::vector<std::uint16_t>{0}) << "nothing of the field before it";
    EXPECT_EQ(field<std::int32_t>(L"S", L"i", 1), (std::vector<std::int32_t>{7, 8}));
    EXPECT_EQ(field<std::uint16_t>(L"S", L"u", 1), std::vector<std::uint16_t>{11});
}

TEST_P(StructSchema, LeavesInTheSlotOfAnEmptyTokenWhatTheNarrowOneBeforeItReached) {
    schemas("<table name='S'><int8 name='b' dim='1'/><int32 name='i' dim='1'/></table>");
    ASSERT_EQ(read("<struct name='p' type='S'>300 </struct>"), kNone);
    EXPECT_EQ(field<std::int8_t>(L"S", L"b"), std::vector<std::int8_t>{44});
    EXPECT_EQ(field<std::int32_t>(L"S", L"i"), std::vector<std::int32_t>{1});
}

TEST_P(StructSchema, MergesIntoAnInheritedStruct) {
    schemas(std::string(kPose) +
            "<table name='S'><struct name='path' type='Pose'>1 1 1 1 1 1 1 1 2 2 2 2 2 2 2 2</struct></table>");
    EXPECT_EQ(rewritten("<node name='n' class='S'/>"), "<node name=\"n\" class=\"S\"/>");
    const auto fresh = GetParam().make();
    ASSERT_EQ(readInto(fresh.get(),
                       "<node name='n' class='S'><struct name='path' type='Pose'>3 3 3 3 3 3 3 3 4</struct></node>",
                       locator.get()),
              kNone);
    EXPECT_EQ(writtenFrom(fresh.get(), 0, locator.get()),
              "<node name=\"n\" class=\"S\"><struct name=\"path\" type=\"Pose\">3 3 3 3 3 3 3 3 2 2 2 2 2 2 2 2"
              "</struct></node>");
    EXPECT_EQ(flagsOf(fresh.get(), stored::children(fresh.get(), 0).at(0)), kFilled);
}

TEST_P(StructSchema, MergesByTheTypeOfTheInheritedStruct) {
    schemas(
        "<table name='P'><int8 name='x' dim='1'/></table><table name='Q'><int16 name='y' dim='1'/></table>"
        "<table name='S'><struct name='p' type='P'>1 2</struct></table>");
    EXPECT_EQ(rewritten("<node name='n' class='S'><struct name='p' type='Q' dim='9'>3</struct></node>"),
              "<node name=\"n\" class=\"S\"><struct name=\"p\" type=\"P\">3 2</struct></node>");
}

TEST_P(StructSchema, RefusesAStructOverAnotherKind) {
    schemas("<table name='P'><int8 name='x' dim='1'/></table><table name='S'><int8 name='p'>1</int8></table>");
    EXPECT_EQ(read("<node name='n' class='S'><struct name='p' type='P'>3</struct></node>"),
              tMessages{"struct : could not nest the element"});
    EXPECT_EQ(items(), tItems{"(p)"});
}

TEST_P(StructSchema, IsReadBackThroughThePublicInterfaces) {
    using namespace lumivard::platform::data;
    schemas(kPose);
    ASSERT_EQ(read("<root name='r'><group name='g'><struct name='p' type='Pose'>1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16"
                   "</struct></group></root>"),
              kNone);
    const auto property = structure::IContainerFrontEnd::find(store(), L"g")->property(L"p");
    metadata::IPrimitive* primitive = metadata::IPrimitive::to(property.get());
    ASSERT_TRUE(primitive);
    EXPECT_EQ(primitive->valuetype(), metadata::kStruct);
    const auto type = locator->resolve(primitive->schema());
    ASSERT_TRUE(type);
    const IStructLayout::tField* rotation = type->layout()->get(WideString(L"rotation"));
    ASSERT_EQ(primitive->bytes(), 2 * type->layout()->stride());
    double values[4];
    ASSERT_TRUE(primitive->get(values, type->layout()->stride() + rotation->offset, rotation->size));
    EXPECT_EQ(std::vector<double>(values, values + 4), (tDoubles{12, 13, 14, 15}));
}

TEST_P(StructSchema, IsWrittenWithoutValuesWhereNobodyKnowsItsType) {
    schemas(kPose);
    ASSERT_EQ(read("<node name='n'><struct name='p' type='Pose'>1 2 3 4 5 6 7 8</struct></node>"), kNone);
    EXPECT_EQ(XmlTest::written(), "<node name=\"n\"><struct name=\"p\" type=\"Pose\"/></node>");
    EXPECT_EQ(XmlTest::written(0, ISchemaLocator::make(nullptr).get()), XmlTest::written());
}

}  // namespace
