#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;

class Compaction : public testing::Test {
protected:
    fs::path path() const { return folder / "a.lvp"; }

    /// Records 0 to 999, of which every tenth is left, and one long record.
    void fill() {
        const auto store = file(path(), tMode::kWrite);
        for (int record = 0; record < 1000; ++record) create(*store, std::string(500, static_cast<char>(record)));
        create(*store, std::string(100000, 'l'));
        store->version(42);
        store->flush();
        for (unsigned int offset = 0; offset < 1000; ++offset) {
            if (offset % 10 != 0) store->erase(offset);
        }
        store->flush();
    }

    TemporaryFolder folder;
};

TEST_F(Compaction, GivesSpaceBackAndKeepsAllElse) {
    fill();
    const auto before = fs::file_size(path());
    compact(path());
    EXPECT_LT(fs::file_size(path()), before / 2);
    const auto store = file(path(), tMode::kWrite, {.verify = true});
    EXPECT_EQ(store->extent(), 1001U);
    EXPECT_EQ(store->version(), 42U);
    for (unsigned int offset = 0; offset < 1000; ++offset) {
        const std::string expected = offset % 10 == 0 ? std::string(500, static_cast<char>(offset)) : "";
        ASSERT_EQ(contents(*store, offset), expected);
    }
    EXPECT_EQ(contents(*store, 1000), std::string(100000, 'l'));
    EXPECT_EQ(create(*store, "new"), 1001U);
}

TEST_F(Compaction, LeavesNoOtherFile) {
    fill();
    compact(path());
    EXPECT_EQ(folder.entries(), 1);
}

TEST_F(Compaction, OfAnEmptyStoreIsAnEmptyStore) {
    file(path(), tMode::kWrite).reset();
    compact(path());
    EXPECT_EQ(file(path(), tMode::kRead)->extent(), 0U);
}

TEST_F(Compaction, LeavesHardlyAFreePage) {
    fill();
    compact(path());
    const auto first = fs::file_size(path());
    EXPECT_LE(verify(path(), true).freePages, 2U);
    EXPECT_LT(first, 100 * 540 + 100000 + 6 * 4096U) << "pages are as full as they can be";
    compact(path());
    EXPECT_EQ(fs::file_size(path()), first);
}

TEST_F(Compaction, KeepsTheRightsOfTheFile) {
    fill();
    fs::permissions(path(), static_cast<fs::perms>(0640));
    compact(path());
    EXPECT_EQ(fs::status(path()).permissions(), static_cast<fs::perms>(0640));
}

// Without its list, the group of the file would have the rights that the list gives at the most.
TEST_F(Compaction, KeepsTheListOfThoseWhoHaveRights) {
    struct tEntry {
        std::uint16_t tag;
        std::uint16_t rights;
        std::uint32_t id;
    };
    constexpr std::uint32_t kNobody = 0xFFFFFFFF;
    const struct {
        std::uint32_t version = 2;
        tEntry owner{0x01, 6, kNobody};
        tEntry somebody{0x02, 4, 12345};
        tEntry group{0x04, 0, kNobody};
        tEntry most{0x10, 4, kNobody};
        tEntry others{0x20, 0, kNobody};
    } list;
    constexpr char kName[] = "system.posix_acl_access";
    fill();
    if (::setxattr(path().c_str(), kName, &list, sizeof list, 0) != 0 && errno == EOPNOTSUPP) {
        GTEST_SKIP() << "the file system knows no such lists";
    }
    compact(path());
    auto kept = list;
    kept.somebody = {};
    EXPECT_EQ(::getxattr(path().c_str(), kName, &kept, sizeof kept), static_cast<ssize_t>(sizeof kept));
    EXPECT_EQ(std::memcmp(&kept, &list, sizeof list), 0);
}

TEST_F(Compaction, OfAMissingFileIsRefusedAndMakesNone) {
    EXPECT_EQ(messageOf<StoreError>([&] { compact(path()); }),
              "Cannot compact the store \"" + path().string() + "\": there is no such file.");
    EXPECT_EQ(folder.entries(), 0);
}

TEST_F(Compaction, OfAnOpenStoreIsRefused) {
    fill();
    const auto store = file(path(), tMode::kRead);
    EXPECT_THAT(messageOf<StoreError>([&] { compact(path()); }),
                testing::HasSubstr("this process has it open already"));
}

/// The message of a compaction while another process has the file open.
std::string messageBesideAnother(const fs::path& path, tMode mode) {
    ChildProcess other([&](const ChildProcess::Line& line) {
        const auto store = file(path, mode);
        line.tell(1);
        line.hear();
        return 0;
    });
    other.hear();
    const std::string message = messageOf<StoreError>([&] { compact(path); });
    other.tell(1);
    EXPECT_EQ(other.wait(), 0);
    return message;
}

TEST_F(Compaction, BesideAWriterOrAReaderIsRefusedAndChangesNothing) {
    fill();
    const std::string before = bytesOf(path());
    EXPECT_THAT(messageBesideAnother(path(), tMode::kWrite),
                testing::HasSubstr("another process has it open for writing"));
    EXPECT_THAT(messageBesideAnother(path(), tMode::kRead), testing::HasSubstr("others have it open for reading"));
    EXPECT_TRUE(bytesOf(path()) == before);
    compact(path());
}

TEST_F(Compaction, OfADamagedFileIsRefusedAndChangesNothing) {
    fill();
    std::string bytes = bytesOf(path());
    for (std::size_t at = bytes.find("llll"); at != std::string::npos; at = bytes.find("llll", at + 5000))
        bytes[at] = 'x';
    folder.file("a.lvp", bytes);
    EXPECT_THAT(messageOf<StoreError>([&] { compact(path()); }), testing::HasSubstr("is not as it was written"));
    EXPECT_TRUE(bytesOf(path()) == bytes);
}

TEST_F(Compaction, FollowsASymbolicLink) {
    fill();
    fs::create_symlink(path(), folder / "link");
    compact(folder / "link");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(file(folder / "link", tMode::kRead)->extent(), 1001U);
}

}  // namespace
}  // namespace lumivard::platform::stores
