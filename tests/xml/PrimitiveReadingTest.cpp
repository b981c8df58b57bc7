#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// What a text makes of a primitive.
class PrimitiveReading : public XmlTest {
protected:
    /// The values of a document that is one value element in a fresh store.
    template <class T>
    std::vector<T> valuesFrom(const std::string& document) {
        const auto fresh = GetParam().make();
        EXPECT_EQ(readInto(fresh.get(), document), kNone) << document;
        return valuesOf<T>(fresh.get(), 0);
    }
    std::wstring textFrom(const std::string& document) {
        const auto fresh = GetParam().make();
        EXPECT_EQ(readInto(fresh.get(), document), kNone) << document;
        return textOf(fresh.get(), 0);
    }
    std::string bytesFrom(const std::string& document) {
        const std::vector<char> bytes = valuesFrom<char>(document);
        return {bytes.begin(), bytes.end()};
    }
};
LVP_ON_EACH_STORE(PrimitiveReading);

TEST_P(PrimitiveReading, StoresAListOfNumbersByPosition) {
    const struct {
        const char* document;
        std::vector<int> values;
    } kLists[] = {
        {"<int32 name='a'>4 8 15</int32>", {4, 8, 15}},
        {"<int32 name='a'> 4\t8\r\n15</int32>", {4, 8, 15}},
        {"<int32 name='a'>4 8 </int32>", {4, 8}},
        {"<int32 name='a'>7</int32>", {7}},
        {"<int32 name='a'/>", {}},
        {"<int32 name='a'> </int32>", {}},
        {"<int32 name='a'>x</int32>", {}},
        {"<int32 name='a'>x y z</int32>", {}},
        {"<int32 name='a'>1 x 3</int32>", {1, 0, 3}},
        {"<int32 name='a'>x 5</int32>", {0, 5}},
        {"<int32 name='a'>x y 5 z</int32>", {0, 0, 5}},
        {"<int32 name='a'>1 x</int32>", {1}},
        {"<int32 name='a'>1 2147483648 3</int32>", {1, 0, 3}},
        {"<int32 name='a'>12abc 3.9 -5</int32>", {12, 3, -5}},
        {"<int32 name='a' dim='5'>1 2</int32>", {1, 2, 0, 0, 0}},
        {"<int32 name='a' dim='5'>1 x 3</int32>", {1, 0, 3, 0, 0}},
        {"<int32 name='a' dim='5'>x</int32>", {0, 0, 0, 0, 0}},
        {"<int32 name='a' dim='2'>1 2 3</int32>", {1, 2, 3}},
        {"<int32 name='a' dim='2'>x y z 4</int32>", {0, 0, 0, 4}},
        {"<int32 name='a'><val>1 2</val></int32>", {1, 2}},
        {"<int32 name='a'><val>1 2</val><val>3</val></int32>", {3, 2}},
        {"<int32 name='a'><val>1</val><val>x 3</val></int32>", {1, 3}},
        {"<int32 name='a'><val>x 2</val><val>1</val></int32>", {1, 2}},
        {"<int32 name='a'><val>1 2</val><val/></int32>", {1, 2}},
        {"<int32 name='a'>9 9<val>1</val>8 8</int32>", {1}},
        {"<int32 name='a'><name>n</name>5</int32>", {}},
        {"<int32 name='a'><name>n</name><val>5</val></int32>", {5}},
    };
    for (const auto& [document, values] : kLists) EXPECT_EQ(valuesFrom<int>(document), values) << document;
}

TEST_P(PrimitiveReading, KeepsTheLowBytesOfNarrowIntegers) {
    EXPECT_EQ(valuesFrom<std::int8_t>("<int8 name='a'>300 -1 127</int8>"), (std::vector<std::int8_t>{44, -1, 127}));
    EXPECT_EQ(valuesFrom<std::uint8_t>("<uint8 name='a'>-1 256 300</uint8>"), (std::vector<std::uint8_t>{255, 0, 44}));
    EXPECT_EQ(valuesFrom<std::int16_t>("<int16 name='a'>65535 -2</int16>"), (std::vector<std::int16_t>{-1, -2}));
    EXPECT_EQ(valuesFrom<std::uint16_t>("<uint16 name='a'>-1 65537</uint16>"), (std::vector<std::uint16_t>{65535, 1}));
    EXPECT_EQ(valuesFrom<std::uint8_t>("<bool name='a'>1 0 2 256 true</bool>"),
              (std::vector<std::uint8_t>{1, 0, 2, 0}));
}

TEST_P(PrimitiveReading, TakesEachNumberAtItsWidth) {
    EXPECT_EQ(valuesFrom<unsigned int>("<uint32 name='a'>-1 5</uint32>"), (std::vector<unsigned int>{4294967295u, 5}));
    EXPECT_EQ(valuesFrom<long long>("<int64 name='a'>-9223372036854775808 1</int64>"),
              (std::vector<long long>{std::numeric_limits<long long>::min(), 1}));
    EXPECT_EQ(valuesFrom<unsigned long long>("<uint64 name='a'>18446744073709551615</uint64>"),
              (std::vector<unsigned long long>{18446744073709551615ull}));
    EXPECT_EQ(valuesFrom<float>("<scalar name='a'>0.1 1e20</scalar>"), (std::vector<float>{0.1f, 1e20f}));
    EXPECT_EQ(valuesFrom<double>("<double name='a'>0.1 1234567.8901</double>"),
              (std::vector<double>{0.1, 1234567.8901}));
}

TEST_P(PrimitiveReading, GrowsVectorsAndMatricesButNeverShrinksThem) {
    EXPECT_EQ(valuesFrom<double>("<vector3 name='a'>1 2 3</vector3>"), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(valuesFrom<double>("<vector3 name='a'>1 2 3 4</vector3>"), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(valuesFrom<double>("<vector3 name='a'>1</vector3>"), (std::vector<double>{1, 0, 0}));
    EXPECT_EQ(valuesFrom<double>("<matrix2x2 name='a'>1 0 0 1</matrix2x2>"), (std::vector<double>{1, 0, 0, 1}));
}

TEST_P(PrimitiveReading, StoresAListAsLongAsTheDocument) {
    std::string list;
    std::vector<int> expected;
    for (int i = 0; i < 50'000; ++i) {
        list += std::to_string(i) + (i % 3 == 0 ? "\n" : " ");
        expected.push_back(i);
    }
    EXPECT_EQ(valuesFrom<int>("<int32 name='a'>" + list + "</int32>"), expected);
}

TEST_P(PrimitiveReading, SplitsTextsOf4095And4096BytesAlike) {
    for (const std::size_t length : {4094u, 4095u, 4096u, 4097u}) {
        std::string list = "7 ";
        list.resize(length - 2, '0');
        list += " 9";
        ASSERT_EQ(list.size(), length);
        EXPECT_EQ(valuesFrom<int>("<int32 name='a'>" + list + "</int32>"), (std::vector<int>{7, 0, 9})) << length;
    }
}

TEST_P(PrimitiveReading, StoresATextWithItsZero) {
    for (const char* kind : {"uuid", "string", "time", "uri", "version"}) {
        const std::string name = kind;
        EXPECT_EQ(textFrom("<" + name + " name='a'>x y</" + name + ">"), L"x y|") << kind;
    }
}

TEST_P(PrimitiveReading, DecodesTexts) {
    EXPECT_EQ(textFrom("<string name='a'>\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80</string>"), L"\xe4\x20ac\x1f600|");
}

TEST_P(PrimitiveReading, AppendsEachValOfAText) {
    EXPECT_EQ(textFrom("<string name='a'><val>First</val><val>Second</val></string>"), L"First|Second|");
    EXPECT_EQ(textFrom("<string name='a'><val/><val>x</val><val/></string>"), L"|x||");
    EXPECT_EQ(textFrom("<string name='a'><val>x</val><name>n</name><val>y</val></string>"), L"x|y|");
}

TEST_P(PrimitiveReading, AppendsBehindReservedCharacters) {
    EXPECT_EQ(textFrom("<string name='a' dim='2'><val>x</val></string>"), L"||x|");
}

TEST_P(PrimitiveReading, OverwritesReservedCharactersFromTheStart) {
    EXPECT_EQ(textFrom("<string name='a' dim='4'>x</string>"), L"x|||");
    EXPECT_EQ(textFrom("<string name='a' dim='1'>xyz</string>"), L"xyz|");
}

TEST_P(PrimitiveReading, StoresTheEmptyTextOfAnEmptyElement) {
    EXPECT_EQ(textFrom("<string name='a'/>"), L"|");
    EXPECT_EQ(textFrom("<string name='a'><name>n</name></string>"), L"");
}

TEST_P(PrimitiveReading, DecodesBase64) {
    EXPECT_EQ(bytesFrom("<binary name='a'>SGVsbG8=</binary>"), "Hello");
    EXPECT_EQ(bytesFrom("<binary name='a'>\n  SGVs\n  bG8=\n</binary>"), "Hello");
    EXPECT_EQ(bytesFrom("<binary name='a'/>"), "");
    EXPECT_EQ(bytesFrom("<binary name='a'>?</binary>"), "");
}

TEST_P(PrimitiveReading, LaysEachValOfBytesOverTheOnesBefore) {
    EXPECT_EQ(bytesFrom("<binary name='a'><val>SGVsbG8=</val><val>V29ybGQ=</val></binary>"), "World");
    EXPECT_EQ(bytesFrom("<binary name='a'><val>SGVsbG8=</val><val>V28=</val></binary>"), "Wollo");
    EXPECT_EQ(bytesFrom("<binary name='a'><val>V28=</val><val>SGVsbG8=</val></binary>"), "Hello");
}

TEST_P(PrimitiveReading, IgnoresAllTextBesideAURI) {
    for (const char* content : {"1 2", "<val>1</val>", "<name>n</name><val>1</val>"}) {
        EXPECT_EQ(valuesFrom<int>(std::string("<int32 name='a' uri='u'>") + content + "</int32>"), std::vector<int>{});
        EXPECT_EQ(textFrom(std::string("<string name='a' uri='u'>") + content + "</string>"), L"");
        EXPECT_EQ(bytesFrom(std::string("<binary name='a' uri='u'>") + content + "</binary>"), "");
    }
}

TEST_P(PrimitiveReading, TakesNamesInEachLocale) {
    EXPECT_EQ(rewritten("<int32 name='a'><name locale='de'>Zahl</name><name>Number</name></int32>"),
              "<int32 name=\"a\"><name locale=\"de\">Zahl</name><name locale=\"en-us\">Number</name></int32>");
}

TEST_P(PrimitiveReading, TakesSubElementsAfterOneThatWasLeftEmpty) {
    EXPECT_EQ(textFrom("<string name='a'><val/><name/><val>x</val></string>"), L"|x|");
}

}  // namespace
