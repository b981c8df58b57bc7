// Texts, wide and in UTF-8, one and several.
#include <string>
#include <vector>

#include "tests/easy/EasyFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using tWide = std::vector<std::wstring>;
using tNarrow = std::vector<std::string>;

class EasyTexts : public EasyTest {};
LVP_ON_EACH_STORE(EasyTexts);

TEST_P(EasyTexts, ArePackedWithTheirEnds) {
    EXPECT_TRUE(easy::set(model(), L"one", L"ab"));
    EXPECT_TRUE(easy::set(model(), L"two", tWide{L"a", L"", L"b"}));
    EXPECT_EQ(kindAt(L"one"), metadata::kString);
    EXPECT_THAT(stored<wchar_t>(L"one"), ElementsAre(L'a', L'b', L'\0'));
    EXPECT_THAT(stored<wchar_t>(L"two"), ElementsAre(L'a', L'\0', L'\0', L'b', L'\0'));
}

TEST_P(EasyTexts, ComeBackWideAndInUtf8) {
    EXPECT_TRUE(easy::set(model(), L"wide", std::wstring(L"Zo\u00eb \U0001F600")));
    EXPECT_TRUE(easy::set(model(), L"narrow", std::string("Zo\xC3\xAB \xF0\x9F\x98\x80")));
    EXPECT_TRUE(easy::set(model(), L"letters", "ab"));
    for (const wchar_t* path : {L"wide", L"narrow"}) {
        EXPECT_THAT(easy::get<std::wstring>(model(), path), Optional(std::wstring(L"Zo\u00eb \U0001F600")));
        EXPECT_THAT(easy::get<std::string>(model(), path), Optional(std::string("Zo\xC3\xAB \xF0\x9F\x98\x80")));
    }
    EXPECT_THAT(easy::get<std::wstring>(model(), L"letters"), Optional(std::wstring(L"ab")));
}

TEST_P(EasyTexts, ComeBackAsAList) {
    EXPECT_TRUE(easy::set(model(), L"wide", tWide{L"a", L"", L"b\u00eb"}));
    EXPECT_TRUE(easy::set(model(), L"narrow", tNarrow{"a", "", "b\xC3\xAB"}));
    for (const wchar_t* path : {L"wide", L"narrow"}) {
        EXPECT_THAT(easy::get<tWide>(model(), path), Optional(ElementsAre(L"a", L"", L"b\u00eb"))) << path;
        EXPECT_THAT(easy::get<tNarrow>(model(), path), Optional(ElementsAre("a", "", "b\xC3\xAB"))) << path;
    }
}

TEST_P(EasyTexts, AreGivenAloneWhereThereIsExactlyOne) {
    EXPECT_TRUE(easy::set(model(), L"none", tWide()));
    EXPECT_TRUE(easy::set(model(), L"empty", L""));
    EXPECT_TRUE(easy::set(model(), L"two", tWide{L"a", L"b"}));
    EXPECT_FALSE(easy::get<std::wstring>(model(), L"none"));
    EXPECT_THAT(easy::get<tWide>(model(), L"none"), Optional(IsEmpty()));
    EXPECT_THAT(easy::get<std::wstring>(model(), L"empty"), Optional(std::wstring()));
    EXPECT_THAT(easy::get<tNarrow>(model(), L"empty"), Optional(ElementsAre("")));
    EXPECT_FALSE(easy::get<std::string>(model(), L"two"));
}

TEST_P(EasyTexts, EndWithAZeroOrAreNone) {
    put<wchar_t>(L"broken", metadata::kString, {L'a', L'\0', L'b'});
    EXPECT_THAT(easy::get<std::wstring>(model(), L"broken"), Optional(std::wstring(L"a")));
    put<wchar_t>(L"open", metadata::kString, {L'a', L'b'});
    EXPECT_FALSE(easy::get<std::wstring>(model(), L"open"));
    EXPECT_THAT(easy::get<tWide>(model(), L"open"), Optional(IsEmpty()));
}

TEST_P(EasyTexts, ReplaceLongerOnes) {
    EXPECT_TRUE(easy::set(model(), L"t", tWide{L"long", L"longer"}));
    EXPECT_TRUE(easy::set(model(), L"t", L"b"));
    EXPECT_THAT(easy::get<tWide>(model(), L"t"), Optional(ElementsAre(L"b")));
    EXPECT_TRUE(easy::set(model(), L"t", tNarrow()));
    EXPECT_THAT(easy::get<tWide>(model(), L"t"), Optional(IsEmpty()));
}

TEST_P(EasyTexts, AreOfEachKindOfText) {
    using namespace metadata;
    for (const tValue kind : {kUUID, kString, kTime, kURI, kVersion}) {
        EXPECT_TRUE(easy::set(model(), L"t", L"text", kind));
        EXPECT_EQ(kindAt(L"t"), kind);
        EXPECT_TRUE(easy::set(model(), L"t", "other")) << "whichever it is";
        EXPECT_THAT(easy::get<std::wstring>(model(), L"t"), Optional(std::wstring(L"other")));
        EXPECT_TRUE(model().destroy(L"t"));
    }
    put<int>(L"number", kInt32, {1});
    put<char>(L"bytes", kBinary, {1});
    EXPECT_FALSE(easy::get<std::wstring>(model(), L"number"));
    EXPECT_FALSE(easy::get<tNarrow>(model(), L"bytes"));
    EXPECT_FALSE(easy::set(model(), L"number", L"text"));
    EXPECT_FALSE(easy::set(model(), L"bytes", tNarrow{"text"}));
}

TEST_P(EasyTexts, WithAZeroInsideAreRefused) {
    EXPECT_TRUE(easy::set(model(), L"t", L"old"));
    EXPECT_FALSE(easy::set(model(), L"t", std::wstring(L"a\0b", 3)));
    EXPECT_FALSE(easy::set(model(), L"t", std::string("a\0b", 3)));
    EXPECT_FALSE(easy::set(model(), L"t", tWide{L"a", std::wstring(L"\0", 1)}));
    EXPECT_FALSE(easy::set(model(), L"t", tNarrow{"a", std::string("b\0", 2)}));
    EXPECT_FALSE(easy::set(model(), L"new", std::wstring(L"a\0b", 3)));
    EXPECT_THAT(easy::get<tWide>(model(), L"t"), Optional(ElementsAre(L"old")));
    EXPECT_FALSE(top()->has(L"new"));
}

TEST_P(EasyTexts, ThatAreNoUtf8GetReplacements) {
    EXPECT_TRUE(easy::set(model(), L"t", "a\xFF"));
    EXPECT_THAT(easy::get<std::wstring>(model(), L"t"), Optional(std::wstring(L"a\uFFFD")));
}

TEST_P(EasyTexts, WithCharactersThatAreNoneGetReplacementsInUtf8) {
    put<wchar_t>(L"t", metadata::kString, {static_cast<wchar_t>(0x7FFFFFFF), L'a', L'\0'});
    EXPECT_THAT(easy::get<std::string>(model(), L"t"), Optional(std::string("\xEF\xBF\xBD"
                                                                            "a")));
}

}  // namespace
