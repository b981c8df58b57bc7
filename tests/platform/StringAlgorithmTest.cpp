#include "lumivard/platform/core/string/StringAlgorithm.h"

#include <clocale>
#include <cwchar>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "lumivard/platform/core/string/WideString.h"

namespace {

using lumivard::platform::core::string::StringAlgorithm;
using lumivard::platform::core::string::WideString;

std::wstring decoded(const char* text) {
    return StringAlgorithm::UTF8Decode(text);
}

TEST(UTF8Decode, OfNullIsEmpty) {
    EXPECT_EQ(decoded(nullptr), L"");
    EXPECT_EQ(decoded(""), L"");
}

TEST(UTF8Decode, TakesEachLengthOfSequence) {
    EXPECT_EQ(decoded("A\x7F"), L"A\x7F");
    EXPECT_EQ(decoded("\xC2\x80\xDF\xBF"), L"\x80\x7FF");
    EXPECT_EQ(decoded("\xE0\xA0\x80\xEF\xBF\xBF"), L"\x800\xFFFF");
    EXPECT_EQ(decoded("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), L"\x10000\x10FFFF");
}

struct Broken {
    const char* bytes;
    const wchar_t* expected;
};

TEST(UTF8Decode, ReplacesWhatIsNoUTF8) {
    const Broken table[] = {
        {"a\xE2\x82", L"a\xFFFD"},                      // broken off by the end
        {"\xC3", L"\xFFFD"},                            //
        {"\xE2\x82z", L"\xFFFDz"},                      // broken off by another character
        {"\xF0z", L"\xFFFDz"},                          //
        {"\x80\xBF", L"\xFFFD\xFFFD"},                  // continuation bytes alone
        {"\xFF\xFEz", L"\xFFFD\xFFFDz"},                // bytes that UTF-8 never has
        {"\xC0\x80z", L"\xFFFDz"},                      // longer than need be
        {"\xE0\x9F\xBFz", L"\xFFFDz"},                  //
        {"\xED\xA0\x80z", L"\xFFFDz"},                  // a surrogate
        {"\xF4\x90\x80\x80z", L"\xFFFDz"},              // beyond the last character
        {"\xC3\xA9\xC3(\xC3\xA9", L"\xE9\xFFFD(\xE9"},  // good ones around
    };
    for (const auto& [bytes, expected] : table) EXPECT_EQ(decoded(bytes), expected) << bytes;
}

TEST(UTF8Decode, TakesViewsWithZerosIntoStringsThatAreThere) {
    std::wstring out = L"what was there before";
    StringAlgorithm::UTF8Decode(std::string_view("a\0b", 3), out);
    EXPECT_EQ(out, std::wstring(L"a\0b", 3));
    StringAlgorithm::UTF8Decode(std::string_view(), out);
    EXPECT_EQ(out, L"");
    StringAlgorithm::UTF8Decode(std::string_view("\xC3\xA9x").substr(0, 2), out);
    EXPECT_EQ(out, L"\xE9");
}

TEST(UTF8Decode, IsTheSameForTextsOfAllLengths) {
    for (std::size_t length = 0; length < 200; ++length) {
        const std::string plain(length, 'x');
        const std::wstring wide(length, L'x');
        EXPECT_EQ(decoded(plain.c_str()), wide);
        EXPECT_EQ(decoded((plain + "\xC3\xA9").c_str()), wide + L"\xE9");
        EXPECT_EQ(decoded(("\xE2\x82" + plain).c_str()), L"\xFFFD" + wide);
    }
}

TEST(UTF8Decode, DoesNotLookAtTheLocale) {
    for (const char* locale : {"C", "C.UTF-8"}) {
        std::setlocale(LC_ALL, locale);
        EXPECT_EQ(decoded("\xC3\xA9"), L"\xE9") << locale;
    }
    std::setlocale(LC_ALL, "C");
}

wchar_t scalarValue(unsigned number) {
    number %= 0x10FFFF - 0x800;
    return static_cast<wchar_t>(number + (number < 0xD7FF ? 1 : 0x801));
}

RC_GTEST_PROP(UTF8Decode, GivesBackEachTextThatWasEncoded, (const std::vector<unsigned>& numbers)) {
    std::wstring text;
    for (unsigned number : numbers) text += scalarValue(number);
    RC_ASSERT(decoded(WideString(text.c_str()).string().c_str()) == text);
}

RC_GTEST_PROP(UTF8Decode, GivesCharactersForAnyBytes, (const std::string& bytes)) {
    for (const wchar_t character : decoded(bytes.c_str())) {
        const auto number = static_cast<char32_t>(character);
        RC_ASSERT(number != 0 && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF));
    }
}

std::string encoded64(const std::string& bytes) {
    std::string text(StringAlgorithm::EncodeBase64(bytes.data(), bytes.size(), nullptr), '?');
    EXPECT_EQ(StringAlgorithm::EncodeBase64(bytes.data(), bytes.size(), text.data()), text.size());
    return text;
}

std::string decoded64(const char* text) {
    std::string bytes(StringAlgorithm::DecodeBase64(text, nullptr), '?');
    EXPECT_EQ(StringAlgorithm::DecodeBase64(text, bytes.data()), bytes.size());
    return bytes;
}

struct Pair {
    const char* bytes;
    const char* text;
};

TEST(Base64, PassesTheVectorsOfItsStandard) {
    const Pair table[] = {{"", ""},
                          {"f", "Zg=="},
                          {"fo", "Zm8="},
                          {"foo", "Zm9v"},
                          {"foob", "Zm9vYg=="},
                          {"fooba", "Zm9vYmE="},
                          {"foobar", "Zm9vYmFy"},
                          {"\xFB\xEF\xBE\xFF", "++++/w=="}};
    for (const auto& [bytes, text] : table) {
        EXPECT_EQ(encoded64(bytes), text);
        EXPECT_EQ(decoded64(text), bytes);
    }
}

TEST(Base64, EncodesOnOneLine) {
    EXPECT_EQ(encoded64(std::string(300, 'x')).size(), 400u);
    EXPECT_EQ(encoded64(std::string(300, 'x')).find('\n'), std::string::npos);
}

TEST(Base64, EncodesWithoutATerminator) {
    char out[5] = "????";
    EXPECT_EQ(StringAlgorithm::EncodeBase64("f", 1, out), 4u);
    EXPECT_EQ(out[4], '\0');
    char tight[] = {'?', '?', '?', '?', '!'};
    StringAlgorithm::EncodeBase64("foo", 3, tight);
    EXPECT_EQ(tight[4], '!');
}

TEST(Base64, DecodesEmbeddedZeroBytes) {
    EXPECT_EQ(encoded64(std::string(3, '\0')), "AAAA");
    EXPECT_EQ(decoded64("AAAA"), std::string(3, '\0'));
    EXPECT_EQ(decoded64("AA=="), std::string(1, '\0'));
}

TEST(Base64, DecodesWithoutPadding) {
    EXPECT_EQ(decoded64("Zg"), "f");
    EXPECT_EQ(decoded64("Zg="), "f");
    EXPECT_EQ(decoded64("Zm8"), "fo");
    EXPECT_EQ(decoded64("Zm9vYg"), "foob");
}

TEST(Base64, DecodesThroughWhiteSpace) {
    EXPECT_EQ(decoded64(" Z\tm\r\n9 v\n"), "foo");
    EXPECT_EQ(decoded64("Zg = =\n"), "f");
    EXPECT_EQ(decoded64(" \n "), "");
}

TEST(Base64, DoesNotLookAtBitsThatFillNoByte) {
    EXPECT_EQ(decoded64("Zh=="), "f");
    EXPECT_EQ(decoded64("Zm9="), "fo");
}

TEST(Base64, DecodesNothingFromWhatIsNotBase64) {
    const char* table[] = {
        "Zm9v!",  "Zm9v-",    "_m9v",     "Zm.9v",    "Zm9\xC3\xA9", "Zm9\x7F", "Zm9\v",  // foreign characters
        "Zg==Zg", "Zg==Zg==", "Z=g=",     "Zm8=Zm9v",                                     // padding in the middle
        "Z",      "Zm9vY",    "Zm9vY===",                                                 // a last group of one
        "=",      "====",     "Zm9v=",    "Zg===",    "Zm8==",                            // more padding than is due
    };
    for (const char* text : table) {
        EXPECT_EQ(StringAlgorithm::DecodeBase64(text, nullptr), 0u) << text;
        char out[] = "????????";
        EXPECT_EQ(StringAlgorithm::DecodeBase64(text, out), 0u) << text;
        EXPECT_STREQ(out, "????????") << text;
    }
}

TEST(Base64, OfNothingIsNothing) {
    EXPECT_EQ(StringAlgorithm::EncodeBase64(nullptr, 0, nullptr), 0u);
    EXPECT_EQ(StringAlgorithm::DecodeBase64(nullptr, nullptr), 0u);
    EXPECT_EQ(StringAlgorithm::DecodeBase64("", nullptr), 0u);
}

TEST(Base64, CarriesEachByteInEachPlace) {
    for (int value = 0; value < 256; ++value) {
        for (unsigned long place = 0; place < 3; ++place) {
            std::string bytes(3, '\x5A');
            bytes[place] = static_cast<char>(value);
            EXPECT_EQ(decoded64(encoded64(bytes).c_str()), bytes);
        }
    }
}

RC_GTEST_PROP(Base64, GivesBackAllBytes, (const std::vector<unsigned char>& values)) {
    const std::string bytes(values.begin(), values.end());
    RC_ASSERT(decoded64(encoded64(bytes).c_str()) == bytes);
}

RC_GTEST_PROP(Base64, TellsTheSameSizeWithAndWithoutOutput, (const std::string& text)) {
    const std::string terminated = text.c_str();
    std::vector<char> out(terminated.size() + 1);
    RC_ASSERT(StringAlgorithm::DecodeBase64(terminated.c_str(), nullptr) ==
              StringAlgorithm::DecodeBase64(terminated.c_str(), out.data()));
}

}  // namespace
