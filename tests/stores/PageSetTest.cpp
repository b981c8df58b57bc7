#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "stores/lmdb/PageSet.h"
#include "tests/support/Campaign.h"

namespace {

using lumivard::platform::stores::lmdb::PageSet;

TEST(PageSet, HoldsWhatWasPutIn) {
    PageSet set;
    EXPECT_FALSE(set.contains(0));
    EXPECT_TRUE(set.insert(5, 3));
    EXPECT_FALSE(set.contains(4));
    EXPECT_TRUE(set.contains(5) && set.contains(7));
    EXPECT_FALSE(set.contains(8));
    EXPECT_EQ(set.size(), 3u);
}

TEST(PageSet, TakesNothingOfARangeThatMeetsAnother) {
    PageSet set;
    set.insert(10, 10);
    for (const auto& [first, count] : {std::pair{9, 2}, {10, 10}, {19, 5}, {12, 1}, {0, 100}}) {
        EXPECT_FALSE(set.insert(static_cast<unsigned>(first), static_cast<unsigned>(count))) << first;
    }
    EXPECT_EQ(set.size(), 10u);
    EXPECT_FALSE(set.contains(9) || set.contains(20));
}

TEST(PageSet, TakesARangeOfAnyLength) {
    PageSet set;
    EXPECT_TRUE(set.insert(2, std::uint64_t{1} << 47));
    EXPECT_FALSE(set.insert(1'000'000'000'000, 1));
    EXPECT_EQ(set.size(), std::uint64_t{1} << 47);
}

TEST(PageSet, IsAListOfMarks) {
    std::mt19937_64 random(lumivard::platform::test_support::seed());
    for (int round = 0; round < 100; ++round) {
        PageSet set;
        std::vector<bool> marks(200);
        std::uint64_t marked = 0;
        for (int i = 0; i < 100; ++i) {
            const std::size_t first = random() % 190;
            const std::size_t count = random() % 4 + 1;
            bool free = true;
            for (std::size_t page = first; page < first + count; ++page) free = free && !marks[page];
            ASSERT_EQ(set.insert(first, count), free);
            for (std::size_t page = first; free && page < first + count; ++page) marks[page] = true;
            marked += free ? count : 0;
            ASSERT_EQ(set.size(), marked);
            for (std::size_t page = 0; page < marks.size(); ++page) ASSERT_EQ(set.contains(page), marks[page]) << page;
        }
    }
}

}  // namespace
