#include "lumivard/platform/core/io/FileReader.h"

#include <cerrno>
#include <string>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace {

using lumivard::platform::core::io::FileReader;
using testing::HasSubstr;

std::string next(FileReader& reader, unsigned long size) {
    std::string piece(size, '?');
    piece.resize(reader.read(piece.data(), size));
    return piece;
}

TEST(FileReader, ReadsPiecesInOrder) {
    const TemporaryFolder folder;
    FileReader reader(folder.file("f", std::string("ab\0de", 5)));
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 2), "ab");
    EXPECT_EQ(next(reader, 2), std::string("\0d", 2));
    EXPECT_EQ(next(reader, 2), "e");
    EXPECT_EQ(next(reader, 2), "");
    EXPECT_EQ(next(reader, 2), "");
}

TEST(FileReader, BeginsAgainWithEachOpen) {
    const TemporaryFolder folder;
    FileReader reader(folder.file("f", "abc"));
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 2), "ab");
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 2), "ab");
    reader.close();
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 9), "abc");
}

TEST(FileReader, FollowsALink) {
    const TemporaryFolder folder;
    folder.file("f", "abc");
    std::filesystem::create_symlink("f", folder / "link");
    FileReader reader(folder / "link");
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(next(reader, 9), "abc");
}

TEST(FileReader, DoesNotOpenWhatIsNotThere) {
    const TemporaryFolder folder;
    FileReader reader(folder / "missing");
    errno = 0;
    EXPECT_FALSE(reader.open());
    EXPECT_EQ(errno, ENOENT);
}

TEST(FileReader, DoesNotOpenAFolder) {
    FileReader reader(std::filesystem::temp_directory_path());
    errno = 0;
    EXPECT_FALSE(reader.open());
    EXPECT_EQ(errno, EISDIR);
}

TEST(FileReader, ReadingBeforeOpenNamesTheFile) {
    FileReader reader("some/where.xml");
    char byte = 0;
    try {
        reader.read(&byte, 1);
        FAIL() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::bad_file_descriptor);
        EXPECT_THAT(error.what(), HasSubstr("some/where.xml"));
    }
}

TEST(FileReader, AFailedReadNamesTheFileAndTheCause) {
    // The first page of a process is never mapped: a file that opens and cannot be read.
    FileReader reader("/proc/self/mem");
    ASSERT_TRUE(reader.open());
    char byte = 0;
    try {
        reader.read(&byte, 1);
        FAIL() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::io_error);
        EXPECT_THAT(error.what(), HasSubstr("/proc/self/mem"));
    }
}

TEST(FileReader, CloseWithoutOpenDoesNothing) {
    FileReader reader("some/where.xml");
    EXPECT_NO_THROW(reader.close());
}

}  // namespace
