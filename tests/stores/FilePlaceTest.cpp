// One file under several names, several files under one, and the lock file that each goes with.
#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include "lumivard/platform/stores.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Line = ChildProcess::Line;

class FilePlace : public testing::Test {
protected:
    fs::path path() const { return folder / "a.lvp"; }
    std::unique_ptr<IDataStore> open(tMode mode = tMode::kWrite) const { return file(path(), mode); }

    TemporaryFolder folder;
};

// To open and close it would give back what LMDB has locked in it for this process.
TEST_F(FilePlace, TheLockFileOfAnOpenStoreIsNotOpened) {
    const auto store = open();
    EXPECT_THAT(messageOf<StoreError>([&] { file(path().string() + "-lock", tMode::kRead); }),
                HasSubstr("this process has it open already"));
}

TEST_F(FilePlace, ANewLockFileHasTheRightsOfItsStore) {
    open().reset();
    for (const auto rights : {0600, 0640, 0666}) {
        std::filesystem::remove(path().string() + "-lock");
        ASSERT_EQ(::chmod(path().c_str(), static_cast<mode_t>(rights)), 0);
        open().reset();
        struct stat status = {};
        ASSERT_EQ(::stat((path().string() + "-lock").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, static_cast<mode_t>(rights));
    }
}

// Else who owns a store that is there to be read could not enter himself, and would find a lock file in the way later.
TEST_F(FilePlace, ANewLockFileCanBeWrittenByTheOwnerOfAStoreThatCannot) {
    open().reset();
    std::filesystem::remove(path().string() + "-lock");
    ASSERT_EQ(::chmod(path().c_str(), 0444), 0);
    file(path(), tMode::kRead).reset();
    struct stat status = {};
    ASSERT_EQ(::stat((path().string() + "-lock").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0644U);
}

// --- A file in the place of another

// Another process that has a store open for reading until it is told something.
std::unique_ptr<ChildProcess> elsewhere(const fs::path& path) {
    auto reader = std::make_unique<ChildProcess>([&](const Line& line) {
        const auto store = file(path, tMode::kRead);
        line.tell(1);
        line.hear();
        return 0;
    });
    EXPECT_EQ(reader->hear(), 1U);
    return reader;
}

// Both have made as many transactions, so that nothing in the lock file could tell them apart.
TEST_F(FilePlace, AFileThatReplacedAnotherIsRefusedInTheSameProcess) {
    auto old = open(tMode::kWrite);
    create(*old, "old");
    old->flush();
    create(*file(folder / "new.lvp", tMode::kWrite), "new");
    std::filesystem::rename(folder / "new.lvp", path());
    for (const tMode mode : {tMode::kWrite, tMode::kRead}) {
        EXPECT_THAT(messageOf<StoreError>([&] { open(mode); }), HasSubstr("another file that had its name before"));
    }
    ChildProcess child([&](const Line&) {
        const std::string message = messageOf<StoreError>([&] { open(tMode::kRead); });
        return message.find("another file that had its name before") != std::string::npos ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
    create(*old, "older");
    EXPECT_NO_THROW(old->flush());
    old.reset();
    EXPECT_EQ(contents(*open(tMode::kWrite), 0), "new");
}

TEST_F(FilePlace, AFileThatReplacedAnotherIsRefusedWhileThatIsStillOpen) {
    create(*open(tMode::kWrite), "old");
    const auto reader = elsewhere(path());
    create(*file(folder / "new.lvp", tMode::kWrite), "new");
    std::filesystem::rename(folder / "new.lvp", path());
    for (const tMode mode : {tMode::kWrite, tMode::kRead}) {
        EXPECT_THAT(messageOf<StoreError>([&] { open(mode); }), HasSubstr("another file that had its name before"));
    }
    reader->tell(1);
    EXPECT_EQ(reader->wait(), 0);
    EXPECT_EQ(contents(*open(tMode::kWrite), 0), "new");
}

// --- One file with two lock files

TEST_F(FilePlace, AFileThatGotAnotherNameIsRefusedByThatWhileItIsOpen) {
    create(*open(), "a");
    const auto reader = elsewhere(path());
    std::filesystem::rename(path(), folder / "b.lvp");
    for (const tMode mode : {tMode::kWrite, tMode::kRead}) {
        EXPECT_THAT(messageOf<StoreError>([&] { file(folder / "b.lvp", mode); }),
                    HasSubstr("others have it open by another name"));
    }
    reader->tell(1);
    EXPECT_EQ(reader->wait(), 0);
    EXPECT_EQ(contents(*file(folder / "b.lvp", tMode::kWrite), 0), "a");
}

TEST_F(FilePlace, AFileWhoseLockFileWasRemovedIsRefusedWhileItIsOpen) {
    create(*open(), "a");
    const auto reader = elsewhere(path());
    std::filesystem::remove(path().string() + "-lock");
    EXPECT_THAT(messageOf<StoreError>([&] { open(); }), HasSubstr("or where its lock file was another one"));
    reader->tell(1);
    EXPECT_EQ(reader->wait(), 0);
    EXPECT_EQ(contents(*open(), 0), "a");
}

// Shows the folder to this process alone as one where nothing can be written; false where it may not.
bool mountReadOnly(const fs::path& folder) {
    return ::unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
           ::mount(nullptr, folder.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

// A reader there can tell nobody which state it reads: a writer would write over it.
TEST_F(FilePlace, WhereNothingCanBeWrittenAStoreIsReadBesideOtherSuchReadersOnly) {
    create(*open(), "a");
    constexpr unsigned int kMayNot = 7;
    ChildProcess reader([&](const Line& line) {
        if (!mountReadOnly(path().parent_path())) {
            line.tell(kMayNot);
            return 0;
        }
        auto store = open(tMode::kRead);
        const bool wasRead = contents(*store, 0) == "a";
        ChildProcess another([&](const Line&) { return contents(*open(tMode::kRead), 0) == "a" ? 0 : 1; });
        line.tell(wasRead && another.wait() == 0);
        line.hear();
        store.reset();
        line.tell(1);
        line.hear();  // until it is open for writing
        line.tell(messageOf<StoreError>([&] { open(tMode::kRead); }).find("others have it open") != std::string::npos);
        return 0;
    });
    const unsigned int first = reader.hear();
    if (first == kMayNot) GTEST_SKIP() << "only root can mount a folder once more";
    EXPECT_EQ(first, 1U);
    EXPECT_THAT(messageOf<StoreError>([&] { open(); }), HasSubstr("others have it open"));
    reader.tell(1);
    EXPECT_EQ(reader.hear(), 1U);
    const auto store = open();
    reader.tell(1);
    EXPECT_EQ(reader.hear(), 1U);
    EXPECT_EQ(reader.wait(), 0);
}

}  // namespace
}  // namespace lumivard::platform::stores
