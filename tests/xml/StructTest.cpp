#include "tests/xml/FakeLocator.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// Struct values, over layouts that a test makes up.
class Struct : public XmlTest {
protected:
    tMessages read(const std::string& document) { return XmlTest::read(document, &locator); }
    std::string written() { return XmlTest::written(0, &locator); }
    std::string writtenAgain(const std::string& document) {
        EXPECT_EQ(read(document), kNone) << document;
        return written();
    }

    /// The stored bytes of the document's one struct.
    std::string bytes() {
        const std::vector<char> all = values<char>(0);
        return {all.begin(), all.end()};
    }
    template <class... T>
    static std::string packed(T... value) {
        std::string all;
        (all.append(reinterpret_cast<const char*>(&value), sizeof(value)), ...);
        return all;
    }

    FakeLocator locator;
};
LVP_ON_EACH_STORE(Struct);

TEST_P(Struct, IsReadAndWrittenInTheOrderOfItsFields) {
    locator[L"Pose"].add(metadata::kDouble).add(metadata::kInt8, 2).add(metadata::kScalar);
    const std::string document = "<struct name=\"p\" type=\"Pose\">1.5 2 -3 0.1 7 8 9 10</struct>";
    EXPECT_EQ(writtenAgain(document), document);
    EXPECT_EQ(bytes(), packed(1.5, std::int8_t{2}, std::int8_t{-3}, 0.1f, 7.0, std::int8_t{8}, std::int8_t{9}, 10.f));
    EXPECT_STREQ(Design::Primitive(store(), 0).base(), L"Pose");
}

TEST_P(Struct, TakesEachKindOfNumberAsAField) {
    FakeLayout& layout = locator[L"All"];
    for (unsigned int kind = metadata::kBool; kind <= metadata::kMtx4x4; ++kind) {
        layout.add(static_cast<metadata::tValue>(kind));
    }
    const std::string document =
        "<struct name=\"p\" type=\"All\">1 -2 3 -4 5 -6 7 -8 9 1.5 2.5 3.5 4.5 5.5 6.5 7.5 8.5</struct>";
    EXPECT_EQ(writtenAgain(document), document);
}

TEST_P(Struct, WithoutALocatorIsRefused) {
    EXPECT_EQ(XmlTest::read("<group name='g'><struct name='p' type='Pose'>1</struct></group>"),
              tMessages{"struct : missing locator to resolve the 'type' attribute"});
}

TEST_P(Struct, WithoutATypeIsRefused) {
    EXPECT_EQ(read("<struct name='p'>1</struct>"),
              tMessages{"struct : missing mandatory 'type' attribute for <struct>"});
}

TEST_P(Struct, OfAnUnknownTypeIsKeptWithoutTypeAndValueAndNobodyIsTold) {
    EXPECT_EQ(read("<struct name='p' type='Pose' dim='3'>1 2 3</struct>"), kNone);
    EXPECT_EQ(written(), "<struct name=\"p\"/>");
    EXPECT_EQ(Design::Primitive(store(), 0).base(), nullptr);
    EXPECT_EQ(Design::Primitive(store(), 0).dimension(), 0u);
}

TEST_P(Struct, OfATypeWithoutALayoutHasNoValue) {
    locator.withoutLayout = L"Bare";
    EXPECT_EQ(writtenAgain("<struct name='p' type='Bare' dim='3'>1 2 3</struct>"),
              "<struct name=\"p\" type=\"Bare\"/>");
}

TEST_P(Struct, CountsItsDimensionInStructs) {
    locator[L"S"].add(metadata::kInt32).add(metadata::kInt8);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S' dim='2'><name>n</name></struct>"),
              "<struct name=\"p\" type=\"S\"><name locale=\"en-us\">n</name><val>0 0 0 0</val></struct>");
    EXPECT_EQ(bytes().size(), 10u);
}

TEST_P(Struct, KeepsItsDimensionBeyondTheTokens) {
    locator[L"S"].add(metadata::kInt8);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S' dim='3'>1 2</struct>"),
              "<struct name=\"p\" type=\"S\">1 2 0</struct>");
}

TEST_P(Struct, RefusesADimensionThatDoesNotFitInARecord) {
    locator[L"S"].add(metadata::kInt32);
    for (const char* dim : {"1073741824", "1073741825", "-1"}) {
        const auto fresh = GetParam().make();
        const std::string document = std::string("<struct name='p' type='S' dim='") + dim + "'><name>n</name></struct>";
        EXPECT_EQ(readInto(fresh.get(), document, &locator), kNone);
        EXPECT_EQ(Design::Primitive(fresh.get(), 0).dimension(), 0u) << dim;
    }
}

TEST_P(Struct, OfOneElementIsMadeOfAnEmptyTextToo) {
    locator[L"S"].add(metadata::kInt32);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S'/>"), "<struct name=\"p\" type=\"S\">0</struct>");
}

TEST_P(Struct, HoldsNoValuesBesideAURI) {
    locator[L"S"].add(metadata::kInt32);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S' uri='u' dim='2'>1 2</struct>"),
              "<struct name=\"p\" type=\"S\" uri=\"u\"/>");
}

TEST_P(Struct, DropsWhatDoesNotFillAWholeOne) {
    locator[L"S"].add(metadata::kInt32, 3);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S'>1 2 3 4 5</struct>"),
              "<struct name=\"p\" type=\"S\">1 2 3</struct>");
}

TEST_P(Struct, StoresNothingFromFewerTokensThanOne) {
    locator[L"S"].add(metadata::kInt32, 3);
    for (const char* text : {"", "1", "1 2"}) {
        EXPECT_EQ(writtenAgain(std::string("<struct name='p' type='S'>") + text + "</struct>"),
                  "<struct name=\"p\" type=\"S\"/>");
    }
}

TEST_P(Struct, DropsAnyNumberOfSurplusTokens) {
    locator[L"S"].add(metadata::kDouble, 1000);
    std::string text;
    for (int i = 0; i < 1999; ++i) text += "1 ";
    read("<struct name='p' type='S'>" + text + "1x</struct>");
    EXPECT_EQ(bytes().size(), 16'000u);
    const auto fresh = GetParam().make();
    readInto(fresh.get(), "<struct name='p' type='S'>" + text + "</struct>", &locator);
    EXPECT_EQ(Design::Primitive(fresh.get(), 0).valuesize(), 16'000u) << "the last token is empty";
    const auto shorter = GetParam().make();
    readInto(shorter.get(), "<struct name='p' type='S'>" + text.substr(2, text.size() - 3) + "</struct>", &locator);
    EXPECT_EQ(Design::Primitive(shorter.get(), 0).valuesize(), 8000u);
}

TEST_P(Struct, ScansANarrowFieldAtTheEndWithoutHarm) {
    locator[L"S"].add(metadata::kInt16).add(metadata::kInt8);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S'>-1 -1 1 300</struct>"),
              "<struct name=\"p\" type=\"S\">-1 -1 1 44</struct>");
    EXPECT_EQ(bytes().size(), 6u);
}

TEST_P(Struct, KeepsThePlaceOfATokenThatDoesNotScan) {
    locator[L"S"].add(metadata::kInt32, 3);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S'>1 x 3 99999999999 2 -99999999999</struct>"),
              "<struct name=\"p\" type=\"S\">1 0 3 2147483647 2 -2147483648</struct>");
}

TEST_P(Struct, LaysEachValOverTheOnesBefore) {
    locator[L"S"].add(metadata::kInt8);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S'><val>1 2 3</val><val>9</val></struct>"),
              "<struct name=\"p\" type=\"S\">9 2 3</struct>");
}

TEST_P(Struct, IsWrittenInAValBesideNames) {
    locator[L"S"].add(metadata::kInt8);
    const std::string document = "<struct name=\"p\" type=\"S\"><name locale=\"de\">n</name><val>1 2</val></struct>";
    EXPECT_EQ(writtenAgain(document), document);
}

TEST_P(Struct, ThatDoesNotResolveAnyMoreIsWrittenWithAnEmptyValBesideNames) {
    locator[L"S"].add(metadata::kInt8);
    read("<struct name='p' type='S'><name>n</name><val>1 2</val></struct>");
    FakeLocator knowsNothing;
    EXPECT_EQ(XmlTest::written(0, &knowsNothing),
              "<struct name=\"p\" type=\"S\"><name locale=\"en-us\">n</name><val/></struct>");
    EXPECT_EQ(XmlTest::written(0, nullptr), "<struct name=\"p\" type=\"S\"><name locale=\"en-us\">n</name></struct>");
}

TEST_P(Struct, ShorterThanItsLayoutIsWrittenWithoutAValue) {
    locator[L"S"].add(metadata::kInt8);
    read("<struct name='p' type='S'>1 2</struct>");
    locator[L"S"].add(metadata::kDouble);
    EXPECT_EQ(written(), "<struct name=\"p\" type=\"S\"/>");
}

TEST_P(Struct, IsWrittenAsFarAsWholeOnesGo) {
    locator[L"S"].add(metadata::kInt8);
    read("<struct name='p' type='S'>1 2 3 4 5</struct>");
    locator[L"S"].add(metadata::kInt8);
    EXPECT_EQ(written(), "<struct name=\"p\" type=\"S\">1 2 3 4</struct>");
}

TEST_P(Struct, GivesNoTokenAndNoBytesToAFieldWithoutElements) {
    locator[L"S"]
        .add(metadata::kInt8, 0)
        .add(metadata::kInt32)
        .add(metadata::kDouble, 0)
        .add(metadata::kInt8)
        .add(metadata::kInt8, 0);
    const std::string document = "<struct name=\"p\" type=\"S\">1 2 3 4</struct>";
    EXPECT_EQ(writtenAgain(document), document);
    EXPECT_EQ(bytes(), packed(1, std::int8_t{2}, 3, std::int8_t{4}));
}

TEST_P(Struct, PassesOverTheBytesOfAFieldWithoutElements) {
    locator[L"S"].add(metadata::kInt32).addOfSize(metadata::kString, 0, 8).add(metadata::kInt32);
    const std::string document = "<struct name=\"p\" type=\"S\">1 2 3 4</struct>";
    EXPECT_EQ(writtenAgain(document), document);
    EXPECT_EQ(bytes(), packed(1, 0LL, 2, 3, 0LL, 4)) << "each field lies where the layout says";
}

TEST_P(Struct, WithALayoutOfNothingHasNoValue) {
    locator[L"None"];
    locator[L"Empty"].add(metadata::kInt8, 0);
    for (const char* type : {"None", "Empty"}) {
        const auto fresh = GetParam().make();
        const std::string name = type;
        EXPECT_EQ(readInto(fresh.get(), "<struct name='p' type='" + name + "' dim='9'>1 2 3</struct>", &locator),
                  kNone);
        EXPECT_EQ(writtenFrom(fresh.get(), 0, &locator), "<struct name=\"p\" type=\"" + name + "\"/>");
    }
}

TEST_P(Struct, HoldsThePlaceOfAFieldThatIsNoNumber) {
    locator[L"S"].add(metadata::kInt32).add(metadata::kString, 2).add(metadata::kBinary).add(metadata::kInt32);
    EXPECT_EQ(writtenAgain("<struct name='p' type='S'>1 a b c 2</struct>"),
              "<struct name=\"p\" type=\"S\">1 - - - 2</struct>");
    EXPECT_EQ(bytes(), packed(1, 0, 0, '\0', 2));
}

TEST_P(Struct, SurvivesALayoutWhoseSumsAreFalse) {
    const auto tryOut = [this](const char* what) {
        const auto fresh = GetParam().make();
        readInto(fresh.get(), "<struct name='p' type='S' dim='2'>1 2 3 4 5 6 7 8 9</struct>", &locator);
        writtenFrom(fresh.get(), 0, &locator);
        read("<struct name='q' type='S'><val>1 2 3 4 5 6 7 8 9</val></struct>");
        EXPECT_EQ(stored::refs(fresh.get(), 0), 0u) << what;
    };
    FakeLayout& layout = locator[L"S"].add(metadata::kDouble).add(metadata::kInt8, 3);
    tryOut("a true one");
    for (const unsigned int number : {0u, 1u, 3u, 1000u, 0xFFFFFFFFu}) {
        layout.falseValues = number;
        tryOut("values");
        layout.falseValues.reset();
        layout.falseFields = number;
        if (number < 0xFFFFFFFFu) tryOut("fields");
        layout.falseFields.reset();
        layout.falseStride = number;
        tryOut("stride");
        layout.falseStride.reset();
    }
    layout.addOfSize(metadata::kDouble, 4, 3);
    tryOut("elements without bytes");
    layout.addOfSize(metadata::kDouble, 2, 9);
    tryOut("elements that are too short");
    layout.addOfSize(metadata::kInt8, 1, 0xFFFFFFFFu);
    tryOut("a field that is too long");
}

TEST_P(Struct, OfALayoutOfElementsWithoutBytesEnds) {
    locator[L"S"].addOfSize(metadata::kInt8, 5, 0).falseStride = 4;
    EXPECT_EQ(writtenAgain("<struct name='p' type='S'>1 2 3 4 5</struct>"), "<struct name=\"p\" type=\"S\"/>");
}

TEST_P(Struct, MergesAndIsFilledThroughTheTypeOfTheFirst) {
    locator[L"S"].add(metadata::kInt8);
    locator[L"T"].add(metadata::kInt16);
    EXPECT_EQ(writtenAgain(
                  "<group name='g'><struct name='p' type='S'>1 2</struct><struct name='p' type='T'>3</struct></group>"),
              "<group name=\"g\"><struct name=\"p\" type=\"S\">3 2</struct></group>");
}

TEST_P(Struct, AsksTheLocatorForTypesAndClassesAndForNothingAtEachStartTag) {
    locator[L"S"].add(metadata::kInt8);
    read("<group name='g' class='C'><table name='t' class=''/><struct name='p' type='S'>1</struct></group>");
    EXPECT_EQ(locator.asked, (std::vector<std::wstring>{L"", L"C", L"", L"", L"", L"S", L"S"}));
}

TEST_P(Struct, AsksTheLocatorForNothingElse) {
    read(
        "<root name='r' class='C'><group name='g'/><group name='h'><int32 name='i' type='S' "
        "class='C'/></group></root>");
    EXPECT_EQ(locator.asked, std::vector<std::wstring>(4));
}

}  // namespace
