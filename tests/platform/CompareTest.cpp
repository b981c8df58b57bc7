#include "lumivard/platform/core/hash/Compare.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace lumivard::platform::core;

TEST(Compare, PointersAreEqualByTheirAddress) {
    const std::string one = "text";
    const std::string other = "text";
    const tCompareEqual<const char*> equal;
    EXPECT_TRUE(equal(one.c_str(), one.c_str()));
    EXPECT_FALSE(equal(one.c_str(), other.c_str()));
}

TEST(Compare, WideTextsAreEqualByTheirCharacters) {
    const std::wstring one = L"text";
    const std::wstring other = L"text";
    const tWCharCompareEqual equal;
    EXPECT_TRUE(equal(one.c_str(), other.c_str()));
    EXPECT_FALSE(equal(L"text", L"texts"));
    EXPECT_FALSE(equal(L"text", L"Text"));
}

TEST(Compare, NarrowTextsAreEqualByTheirBytes) {
    const std::string one = "text";
    const std::string other = "text";
    const tCharCompareEqual equal;
    EXPECT_TRUE(equal(one.c_str(), other.c_str()));
    EXPECT_FALSE(equal("text", "tex"));
}

TEST(Compare, TextComparisonsStandInForTheirBase) {
    const tWCharCompareEqual byText;
    const tCompareEqual<const wchar_t*>& base = byText;
    const std::wstring other = L"text";
    EXPECT_TRUE(base(L"text", other.c_str()));
}

TEST(Compare, NarrowTextsAreOrderedByTheirBytes) {
    const tCharCompareLess less;
    EXPECT_TRUE(less("a", "b"));
    EXPECT_TRUE(less("a", "ab"));
    EXPECT_TRUE(less("Z", "a"));
    EXPECT_TRUE(less("z", "\xC3\xA9"));
    EXPECT_FALSE(less("a", "a"));
    EXPECT_FALSE(less("b", "a"));
}

}  // namespace
