#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

#include "tests/property/StringArrayHelpers.h"

namespace {

using namespace lumivard::platform::test_support;

// How a packed list is taken apart, and a list by itself.

TEST(StringArray, OfNoCharactersIsEmpty) {
    EXPECT_EQ(tNames{}, texts(*unpacked({})));
    EXPECT_EQ(0u, std::unique_ptr<IStringArray>(IStringArray::to(L"ab", 0))->strings());
    EXPECT_EQ(0u, std::unique_ptr<IStringArray>(IStringArray::to(nullptr, 0))->strings());
}

TEST(StringArray, EndsEachTextAtAZero) {
    EXPECT_EQ((tNames{L"ab", L"c"}), texts(*unpacked({L'a', L'b', 0, L'c', 0})));
    EXPECT_EQ(tNames{L"a"}, texts(*unpacked({L'a', 0})));
}

TEST(StringArray, DropsCharactersBehindTheLastZero) {
    EXPECT_EQ(tNames{L"ab"}, texts(*unpacked({L'a', L'b', 0, L'c', L'd'})));
    EXPECT_EQ((tNames{L"a", L"b"}), texts(*unpacked({L'a', 0, L'b', 0, L'c'})));
}

TEST(StringArray, WithoutAZeroIsEmpty) {
    EXPECT_EQ(tNames{}, texts(*unpacked({L'a', L'b', L'c'})));
    EXPECT_EQ(tNames{}, texts(*unpacked({L'a'})));
}

TEST(StringArray, HasAnEmptyTextForEachZeroWithNothingBefore) {
    EXPECT_EQ(tNames{L""}, texts(*unpacked({0})));
    EXPECT_EQ((tNames{L"", L""}), texts(*unpacked({0, 0})));
    EXPECT_EQ((tNames{L"a", L"", L"", L"b", L""}), texts(*unpacked({L'a', 0, 0, 0, L'b', 0, 0})));
    EXPECT_EQ((tNames{L"", L"a"}), texts(*unpacked({0, L'a', 0, L'b'})));
}

TEST(StringArray, LooksNoFurtherThanItsLength) {
    const wchar_t packed[] = L"ab\0cd\0ef";
    EXPECT_EQ((tNames{L"ab"}), texts(*std::unique_ptr<IStringArray>(IStringArray::to(packed, 3))));
    EXPECT_EQ((tNames{L"ab"}), texts(*std::unique_ptr<IStringArray>(IStringArray::to(packed, 5))));
    EXPECT_EQ((tNames{L"ab", L"cd"}), texts(*std::unique_ptr<IStringArray>(IStringArray::to(packed, 6))));
    EXPECT_EQ((tNames{}), texts(*std::unique_ptr<IStringArray>(IStringArray::to(packed, 2))));
}

TEST(StringArray, CopiesWhatItIsGiven) {
    std::wstring packed(L"ab\0c\0", 5);
    const std::unique_ptr<IStringArray> list(IStringArray::to(packed.data(), static_cast<unsigned int>(packed.size())));
    packed.assign(packed.size(), L'x');
    EXPECT_EQ((tNames{L"ab", L"c"}), texts(*list));
}

TEST(StringArray, KeepsEveryCharacterButZero) {
    EXPECT_EQ((tNames{L"; .\n", L"äß€\U0001F600"}),
              texts(*unpacked({L';', L' ', L'.', L'\n', 0, L'ä', L'ß', L'€', L'\U0001F600', 0})));
}

TEST(StringArray, GetsLongerByWhatIsAdded) {
    const auto list = unpacked({L'a', 0});
    list->add(L"bc");
    list->add(L"");
    list->add(nullptr);
    list->add(L"d");
    EXPECT_EQ(5u, list->strings());
    EXPECT_EQ((tNames{L"a", L"bc", L"", L"", L"d"}), texts(*list));
}

TEST(StringArray, CopiesWhatIsAdded) {
    const auto list = unpacked({});
    std::wstring added = L"ab";
    list->add(added.c_str());
    added = L"xy";
    EXPECT_EQ(tNames{L"ab"}, texts(*list));
}

TEST(StringArray, GivesCopies) {
    const auto list = unpacked({L'a', 0});
    auto got = list->get(0);
    got = L"other";
    EXPECT_EQ(L"a", text(list->get(0)));
}

TEST(StringArray, HasNothingBehindItsEnd) {
    const auto list = unpacked({L'a', 0});
    EXPECT_EQ(nullptr, list->get(1).value());
    EXPECT_EQ(nullptr, list->get(0xFFFFFFFFu).value());
}

TEST(StringArray, IsWhatWasPacked) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 200; ++round) {
        tNames expected(random() % 20);
        std::vector<wchar_t> packed;
        for (std::wstring& each : expected) {
            for (auto length = random() % 5; length > 0; --length)
                each += static_cast<wchar_t>(1 + random() % 0x10FFFF);
            packed.insert(packed.end(), each.begin(), each.end());
            packed.push_back(0);
        }
        packed.insert(packed.end(), random() % 3, L'x');
        ASSERT_EQ(expected, texts(*unpacked(packed)));
    }
}

}  // namespace
