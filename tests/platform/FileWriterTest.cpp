#include "lumivard/platform/core/io/FileWriter.h"

#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/support/TemporaryFolder.h"

namespace {

using lumivard::platform::core::io::FileWriter;
using testing::HasSubstr;
namespace fs = std::filesystem;

void put(FileWriter& writer, const std::string& bytes) {
    writer.write(bytes.data(), bytes.size());
}

void writeAll(const fs::path& path, const std::string& bytes) {
    FileWriter writer(path);
    ASSERT_TRUE(writer.open());
    put(writer, bytes);
    writer.close();
}

unsigned modeOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
}

/// Sets the mask of new files for one test.
class Umask {
public:
    explicit Umask(mode_t mask) : _old(::umask(mask)) {}
    ~Umask() { ::umask(_old); }

private:
    mode_t _old;
};

/// Lets no file of this process grow beyond a size for one test.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) {
        ::getrlimit(RLIMIT_FSIZE, &_old);
        const rlimit limit{size, _old.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        _handler = std::signal(SIGXFSZ, SIG_IGN);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &_old);
        std::signal(SIGXFSZ, _handler);
    }

private:
    rlimit _old{};
    void (*_handler)(int) = SIG_DFL;
};

TEST(FileWriter, MakesAFileOfAllPieces) {
    const TemporaryFolder folder;
    FileWriter writer(folder / "f");
    ASSERT_TRUE(writer.open());
    put(writer, "ab");
    put(writer, "");
    put(writer, std::string("\0c", 2));
    writer.close();
    EXPECT_EQ(bytesOf(folder / "f"), std::string("ab\0c", 4));
    EXPECT_EQ(folder.entries(), 1);
}

TEST(FileWriter, MakesAnEmptyFile) {
    const TemporaryFolder folder;
    writeAll(folder / "f", "");
    EXPECT_TRUE(fs::exists(folder / "f"));
    EXPECT_EQ(bytesOf(folder / "f"), "");
}

TEST(FileWriter, ShowsTheOldFileUntilClose) {
    const TemporaryFolder folder;
    const auto path = folder.file("f", "old");
    FileWriter writer(path);
    ASSERT_TRUE(writer.open());
    put(writer, std::string(1 << 20, 'n'));
    EXPECT_EQ(bytesOf(path), "old");
    writer.close();
    EXPECT_EQ(bytesOf(path), std::string(1 << 20, 'n'));
}

TEST(FileWriter, LeavesTheOldFileToThoseWhoReadIt) {
    const TemporaryFolder folder;
    const auto path = folder.file("f", "old");
    std::ifstream reader(path);
    writeAll(path, "new");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
    EXPECT_EQ(bytesOf(path), "new");
}

TEST(FileWriter, WithoutCloseLeavesNothing) {
    const TemporaryFolder folder;
    const auto path = folder.file("f", "old");
    {
        FileWriter writer(path);
        ASSERT_TRUE(writer.open());
        put(writer, "new");
    }
    EXPECT_EQ(bytesOf(path), "old");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(FileWriter, BeginsAnewWithEachOpen) {
    const TemporaryFolder folder;
    FileWriter writer(folder / "f");
    ASSERT_TRUE(writer.open());
    put(writer, "thrown away");
    ASSERT_TRUE(writer.open());
    put(writer, "one");
    writer.close();
    EXPECT_EQ(bytesOf(folder / "f"), "one");
    ASSERT_TRUE(writer.open());
    put(writer, "two");
    writer.close();
    EXPECT_EQ(bytesOf(folder / "f"), "two");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(FileWriter, ANewFileHasThePermissionsThatNewFilesHave) {
    const TemporaryFolder folder;
    const Umask mask(027);
    writeAll(folder / "f", "x");
    EXPECT_EQ(modeOf(folder / "f"), 0640u);
}

TEST(FileWriter, KeepsThePermissionsOfTheOldFile) {
    const TemporaryFolder folder;
    const auto path = folder.file("f", "old");
    const Umask mask(077);
    for (const unsigned mode : {0600u, 0664u, 0755u}) {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        writeAll(path, "new");
        EXPECT_EQ(modeOf(path), mode);
    }
}

TEST(FileWriter, IsNotOpenToMoreReadersThanTheOldFileWhileItIsWritten) {
    const TemporaryFolder folder;
    const auto path = folder.file("f", "old");
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
    FileWriter writer(path);
    ASSERT_TRUE(writer.open());
    ASSERT_EQ(folder.entries(), 2);
    for (const auto& entry : fs::directory_iterator(path.parent_path())) EXPECT_EQ(modeOf(entry.path()), 0600u);
}

TEST(FileWriter, WritesBehindALink) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    const auto real = folder.file("sub/real", "old");
    fs::create_symlink("sub/middle", folder / "link");
    fs::create_symlink("real", folder / "sub/middle");
    writeAll(folder / "link", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_TRUE(fs::is_symlink(folder / "sub/middle"));
    EXPECT_FALSE(fs::is_symlink(real));
    EXPECT_EQ(bytesOf(real), "new");
    EXPECT_EQ(folder.entries(), 2);
}

TEST(FileWriter, MakesWhatALinkMissed) {
    const TemporaryFolder folder;
    fs::create_symlink(folder / "real", folder / "link");
    writeAll(folder / "link", "new");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(bytesOf(folder / "real"), "new");
}

TEST(FileWriter, DoesNotOpenLinksInACircle) {
    const TemporaryFolder folder;
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    FileWriter writer(folder / "a");
    errno = 0;
    EXPECT_FALSE(writer.open());
    EXPECT_EQ(errno, ELOOP);
}

TEST(FileWriter, DoesNotOpenAFolder) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    FileWriter writer(folder / "sub");
    errno = 0;
    EXPECT_FALSE(writer.open());
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(folder.entries(), 1);
}

TEST(FileWriter, ReplacesNoPipeOrDevice) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    FileWriter pipe(folder / "pipe");
    errno = 0;
    EXPECT_FALSE(pipe.open());
    EXPECT_EQ(errno, ENOTSUP);
    FileWriter device("/dev/null");
    EXPECT_FALSE(device.open());
}

TEST(FileWriter, DoesNotOpenInAMissingFolder) {
    const TemporaryFolder folder;
    FileWriter writer(folder / "missing/f");
    errno = 0;
    EXPECT_FALSE(writer.open());
    EXPECT_EQ(errno, ENOENT);
    FileWriter nameless("");
    EXPECT_FALSE(nameless.open());
}

TEST(FileWriter, ThatCouldNotBeOpenedSaysWhyWhenItIsWrittenTo) {
    const TemporaryFolder folder;
    FileWriter writer(folder / "missing/f");
    EXPECT_FALSE(writer.open());
    try {
        put(writer, "x");
        FAIL() << "nothing is written";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    }
}

TEST(FileWriter, TakesTheLongestName) {
    const TemporaryFolder folder;
    const std::string name(255, 'n');
    writeAll(folder / name, "x");
    EXPECT_EQ(bytesOf(folder / name), "x");
}

TEST(FileWriter, KeepsItsPlaceWhenTheWorkingFolderChanges) {
    const TemporaryFolder folder;
    const fs::path before = fs::current_path();
    fs::create_directory(folder / "sub");
    fs::current_path(folder / "sub");
    FileWriter writer("f");
    const bool opened = writer.open();
    fs::current_path(before);
    ASSERT_TRUE(opened);
    put(writer, "x");
    writer.close();
    EXPECT_EQ(bytesOf(folder / "sub/f"), "x");
}

TEST(FileWriter, TwoWritersOfOneFileDoNotMix) {
    const TemporaryFolder folder;
    FileWriter one(folder / "f");
    FileWriter other(folder / "f");
    ASSERT_TRUE(one.open());
    ASSERT_TRUE(other.open());
    put(one, "one");
    put(other, "other");
    other.close();
    EXPECT_EQ(bytesOf(folder / "f"), "other");
    one.close();
    EXPECT_EQ(bytesOf(folder / "f"), "one");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(FileWriter, AFailedWriteNamesTheFileAndLeavesTheOldOne) {
    const TemporaryFolder folder;
    const auto path = folder.file("f", "old");
    FileWriter writer(path);
    ASSERT_TRUE(writer.open());
    {
        const FileSizeLimit limit(4096);
        try {
            put(writer, std::string(10000, 'n'));
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.code(), std::errc::file_too_large);
            EXPECT_THAT(error.what(), HasSubstr(path.string()));
        }
    }
    writer.close();
    EXPECT_EQ(bytesOf(path), "old");
    EXPECT_EQ(folder.entries(), 1);
}

TEST(FileWriter, AFailedCloseNamesTheFileAndLeavesNothingBeside) {
    const TemporaryFolder folder;
    FileWriter writer(folder / "f");
    ASSERT_TRUE(writer.open());
    put(writer, "x");
    fs::create_directory(folder / "f");
    try {
        writer.close();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::is_a_directory);
        EXPECT_THAT(error.what(), HasSubstr((folder / "f").string()));
    }
    EXPECT_TRUE(fs::is_directory(folder / "f"));
    EXPECT_EQ(folder.entries(), 1);
}

TEST(FileWriter, WritesNothingBeforeOpen) {
    FileWriter writer("some/where.xml");
    EXPECT_THROW(put(writer, "x"), std::system_error);
    EXPECT_NO_THROW(writer.close());
}

}  // namespace
