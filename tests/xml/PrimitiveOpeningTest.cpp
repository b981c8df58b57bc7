#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// What a start tag alone makes of a primitive.
class PrimitiveOpening : public XmlTest {
protected:
    /// The primitive of a document that is one value element.
    Design::Primitive opened(const std::string& document) {
        EXPECT_EQ(read(document), kNone) << document;
        return {store(), 0};
    }
};
LVP_ON_EACH_STORE(PrimitiveOpening);

TEST_P(PrimitiveOpening, MakesTheKindThatTheElementNames) {
    const char* kNames[] = {"binary", "uuid",    "string",  "time",    "uri",       "version",   "bool",     "int8",
                            "uint8",  "int16",   "uint16",  "int32",   "uint32",    "int64",     "uint64",   "scalar",
                            "double", "vector2", "vector3", "vector4", "matrix2x2", "matrix3x3", "matrix4x4"};
    std::string document = "<group name='g'>";
    for (const char* name : kNames) document += std::string("<") + name + " name='" + name + "'/>";
    ASSERT_EQ(read(document + "</group>"), kNone);
    unsigned int kind = 0;
    for (const unsigned int offset : stored::children(store(), 0)) {
        EXPECT_EQ(Design::Primitive(store(), offset).valuetype(), ++kind);
    }
    EXPECT_EQ(kind, 23u);
}

TEST_P(PrimitiveOpening, KeepsThePositionOfAValueWithoutANumber) {
    EXPECT_EQ(opened("<int32 name='a' dim='3'/>").dimension(), 3u);
    EXPECT_EQ(values<int>(), (std::vector<int>{0, 0, 0}));
}

TEST_P(PrimitiveOpening, HasNoValuesWithoutADimension) {
    EXPECT_EQ(opened("<int32 name='a'/>").dimension(), 0u);
}

TEST_P(PrimitiveOpening, TakesBadDimensionsForZero) {
    for (const char* dim : {"", "x", " ", "-", "0", "0x5"}) {
        ASSERT_EQ(
            read(std::string("<root name='r'><group name='g'><int32 name='a' dim='") + dim + "'/></group></root>"),
            kNone);
    }
    EXPECT_EQ(Design::Primitive(store(), at(L"g.a")).dimension(), 0u);
}

TEST_P(PrimitiveOpening, TakesADimensionWithSomethingAroundIt) {
    EXPECT_EQ(opened("<int32 name='a' dim='  +4 and more'/>").dimension(), 4u);
}

TEST_P(PrimitiveOpening, RefusesADimensionThatDoesNotFitInARecord) {
    EXPECT_EQ(opened("<int32 name='a' dim='-1'/>").dimension(), 0u);
    EXPECT_EQ(opened("<double name='a' dim='4294967295'/>").dimension(), 0u);
    EXPECT_EQ(opened("<int8 name='a' dim='4294967295'/>").dimension(), 0u);
}

TEST_P(PrimitiveOpening, TakesADimensionModulo32Bits) {
    EXPECT_EQ(opened("<int32 name='a' dim='4294967298'/>").dimension(), 2u);
}

TEST_P(PrimitiveOpening, CountsADimensionInCharactersAndBytes) {
    ASSERT_EQ(read("<group name='g'><string name='s' dim='3'><name>n</name></string>"
                   "<binary name='b' dim='3'><name>n</name></binary></group>"),
              kNone);
    EXPECT_EQ(Design::Primitive(store(), at(L"s")).valuesize(), 12u);
    EXPECT_EQ(Design::Primitive(store(), at(L"b")).valuesize(), 3u);
}

TEST_P(PrimitiveOpening, GivesVectorsAndMatricesTheirCountWhateverTheDimension) {
    const std::pair<const char*, unsigned int> kCounts[] = {{"vector2", 2},   {"vector3", 3},   {"vector4", 4},
                                                            {"matrix2x2", 4}, {"matrix3x3", 9}, {"matrix4x4", 16}};
    std::string document = "<group name='g'>";
    for (const auto& [name, count] : kCounts) document += std::string("<") + name + " name='" + name + "' dim='7'/>";
    ASSERT_EQ(read(document + "</group>"), kNone);
    for (const auto& [name, count] : kCounts) {
        const std::wstring path(name, name + std::strlen(name));
        EXPECT_EQ(values<double>(at(path.c_str())), std::vector<double>(count)) << name;
    }
}

TEST_P(PrimitiveOpening, TakesUnitsByTheirExactName) {
    ASSERT_EQ(read("<group name='g'><double name='a' units='Meter'/><double name='b' units='meter'/>"
                   "<double name='c' units='OuncePerGallon,   '/><double name='d' units='OuncePerGallon'/>"
                   "<double name='e' units=''/><double name='f'/><string name='h' units='Nit'/></group>"),
              kNone);
    EXPECT_EQ(Design::Primitive(store(), at(L"a")).units(), units::kMeter);
    EXPECT_EQ(Design::Primitive(store(), at(L"c")).units(), units::kOuncePerGallon);
    EXPECT_EQ(Design::Primitive(store(), at(L"h")).units(), units::kCandelasPerSquareMeter);
    for (const wchar_t* name : {L"b", L"d", L"e", L"f"}) EXPECT_EQ(Design::Primitive(store(), at(name)).units(), 0);
}

TEST_P(PrimitiveOpening, TakesTheLocaleOfTheValue) {
    EXPECT_STREQ(opened("<string name='a' locale='de-de'/>").valuelocale(), L"de-de");
}

TEST_P(PrimitiveOpening, TakesAURIInPlaceOfValues) {
    const Design::Primitive primitive = opened("<vector3 name='a' uri='x/\xc3\xa4.png' dim='5'>1 2 3</vector3>");
    EXPECT_STREQ(primitive.uri(), L"x/\xe4.png");
    EXPECT_EQ(primitive.dimension(), 0u);
    EXPECT_EQ(written(), "<vector3 name=\"a\" uri=\"x/\xc3\xa4.png\"/>");
}

TEST_P(PrimitiveOpening, TakesAnEmptyURIForAURI) {
    EXPECT_STREQ(opened("<int32 name='a' uri='' dim='2'>1</int32>").uri(), L"");
    EXPECT_EQ(written(), "<int32 name=\"a\" uri=\"\"/>");
}

TEST_P(PrimitiveOpening, TakesAnEmptyNameForAName) {
    EXPECT_STREQ(opened("<int32 name=''>1</int32>").tag(), L"");
    EXPECT_EQ(written(), "<int32 name=\"\">1</int32>");
}

TEST_P(PrimitiveOpening, ReadsNoClassAndNoOptional) {
    EXPECT_EQ(opened("<int32 name='a' optional='true' class='c'/>").flags(), 0);
}

TEST_P(PrimitiveOpening, PassesOverATypeWhereItIsNoStruct) {
    EXPECT_EQ(opened("<int32 name='a' type='S' dim='2'>5</int32>").base(), nullptr);
    EXPECT_EQ(values<int>(), (std::vector<int>{5, 0}));
}

}  // namespace
