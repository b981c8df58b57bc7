#include "lumivard/platform/core/string/WideString.h"

#include <clocale>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using lumivard::platform::core::string::WideString;

constexpr unsigned long kNotFound = ~0ul;

TEST(WideString, WithoutCharactersIsNoText) {
    for (const WideString& text : {WideString(), WideString(nullptr), WideString(L"")}) {
        EXPECT_EQ(text.value(), nullptr);
        EXPECT_EQ(text.length(), 0u);
        EXPECT_EQ(text.bytes(), 0u);
        EXPECT_EQ(text.string(), "");
        const wchar_t* characters = text;
        ASSERT_NE(characters, nullptr);
        EXPECT_EQ(*characters, L'\0');
    }
}

TEST(WideString, CopiesItsText) {
    std::wstring source = L"steel";
    const WideString text(source.c_str());
    source = L"brass";
    EXPECT_STREQ(text.value(), L"steel");
    EXPECT_STREQ(static_cast<const wchar_t*>(text), L"steel");
}

TEST(WideString, IsAValue) {
    WideString text(L"steel");
    const WideString copy(text);
    WideString assigned;
    assigned = text;
    text = WideString(L"brass");
    EXPECT_STREQ(copy.value(), L"steel");
    EXPECT_STREQ(assigned.value(), L"steel");
    EXPECT_STREQ(text.value(), L"brass");
    const WideString moved(std::move(text));
    EXPECT_STREQ(moved.value(), L"brass");
}

TEST(WideString, IsTheSameInsideTheObjectAndOutside) {
    std::vector<std::wstring> texts;
    for (const std::size_t length : {0u, 1u, 22u, 23u, 24u, 25u, 1000u}) texts.emplace_back(length, L'a' + length % 7);
    for (const std::wstring& text : texts) {
        for (const std::wstring& other : texts) {
            WideString copied(text.c_str());
            copied = WideString(other.c_str());
            const WideString copy = copied;
            EXPECT_EQ(std::wstring(copied), other);
            EXPECT_EQ(std::wstring(copy), other);
            EXPECT_EQ(copied.value() == nullptr, other.empty());

            WideString assigned(text.c_str());
            assigned = copy;
            EXPECT_EQ(std::wstring(assigned), other);
            assigned = *&assigned;
            EXPECT_EQ(std::wstring(assigned), other);

            WideString moved = std::move(assigned);
            EXPECT_EQ(std::wstring(moved), other);
            EXPECT_EQ(assigned.value(), nullptr);  // NOLINT(bugprone-use-after-move): no text was left there
            EXPECT_EQ(std::wstring(assigned), L"");
            assigned = WideString(text.c_str());
            EXPECT_EQ(std::wstring(assigned), text);
            EXPECT_EQ(std::wstring(moved.substr(0, -1)), other);
        }
    }
}

TEST(WideString, CountsCharactersAndTheirBytes) {
    const WideString text(L"a\x1F600");
    EXPECT_EQ(text.length(), 2u);
    EXPECT_EQ(text.bytes(), 8u);
}

TEST(WideString, FindsTheLastOccurrence) {
    const WideString path(L"a.b.c");
    EXPECT_EQ(path.rfind(L'.'), 3u);
    EXPECT_EQ(path.rfind(L'a'), 0u);
    EXPECT_EQ(path.rfind(L'x'), kNotFound);
    EXPECT_EQ(path.rfind(L'\0'), kNotFound);
    EXPECT_EQ(WideString().rfind(L'.'), kNotFound);
}

TEST(WideString, SubstrTakesAsManyCharactersAsThereAre) {
    const WideString text(L"abcde");
    EXPECT_STREQ(text.substr(1, 2).value(), L"bc");
    EXPECT_STREQ(text.substr(0, 5).value(), L"abcde");
    EXPECT_STREQ(text.substr(3, 100).value(), L"de");
    EXPECT_EQ(text.substr(1, 0).value(), nullptr);
}

TEST(WideString, SubstrRunsToTheEndForMinusOne) {
    const WideString text(L"abcde");
    EXPECT_STREQ(text.substr(0, -1).value(), L"abcde");
    EXPECT_STREQ(text.substr(4, -1).value(), L"e");
}

TEST(WideString, SubstrPastTheEndIsEmpty) {
    const WideString text(L"abcde");
    EXPECT_EQ(text.substr(5, -1).value(), nullptr);
    EXPECT_EQ(text.substr(kNotFound, 1).value(), nullptr);
}

TEST(WideString, StringIsUTF8) {
    EXPECT_EQ(WideString(L"A\x7F\x80\x7FF\x800\xFFFF\x10000\x10FFFF").string(),
              "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(WideString, StringReplacesWhatIsNoCharacter) {
    const wchar_t text[] = {L'a',
                            static_cast<wchar_t>(0xD800),
                            static_cast<wchar_t>(0xDFFF),
                            static_cast<wchar_t>(0x110000),
                            static_cast<wchar_t>(0xFFFFFFFF),
                            L'b',
                            0};
    EXPECT_EQ(WideString(text).string(),
              "a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
              "b");
}

TEST(WideString, StringDoesNotLookAtTheLocale) {
    const WideString text(L"\x00E9\x4E16");
    for (const char* locale : {"C", "C.UTF-8"}) {
        std::setlocale(LC_ALL, locale);
        EXPECT_EQ(text.string(), "\xC3\xA9\xE4\xB8\x96") << locale;
    }
    std::setlocale(LC_ALL, "C");
}

}  // namespace
