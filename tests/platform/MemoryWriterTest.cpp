#include "lumivard/platform/core/io/MemoryWriter.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using lumivard::platform::core::io::MemoryWriter;

TEST(MemoryWriter, GathersAllPieces) {
    MemoryWriter writer;
    ASSERT_TRUE(writer.open());
    writer.write("ab", 2);
    writer.write(nullptr, 0);
    writer.write("\0c", 2);
    EXPECT_EQ(writer.bytes(), std::string("ab\0c", 4));
}

TEST(MemoryWriter, KeepsTheBytesAfterClose) {
    MemoryWriter writer;
    ASSERT_TRUE(writer.open());
    writer.write("ab", 2);
    writer.close();
    EXPECT_EQ(writer.bytes(), "ab");
}

TEST(MemoryWriter, BeginsAnewWithEachOpen) {
    MemoryWriter writer;
    ASSERT_TRUE(writer.open());
    writer.write("old", 3);
    ASSERT_TRUE(writer.open());
    writer.write("new", 3);
    EXPECT_EQ(writer.bytes(), "new");
}

}  // namespace
