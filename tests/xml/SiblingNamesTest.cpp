#include "xml/SiblingNames.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using lumivard::platform::data::SiblingNames;

std::wstring numbered(int number) {
    return L"item_" + std::to_wstring(number);
}

TEST(SiblingNames, TellNewNamesFromThoseThatCame) {
    SiblingNames names;
    EXPECT_TRUE(names.empty());
    EXPECT_TRUE(names.add(L""));
    EXPECT_FALSE(names.empty());
    EXPECT_FALSE(names.add(L""));
    EXPECT_TRUE(names.add(L"a"));
    EXPECT_TRUE(names.add(L"A"));
    EXPECT_FALSE(names.add(L"a"));
}

TEST(SiblingNames, ForgetNoneWhenTheyBecomeMany) {
    for (const std::size_t reserved : {0u, 5u, 20'000u}) {
        SiblingNames names;
        names.reserve(reserved);
        for (int i = 0; i < 10'000; ++i) ASSERT_TRUE(names.add(numbered(i))) << i;
        for (int i = 0; i < 10'000; ++i) ASSERT_FALSE(names.add(numbered(i))) << i;
    }
}

}  // namespace
