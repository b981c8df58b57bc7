#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// How a primitive is written.
class PrimitiveWriting : public XmlTest {
protected:
    template <class T>
    std::string writtenValues(metadata::tValue kind, const std::vector<T>& values, bool named = false) {
        Design::Primitive primitive(store(), kind, L"a");
        primitive.set(reinterpret_cast<const char*>(values.data()), 0, static_cast<unsigned int>(values.size()));
        if (named) primitive.localize(L"N", L"de");
        return writtenOf(primitive.offset());
    }

    std::string writtenText(const std::wstring& run, bool named = false) {
        unsigned int offset;
        {
            Design::Primitive primitive(store(), metadata::kString, L"a");
            primitive.set(reinterpret_cast<const char*>(run.data()), 0, static_cast<unsigned int>(run.size()));
            if (named) primitive.localize(L"N", L"de");
            offset = primitive.offset();
        }
        return writtenOf(offset);
    }

    std::string writtenOf(unsigned int offset) { return written(offset); }
};
LVP_ON_EACH_STORE(PrimitiveWriting);

TEST_P(PrimitiveWriting, PutsTheAttributesInTheirOrder) {
    EXPECT_EQ(rewritten("<double uri='u' locale='l' units='Meter' name='n'/>"),
              "<double name=\"n\" units=\"Meter\" locale=\"l\" uri=\"u\"/>");
}

TEST_P(PrimitiveWriting, LeavesOutWhatIsNotThere) {
    EXPECT_EQ(rewritten("<double name='n'>1</double>"), "<double name=\"n\">1</double>");
}

TEST_P(PrimitiveWriting, GivesUnitsTheirFirstName) {
    EXPECT_EQ(rewritten("<double name='n' units='Nit'/>"), "<double name=\"n\" units=\"CandelasPerSquareMeter\"/>");
}

TEST_P(PrimitiveWriting, NamesTheUnitOfPureNumbers) {
    EXPECT_EQ(rewritten("<double name='n' units='Unitless'/>"), "<double name=\"n\" units=\"Unitless\"/>");
}

TEST_P(PrimitiveWriting, LeavesOutAUnitThatDoesNotExist) {
    Design::Primitive primitive(store(), metadata::kInt32, L"a");
    primitive.units(static_cast<units::tUnit>(0x2043));
    EXPECT_EQ(written(), "<int32 name=\"a\"/>");
}

TEST_P(PrimitiveWriting, PutsOneSpaceBetweenNumbers) {
    EXPECT_EQ(writtenValues<int>(metadata::kInt32, {4, 8, 15}), "<int32 name=\"a\">4 8 15</int32>");
    EXPECT_EQ(writtenValues<int>(metadata::kInt32, {4}), "<int32 name=\"a\">4</int32>");
    EXPECT_EQ(writtenValues<int>(metadata::kInt32, {}), "<int32 name=\"a\"/>");
}

TEST_P(PrimitiveWriting, WritesEachKindOfNumberInItsForm) {
    EXPECT_EQ(writtenValues<std::uint8_t>(metadata::kBool, {1, 0, 2}), "<bool name=\"a\">1 0 2</bool>");
    EXPECT_EQ(writtenValues<std::int8_t>(metadata::kInt8, {-128, 65}), "<int8 name=\"a\">-128 65</int8>");
    EXPECT_EQ(writtenValues<std::uint8_t>(metadata::kUInt8, {255, 65}), "<uint8 name=\"a\">255 65</uint8>");
    EXPECT_EQ(writtenValues<std::int16_t>(metadata::kInt16, {-5}), "<int16 name=\"a\">-5</int16>");
    EXPECT_EQ(writtenValues<std::uint16_t>(metadata::kUInt16, {65535}), "<uint16 name=\"a\">65535</uint16>");
    EXPECT_EQ(writtenValues<unsigned int>(metadata::kUInt32, {4294967295u}), "<uint32 name=\"a\">4294967295</uint32>");
    EXPECT_EQ(writtenValues<long long>(metadata::kInt64, {-5000000000}), "<int64 name=\"a\">-5000000000</int64>");
    EXPECT_EQ(writtenValues<unsigned long long>(metadata::kUInt64, {18446744073709551615ull}),
              "<uint64 name=\"a\">18446744073709551615</uint64>");
    EXPECT_EQ(writtenValues<float>(metadata::kScalar, {2.5f, 0.1f}), "<scalar name=\"a\">2.5 0.1</scalar>");
    EXPECT_EQ(writtenValues<double>(metadata::kDouble, {1234567.8, 1e20}), "<double name=\"a\">1234568 1e+20</double>");
    EXPECT_EQ(writtenValues<double>(metadata::kVec2, {1, .5}), "<vector2 name=\"a\">1 0.5</vector2>");
    EXPECT_EQ(writtenValues<double>(metadata::kMtx2x2, {1, 0, 0, 1}), "<matrix2x2 name=\"a\">1 0 0 1</matrix2x2>");
}

TEST_P(PrimitiveWriting, WritesOneTextAsItIs) {
    EXPECT_EQ(writtenText({L"x y\0", 4}), "<string name=\"a\">x y</string>");
    EXPECT_EQ(writtenText({L"\0", 1}), "<string name=\"a\"/>");
}

TEST_P(PrimitiveWriting, WritesSeveralTextsInAValEach) {
    EXPECT_EQ(writtenText({L"x\0y\0", 4}), "<string name=\"a\"><val>x</val><val>y</val></string>");
    EXPECT_EQ(writtenText({L"\0x\0\0", 4}), "<string name=\"a\"><val/><val>x</val><val/></string>");
}

TEST_P(PrimitiveWriting, LeavesOutWhatNoZeroEnds) {
    EXPECT_EQ(writtenText({L"x\0y", 3}), "<string name=\"a\"><val>x</val></string>");
    EXPECT_EQ(writtenText({L"xy", 2}), "<string name=\"a\"/>");
}

TEST_P(PrimitiveWriting, WritesOneTextInAValBesideNames) {
    EXPECT_EQ(writtenText({L"x\0", 2}, true), "<string name=\"a\"><name locale=\"de\">N</name><val>x</val></string>");
    EXPECT_EQ(writtenText({L"\0", 1}, true), "<string name=\"a\"><name locale=\"de\">N</name><val/></string>");
    EXPECT_EQ(writtenText({L"x\0y\0", 4}, true),
              "<string name=\"a\"><name locale=\"de\">N</name><val>x</val><val>y</val></string>");
    EXPECT_EQ(writtenText(L"", true), "<string name=\"a\"><name locale=\"de\">N</name></string>");
}

TEST_P(PrimitiveWriting, WritesNumbersAndBytesInOneValBesideNames) {
    EXPECT_EQ(rewritten("<root name='r'><group name='g'>"
                        "<int32 name='a'><name>n</name><val>1 2</val></int32>"
                        "<binary name='b'><name>n</name><val>SGVsbG8=</val></binary>"
                        "<int32 name='c'><name>n</name></int32>"
                        "<int32 name='d' uri='u'><name>n</name></int32></group></root>"),
              "<root version=\"0\" name=\"r\"><group name=\"g\">"
              "<int32 name=\"a\"><name locale=\"en-us\">n</name><val>1 2</val></int32>"
              "<binary name=\"b\"><name locale=\"en-us\">n</name><val>SGVsbG8=</val></binary>"
              "<int32 name=\"c\"><name locale=\"en-us\">n</name></int32>"
              "<int32 name=\"d\" uri=\"u\"><name locale=\"en-us\">n</name></int32></group></root>");
}

TEST_P(PrimitiveWriting, EncodesBytes) {
    EXPECT_EQ(writtenValues<char>(metadata::kBinary, {'H', 'e', 'l', 'l', 'o'}),
              "<binary name=\"a\">SGVsbG8=</binary>");
    EXPECT_EQ(writtenValues<char>(metadata::kBinary, {'\0'}), "<binary name=\"a\">AA==</binary>");
    EXPECT_EQ(writtenValues<char>(metadata::kBinary, {}), "<binary name=\"a\"/>");
}

TEST_P(PrimitiveWriting, EncodesManyBytesAsOneText) {
    for (const std::size_t size : {49151u, 49152u, 49153u, 100'000u}) {
        std::vector<char> bytes(size);
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7);
        const std::string document = writtenValues<char>(metadata::kBinary, bytes);
        const auto fresh = GetParam().make();
        ASSERT_EQ(readInto(fresh.get(), document), kNone);
        EXPECT_EQ(valuesOf<char>(fresh.get(), 0), bytes) << size;
        using lumivard::platform::core::string::StringAlgorithm;
        std::string whole(StringAlgorithm::EncodeBase64(bytes.data(), size, nullptr), '\0');
        StringAlgorithm::EncodeBase64(bytes.data(), size, whole.data());
        EXPECT_NE(document.find(">" + whole + "<"), std::string::npos) << size;
    }
}

TEST_P(PrimitiveWriting, EscapesTextsAndNames) {
    EXPECT_EQ(rewritten("<string name='&lt;&quot;&amp;'>&lt;a&gt; &amp; b</string>"),
              "<string name=\"&lt;&quot;&amp;\">&lt;a&gt; &amp; b</string>");
}

}  // namespace
