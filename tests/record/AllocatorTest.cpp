// The sizes of the buffers that records are given.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "record/Base.h"

namespace {

namespace Record = lumivard::platform::data::Record;

TEST(Allocator, KnowsThirteenSizes) {
    EXPECT_THAT(Record::kpAllocations,
                testing::ElementsAre(8, 16, 32, 48, 64, 96, 128, 256, 512, 1024, 2048, 4096, 16384));
}

TEST(Allocator, GivesNothingForNothing) {
    EXPECT_EQ(Record::allocator(0), 0u);
}

TEST(Allocator, GivesASizeOfTheTableItself) {
    for (const unsigned int size : Record::kpAllocations) EXPECT_EQ(Record::allocator(size), size);
}

TEST(Allocator, GivesTheNextSizeOfTheTableForWhatLiesBetween) {
    EXPECT_EQ(Record::allocator(1), 8u);
    for (std::size_t i = 1; i < Record::kpAllocations.size(); ++i) {
        EXPECT_EQ(Record::allocator(Record::kpAllocations[i - 1] + 1), Record::kpAllocations[i]);
        EXPECT_EQ(Record::allocator(Record::kpAllocations[i] - 1), Record::kpAllocations[i]);
    }
}

TEST(Allocator, RoundsNothingAboveItsLargestSize) {
    EXPECT_EQ(Record::allocator(16385), 16385u);
    EXPECT_EQ(Record::allocator(100001), 100001u);
    EXPECT_EQ(Record::allocator(0xFFFFFFFFu), 0xFFFFFFFFu);
}

}  // namespace
