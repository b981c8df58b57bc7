// A real file system that is full. Make one, and name its folder in LVP_SMALL_FILE_SYSTEM:
//
//     mkdir /tmp/small && mount -t tmpfs -o size=512k tmpfs /tmp/small
//
// Anything from 256 KiB to 1 MiB will do. What is in the folder is removed.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "lumivard/platform/stores.h"
#include "tests/fault/disk/Workload.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr char kFull[] = "No space left on device";

class SmallFileSystem : public testing::Test {
protected:
    void SetUp() override {
        const char* const name = std::getenv("LVP_SMALL_FILE_SYSTEM");
        if (!name || !*name) GTEST_SKIP() << "LVP_SMALL_FILE_SYSTEM names no folder";
        const fs::path named = fs::canonical(name);
        ASSERT_LE(fs::space(named).capacity, 2U << 20) << "that is not small";
        folder = named;  // not before: what is in it is removed
        clear();
    }
    void TearDown() override { clear(); }

    void clear() const {
        if (folder.empty()) return;
        for (const auto& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
    }

    // Leaves not a byte.
    void fill() const {
        const int descriptor = ::open((folder / "filler").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
        for (std::size_t size = 4096; size != 0;) {
            if (::write(descriptor, std::string(size, 'f').data(), size) <= 0) size /= 2;
        }
        EXPECT_EQ(errno, ENOSPC);
        ::close(descriptor);
    }

    fs::path path() const { return folder / "a.lvp"; }

    fs::path folder;
};

TEST_F(SmallFileSystem, WhenItIsFullTheFlushFailsAndTheLastOneStays) {
    std::uint64_t flushed = 0;
    std::uint64_t inMemory = 0;
    {
        const auto store = file(path(), tMode::kWrite);
        std::string error;
        for (unsigned int i = 0; error.empty() && i < 10000; ++i) {
            create(*store, std::string(3000, static_cast<char>('a' + i % 26)));
            update(*store, i / 2, std::string(100 + i, 'u'));
            const std::uint64_t now = fingerprint(*store);
            const std::string said = messageOf<StoreError>([&] { store->flush(); });
            if (said == "nothing was thrown") {
                flushed = now;
            } else {
                error = said;
                inMemory = now;
            }
        }
        EXPECT_EQ(error, "Cannot flush the store \"" + path().string() + "\": " + kFull + ".");
        EXPECT_EQ(messageOf<StoreError>([&] { create(*store, "x"); }), error);
        EXPECT_EQ(messageOf<StoreError>([&] { store->flush(); }), error);
        EXPECT_EQ(fingerprint(*store), inMemory);
    }
    ASSERT_NE(flushed, 0U);
    EXPECT_EQ(fingerprint(*file(path(), tMode::kRead)), flushed);
    EXPECT_EQ(fingerprint(*file(path(), tMode::kWrite)), flushed);
    EXPECT_EQ(verify(path(), true).faultCount, 0U);
}

TEST_F(SmallFileSystem, WhenItIsFullNoStoreComesIntoBeing) {
    fill();
    ChildProcess child([&](const ChildProcess::Line&) {
        const std::string message = messageOf<StoreError>([&] { file(path(), tMode::kWrite); });
        return message.find(kFull) != std::string::npos ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_FALSE(fs::exists(path()));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

TEST_F(SmallFileSystem, WhenItIsFullAStoreThatNobodyHasOpenIsReadOrRefused) {
    create(*file(path(), tMode::kWrite), "x");
    for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
        fs::remove(folder / "filler");
        fs::remove(folder / "a.lvp-lock");
        fill();
        ChildProcess child([&](const ChildProcess::Line&) {
            const std::string message =
                messageOf<StoreError>([&] { return contents(*file(path(), mode), 0) == "x" ? 0 : 1; });
            if (message == "nothing was thrown") return 0;
            return message.find(kFull) != std::string::npos ? 0 : 1;
        });
        EXPECT_EQ(child.wait(), 0);
    }
}

}  // namespace
}  // namespace lumivard::platform::stores::disk
