#include "stores/core/RecordBytes.h"

#include <string>

#include <gtest/gtest.h>

namespace lumivard::platform::stores {
namespace {

std::string text(const RecordBytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.view().data()), bytes.size()};
}

TEST(RecordBytes, BlocksGrowByDoublingSoThatSmallAppendsAreCheap) {
    RecordBytes bytes;
    int moves = 0;
    const std::byte* block = nullptr;
    for (int i = 0; i < 100000; ++i) {
        bytes.append("abcd", 4);
        if (bytes.view().data() != block) ++moves;
        block = bytes.view().data();
    }
    EXPECT_EQ(bytes.size(), 400000U);
    EXPECT_LE(moves, 20);
}

TEST(RecordBytes, ContentsOfTheSameLengthStayInTheirBlock) {
    RecordBytes bytes;
    const std::string large(100000, 'a');
    bytes.assign(large.data(), 100000);
    const std::byte* block = bytes.view().data();
    bytes.assign(std::string(100000, 'b').data(), 100000);
    EXPECT_EQ(bytes.view().data(), block);
    EXPECT_EQ(text(bytes), std::string(100000, 'b'));
}

TEST(RecordBytes, ALargeBlockIsNotKeptForALittle) {
    RecordBytes bytes;
    bytes.assign(std::string(100000, 'a').data(), 100000);
    const std::byte* block = bytes.view().data();
    bytes.assign("little", 6);
    EXPECT_NE(bytes.view().data(), block);
    EXPECT_EQ(text(bytes), "little");
}

TEST(RecordBytes, ClearLeavesNothing) {
    RecordBytes bytes;
    bytes.append("abcd", 4);
    bytes.clear();
    EXPECT_EQ(bytes.size(), 0U);
    EXPECT_EQ(bytes.view().data(), nullptr);
    bytes.append("x", 1);
    EXPECT_EQ(text(bytes), "x");
}

}  // namespace
}  // namespace lumivard::platform::stores
