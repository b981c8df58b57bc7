#include "lumivard/platform/core/io/MemoryReader.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using lumivard::platform::core::io::MemoryReader;

std::string next(MemoryReader& reader, unsigned long size) {
    std::string piece(size, '?');
    piece.resize(reader.read(piece.data(), size));
    return piece;
}

TEST(MemoryReader, ReadsPiecesInOrder) {
    MemoryReader reader("abcde");
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 2), "ab");
    EXPECT_EQ(next(reader, 2), "cd");
    EXPECT_EQ(next(reader, 2), "e");
    EXPECT_EQ(next(reader, 2), "");
    EXPECT_EQ(next(reader, 2), "");
}

TEST(MemoryReader, WritesNothingBehindTheBytesThatItGives) {
    MemoryReader reader("ab");
    ASSERT_TRUE(reader.open());
    char buffer[] = "????";
    EXPECT_EQ(reader.read(buffer, 4), 2u);
    EXPECT_STREQ(buffer, "ab??");
}

TEST(MemoryReader, BeginsAgainWithEachOpen) {
    MemoryReader reader("abc");
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 2), "ab");
    reader.close();
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 9), "abc");
}

TEST(MemoryReader, TakesZeroBytesAsAnyOther) {
    const std::string bytes("a\0b\0", 4);
    MemoryReader reader(bytes);
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 9), bytes);
}

TEST(MemoryReader, OfNothingIsAtItsEndAtOnce) {
    MemoryReader reader("");
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 1), "");
}

}  // namespace
