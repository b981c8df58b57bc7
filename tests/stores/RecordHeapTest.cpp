#include "stores/core/RecordHeap.h"

#include <cstdint>
#include <cstring>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace lumivard::platform::stores {
namespace {

constexpr unsigned int kShared = 1016;  // bytes of the longest record that shares a slab

/// A heap that shares slabs whatever watches it.
class RecordHeapTest : public testing::Test {
protected:
    RecordBytes made(unsigned int size, char fill = 'a') {
        RecordBytes bytes;
        assign(bytes, size, fill);
        return bytes;
    }
    void assign(RecordBytes& bytes, unsigned int size, char fill = 'a') {
        heap.assign(bytes, std::string(size, fill).data(), size);
    }
    static std::string text(const RecordBytes& bytes) {
        return {reinterpret_cast<const char*>(bytes.view().data()), bytes.size()};
    }

    RecordHeap heap{kShared};
};

TEST_F(RecordHeapTest, BlocksGrowByDoublingSoThatSmallAppendsAreCheap) {
    RecordBytes bytes;
    int moves = 0;
    const std::byte* block = nullptr;
    for (int i = 0; i < 100000; ++i) {
        heap.append(bytes, "abcd", 4);
        if (bytes.view().data() != block) ++moves;
        block = bytes.view().data();
    }
    EXPECT_EQ(bytes.size(), 400000U);
    EXPECT_LE(moves, 20);
}

TEST_F(RecordHeapTest, ContentsOfTheSameLengthStayInTheirBlock) {
    for (const unsigned int size : {1U, 8U, 100U, kShared, kShared + 1, 100000U}) {
        RecordBytes bytes = made(size);
        const std::byte* const block = bytes.view().data();
        assign(bytes, size, 'b');
        EXPECT_EQ(bytes.view().data(), block) << size;
        EXPECT_EQ(text(bytes), std::string(size, 'b')) << size;
    }
}

TEST_F(RecordHeapTest, ALargeBlockIsNotKeptForALittle) {
    for (const unsigned int size : {200U, 100000U}) {
        RecordBytes bytes = made(size);
        const std::byte* const block = bytes.view().data();
        assign(bytes, 6, 'b');
        EXPECT_NE(bytes.view().data(), block) << size;
        EXPECT_EQ(text(bytes), "bbbbbb") << size;
    }
}

TEST_F(RecordHeapTest, WhatWasReleasedHasNoContents) {
    RecordBytes bytes;
    heap.append(bytes, "abcd", 4);
    heap.release(bytes);
    EXPECT_EQ(bytes.size(), 0U);
    EXPECT_EQ(bytes.view().data(), nullptr);
    heap.release(bytes);
    heap.append(bytes, "x", 1);
    EXPECT_EQ(text(bytes), "x");
}

TEST_F(RecordHeapTest, WhatIsCopiedMayBeBytesOfTheRecordItself) {
    for (const unsigned int size : {100U, 600U, 5000U}) {
        std::string expected(size / 2, 'a');
        RecordBytes bytes = made(size / 2);
        heap.append(bytes, std::string(size / 2, 'b').data(), size / 2);
        expected.append(size / 2, 'b');
        for (int round = 0; round < 3; ++round) {
            heap.append(bytes, bytes.view().data() + 3, bytes.size() - 3);
            expected.append(std::string(expected, 3));
            ASSERT_EQ(text(bytes), expected) << size;
        }
        heap.assign(bytes, bytes.view().data() + 1, bytes.size() - 1);
        heap.overwrite(bytes, 0, bytes.view().data() + 1, 10);
        expected.erase(0, 1);
        expected.replace(0, 10, std::string(expected, 1, 10));
        ASSERT_EQ(text(bytes), expected) << size;
        heap.assign(bytes, bytes.view().data() + 5, 20);
        ASSERT_EQ(text(bytes), expected.substr(5, 20)) << size;
    }
}

TEST_F(RecordHeapTest, NoBytesNeedNoBlock) {
    RecordBytes bytes;
    heap.assign(bytes, nullptr, 0);
    heap.append(bytes, nullptr, 0);
    EXPECT_EQ(bytes.view().data(), nullptr);
    EXPECT_EQ(heap.footprint(), 0U);
}

TEST_F(RecordHeapTest, BlocksOfAllLengthsKeepTheirBytesAndSharedOnesBeginAtMultiplesOf8) {
    std::vector<RecordBytes> all;
    for (unsigned int size = 1; size <= kShared + 100; ++size) all.push_back(made(size, static_cast<char>(size)));
    for (unsigned int size = 1; size <= kShared + 100; ++size) {
        const RecordBytes& bytes = all[size - 1];
        const auto address = reinterpret_cast<std::uintptr_t>(bytes.view().data());
        EXPECT_TRUE(size > kShared || address % 8 == 0) << size;
        ASSERT_EQ(text(bytes), std::string(size, static_cast<char>(size)));
    }
}

TEST_F(RecordHeapTest, AShortRecordCostsNoMoreThanItsBytesRoundedUpTo8) {
    constexpr std::size_t kMany = 200000;
    std::vector<RecordBytes> all;
    for (std::size_t i = 0; i < kMany; ++i) all.push_back(made(120));
    EXPECT_LT(heap.footprint(), kMany * 120 + (std::size_t{8} << 20));
}

TEST_F(RecordHeapTest, AReleasedBlockIsTheNextOneOfItsLength) {
    std::vector<RecordBytes> all;
    for (int i = 0; i < 5000; ++i) all.push_back(made(100));
    const std::byte* const block = all[1234].view().data();
    heap.release(all[1234]);
    EXPECT_EQ(made(99).view().data(), block);
}

TEST_F(RecordHeapTest, RecordsThatAreErasedAndMadeTakeNoMoreMemoryEachTime) {
    std::vector<RecordBytes> all(20000);
    for (RecordBytes& bytes : all) assign(bytes, 120);
    const std::size_t most = heap.footprint();
    for (int round = 0; round < 20; ++round) {
        for (RecordBytes& bytes : all) heap.release(bytes);
        for (RecordBytes& bytes : all) assign(bytes, 120);
    }
    EXPECT_EQ(heap.footprint(), most);
}

TEST_F(RecordHeapTest, SlabsOfOneLengthServeAnotherWhenNothingOfThemIsUsed) {
    std::vector<RecordBytes> all(20000);
    for (unsigned int size = 8; size <= kShared; size += 8) {
        for (RecordBytes& bytes : all) assign(bytes, size);
    }
    // Of records of 1,008 bytes that become 1,016 long one by one, one length or the other is there at any time.
    EXPECT_LT(heap.footprint(), 20000 * kShared * 5 / 4);
}

TEST_F(RecordHeapTest, ARandomSeriesOfChangesIsBoundedByTheMostThatWasUsedAtATime) {
    std::mt19937 random(7);
    std::vector<RecordBytes> all(3000);
    std::vector<std::string> expected(all.size());
    for (int step = 0; step < 300000; ++step) {
        const std::size_t i = random() % all.size();
        const auto size = static_cast<unsigned int>(random() % (step % 50 == 0 ? 3000 : 300));
        const auto fill = static_cast<char>(random());
        switch (random() % 4) {
            case 0:
                heap.release(all[i]);
                expected[i].clear();
                break;
            case 1:
                if (expected[i].size() > 1500) break;
                heap.append(all[i], std::string(size, fill).data(), size);
                expected[i].append(size, fill);
                break;
            default:
                assign(all[i], size, fill);
                expected[i].assign(size, fill);
        }
        ASSERT_EQ(all[i].size(), expected[i].size());
    }
    for (std::size_t i = 0; i < all.size(); ++i) ASSERT_EQ(text(all[i]), expected[i]) << i;
    EXPECT_LT(heap.footprint(), std::size_t{24} << 20);
}

TEST_F(RecordHeapTest, ClearGivesEverythingBack) {
    for (int i = 0; i < 50000; ++i) made(100);
    for (int i = 0; i < 10; ++i) made(100000);
    EXPECT_GT(heap.footprint(), 6000000U);
    heap.clear();
    EXPECT_EQ(heap.footprint(), 0U);
    EXPECT_EQ(text(made(5)), "aaaaa");
}

TEST_F(RecordHeapTest, LongRecordsAreGivenBackInAnyOrder) {
    std::vector<RecordBytes> all;
    for (int i = 0; i < 5; ++i) all.push_back(made(5000));
    for (const std::size_t i : {2U, 0U, 4U, 1U, 3U}) heap.release(all[i]);
    EXPECT_EQ(heap.footprint(), 0U);
}

// --- Lent contents

/// Bytes of somebody else, of each length that may be lent.
class LentContents : public RecordHeapTest {
protected:
    RecordBytes lent(const std::string& contents) {
        RecordBytes bytes;
        heap.lend(bytes, std::as_bytes(std::span(contents)));
        return bytes;
    }
    void overwrite(RecordBytes& bytes, unsigned int position, const std::string& with) {
        heap.overwrite(bytes, position, with.data(), static_cast<unsigned int>(with.size()));
    }
};

TEST_F(LentContents, AreShownWhereTheyLieAndTakeNoBlock) {
    const std::string contents(100, 'l');
    RecordBytes bytes = made(50);
    const std::size_t used = heap.footprint();
    heap.lend(bytes, std::as_bytes(std::span(contents)));
    EXPECT_EQ(static_cast<const void*>(bytes.view().data()), contents.data());
    EXPECT_EQ(bytes.size(), 100U);
    heap.release(bytes);
    EXPECT_EQ(bytes.size(), 0U);
    EXPECT_EQ(heap.footprint(), used);
}

TEST_F(LentContents, OfAnyLengthAreCopiedBeforeTheyAreOverwrittenAndGivenBackWhenTheyAreTheSameAgain) {
    for (unsigned int size = 1; size <= RecordHeap::kLongestLent; ++size) {
        const std::string contents(size, 'l');
        RecordBytes bytes = lent(contents);
        overwrite(bytes, size - 1, "x");
        ASSERT_EQ(text(bytes), std::string(size - 1, 'l') + "x");
        ASSERT_EQ(contents, std::string(size, 'l'));
        ASSERT_FALSE(heap.giveBack(bytes)) << size;
        overwrite(bytes, size - 1, "l");
        ASSERT_TRUE(heap.giveBack(bytes)) << size;
        ASSERT_EQ(static_cast<const void*>(bytes.view().data()), contents.data());
        ASSERT_FALSE(heap.giveBack(bytes)) << "which has no block any more";
    }
    EXPECT_EQ(text(made(100)), std::string(100, 'a'));
}

TEST_F(LentContents, AreForgottenWhenOthersTakeTheirPlace) {
    const std::string contents(100, 'l');
    for (const unsigned int size : {0U, 50U, 99U, 100U, 101U, 104U, 105U, 2000U}) {
        RecordBytes bytes = lent(contents);
        overwrite(bytes, 0, "l");
        assign(bytes, size, 'l');
        EXPECT_EQ(text(bytes), std::string(size, 'l'));
        EXPECT_FALSE(heap.giveBack(bytes)) << size;
        EXPECT_EQ(text(bytes), std::string(size, 'l'));
        heap.release(bytes);
    }
    RecordBytes bytes = lent(contents);
    overwrite(bytes, 0, "l");
    heap.append(bytes, "l", 1);
    EXPECT_EQ(text(bytes), std::string(101, 'l'));
    EXPECT_FALSE(heap.giveBack(bytes));
}

TEST_F(LentContents, AreCopiedBeforeTheyAreReplacedOrAddedTo) {
    const std::string contents(100, 'l');
    RecordBytes bytes = lent(contents);
    heap.append(bytes, bytes.view().data(), 50);
    EXPECT_EQ(text(bytes), std::string(150, 'l'));
    bytes = lent(contents);
    assign(bytes, 20, 'n');
    EXPECT_EQ(text(bytes), std::string(20, 'n'));
    EXPECT_EQ(contents, std::string(100, 'l'));
}

TEST_F(LentContents, TakeTheSameBlockEachTime) {
    const std::string contents(100, 'l');
    RecordBytes kept = lent(contents);
    overwrite(kept, 0, "k");
    const std::size_t used = heap.footprint();
    for (int i = 0; i < 100000; ++i) {
        RecordBytes bytes = lent(contents);
        overwrite(bytes, 5, "x");
        overwrite(bytes, 5, "l");
        ASSERT_TRUE(heap.giveBack(bytes));
    }
    EXPECT_EQ(heap.footprint(), used);
    EXPECT_EQ(text(kept), "k" + std::string(99, 'l'));
}

TEST_F(LentContents, RecordsInBlocksOfTheirOwnAreNeverGivenBack) {
    for (const unsigned int size : {1U, 100U, kShared, 5000U}) {
        RecordBytes bytes = made(size);
        EXPECT_FALSE(heap.giveBack(bytes)) << size;
        EXPECT_EQ(text(bytes), std::string(size, 'a'));
    }
}

TEST(RecordHeap, OverwritingMovesARecordWhereEachHasABlockOfItsOwnSoThatWhoGoesOnLookingIsSeen) {
    RecordHeap heap(0);
    RecordBytes bytes;
    heap.assign(bytes, "abcd", 4);
    RecordBytes before = bytes;
    RecordBytes other;
    heap.overwrite(bytes, 1, "BC", 2);
    heap.assign(other, "abcd", 4);
    EXPECT_EQ(std::memcmp(bytes.view().data(), "aBCd", 4), 0);
    EXPECT_NE(bytes.view().data(), before.view().data());
}

TEST(RecordHeap, ARecordMayHaveABlockOfItsOwnHoweverShort) {
    RecordHeap heap(0);
    RecordBytes bytes;
    heap.assign(bytes, "a", 1);
    const std::size_t used = heap.footprint();
    EXPECT_LT(used, 100U);
    heap.release(bytes);
    EXPECT_EQ(heap.footprint(), 0U);
}

}  // namespace
}  // namespace lumivard::platform::stores
