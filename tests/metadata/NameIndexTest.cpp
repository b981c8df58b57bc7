// The children of a set by their names.
#include "metadata/NameIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "record/Entity.h"
#include "tests/support/Campaign.h"
#include "tests/support/Offsets.h"

namespace {

using lumivard::platform::data::Metadata::NameIndex;
using lumivard::platform::data::Record::bytesOf;
using lumivard::platform::test_support::BADOFF;
using testing::ElementsAre;
using testing::IsEmpty;

unsigned int find(const NameIndex& index, std::wstring_view name) {
    return index.find(bytesOf(name));
}

bool insert(NameIndex& index, unsigned int offset, std::wstring_view name) {
    return index.insert(offset, bytesOf(name));
}

TEST(NameIndex, IsEmptyWhenNew) {
    const NameIndex index;
    EXPECT_EQ(index.size(), 0u);
    EXPECT_EQ(find(index, L"a"), BADOFF);
    EXPECT_THAT(index.offsets(), IsEmpty());
}

TEST(NameIndex, KeepsTheFirstChildOfAName) {
    NameIndex index;
    EXPECT_TRUE(insert(index, 7, L"a"));
    EXPECT_FALSE(insert(index, 8, L"a"));
    EXPECT_EQ(find(index, L"a"), 7u);
    EXPECT_EQ(index.size(), 1u);
}

TEST(NameIndex, TakesTheEmptyNameAndTellsNamesOfOneEndApart) {
    NameIndex index;
    EXPECT_TRUE(insert(index, 1, L""));
    EXPECT_TRUE(insert(index, 2, L"ab"));
    EXPECT_TRUE(insert(index, 3, L"cb"));
    EXPECT_TRUE(insert(index, 4, L"b"));
    EXPECT_EQ(find(index, L""), 1u);
    EXPECT_EQ(find(index, L"ab"), 2u);
    EXPECT_EQ(find(index, L"cb"), 3u);
    EXPECT_EQ(find(index, L"b"), 4u);
}

TEST(NameIndex, FindsNoneThatWasTakenOut) {
    NameIndex index;
    insert(index, 1, L"a");
    insert(index, 2, L"b");
    index.erase(bytesOf(L"a"));
    index.erase(bytesOf(L"c"));
    EXPECT_EQ(find(index, L"a"), BADOFF);
    EXPECT_EQ(find(index, L"b"), 2u);
    EXPECT_TRUE(insert(index, 3, L"a"));
    EXPECT_THAT(index.offsets(), ElementsAre(2, 3));
}

TEST(NameIndex, IsCopiedWithAllThatIsInIt) {
    NameIndex index;
    for (unsigned int number = 0; number < 100; ++number) insert(index, number, std::to_wstring(number));
    NameIndex copy(index);
    copy.erase(bytesOf(L"5"));
    EXPECT_EQ(find(index, L"5"), 5u);
    EXPECT_EQ(find(copy, L"5"), BADOFF);
    EXPECT_EQ(find(copy, L"99"), 99u);
}

// As clients do that make and destroy children all the time: tables of a few, of many, and back.
TEST(NameIndex, IsAMapInTheOrderOfComing) {
    std::mt19937_64 random(lumivard::platform::test_support::seed());
    NameIndex index;
    std::map<std::wstring, unsigned int> model;
    std::size_t names = 10;
    for (unsigned int step = 0; step < 20'000; ++step) {
        if (step % 500 == 0) names = 1 + random() % (step % 1000 == 0 ? 10 : 400);
        const std::wstring name = L"name_" + std::to_wstring(random() % names);
        if (random() % 3 != 0) {
            ASSERT_EQ(insert(index, step, name), model.try_emplace(name, step).second);
        } else {
            index.erase(bytesOf(name));
            model.erase(name);
        }
        ASSERT_EQ(index.size(), model.size());
        const auto known = model.find(name);
        ASSERT_EQ(find(index, name), known == model.end() ? BADOFF : known->second);
        if (step % 500 != 0) continue;
        std::vector<unsigned int> offsets;
        for (const auto& [text, offset] : model) {
            ASSERT_EQ(find(index, text), offset);
            offsets.push_back(offset);
        }
        std::sort(offsets.begin(), offsets.end());
        ASSERT_EQ(index.offsets(), offsets);
    }
}

TEST(NameIndex, DoesNotGrowWithoutEndWhereNamesComeAndGo) {
    NameIndex index;
    insert(index, 1, L"stays");
    for (unsigned int number = 0; number < 100'000; ++number) {
        const std::wstring name = std::to_wstring(number);
        insert(index, number + 2, name);
        index.erase(bytesOf(name));
    }
    EXPECT_EQ(index.size(), 1u);
    EXPECT_EQ(find(index, L"stays"), 1u);
    EXPECT_LT(index.footprint(), 10'000u);
}

}  // namespace
