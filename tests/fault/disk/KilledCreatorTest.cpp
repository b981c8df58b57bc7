// Processes that are killed at each call of the system while they make a store.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "lumivard/platform/stores.h"
#include "stores/lmdb/Environment.h"
#include "stores/lmdb/FileCreation.h"
#include "tests/fault/disk/DeadlyTap.h"
#include "tests/fault/disk/Finding.h"
#include "tests/fault/disk/PlainFileSystemTap.h"
#include "tests/stores/ChildProcess.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace fs = std::filesystem;
using test_support::failuresOf;
using testing::Contains;
using testing::HasSubstr;
using Line = ChildProcess::Line;
using tMoment = DeadlyTap::tMoment;

using tMaker = void (*)(const fs::path&);

void make(const fs::path& path) {
    file(path, tMode::kWrite);
}

/// Lays a store out under the name that it is to have, where everybody sees it come into being.
void makeInPlace(const fs::path& path) {
    const auto environment = lmdb::openEnvironment(path, MDB_NOLOCK, 1 << 20);
    auto transaction = lmdb::begin(environment, 0);
    putHeader(transaction, makeRecords(transaction), {});
    lmdb::check(lmdb::commit(std::move(transaction)));
}

class KilledCreator : public testing::TestWithParam<tMoment> {
protected:
    /// Kills whoever makes a store before, at or after call 0, 1, 2 ... until one lives.
    void killAtEachCall(tMaker maker, bool plainFileSystem) {
        for (std::uint64_t calls = 0;; ++calls) {
            SCOPED_TRACE("at call " + std::to_string(calls));
            folder.clear();
            if (create(maker, calls, plainFileSystem)) break;
            ++killed;
            Workload model(1);
            if (fs::exists(folder / "a.lvp")) {
                const Finding reading = lookAt(folder / "a.lvp", tMode::kRead, model, 0);
                EXPECT_EQ(reading.found, tFound::kLast) << reading.message;
            }
            const Finding writing = lookAt(folder / "a.lvp", tMode::kWrite, model, 0);
            EXPECT_TRUE(writing.found == tFound::kLast || writing.found == tFound::kAbsent) << writing.message;
            EXPECT_NO_THROW(file(folder / "a.lvp", tMode::kWrite));
        }
    }

    FastFolder folder;
    unsigned int killed = 0;

private:
    // False when that was its end.
    bool create(tMaker maker, std::uint64_t calls, bool plainFileSystem) const {
        ChildProcess child([&](const Line&) {
            DeadlyTap deadly(calls, GetParam());
            PlainFileSystemTap plain(deadly);
            const Watch watch(folder.path(), plainFileSystem ? static_cast<Tap&>(plain) : deadly);
            maker(folder / "a.lvp");
            return 0;
        });
        const int status = child.wait();
        EXPECT_TRUE(status == 0 || status == -1) << status;
        return status != -1;
    }
};

TEST_P(KilledCreator, LeavesNothingOrAnEmptyStore) {
    killAtEachCall(make, false);
    EXPECT_GT(killed, 15U);
}

TEST_P(KilledCreator, LeavesNothingOrAnEmptyStoreWhereNoRenameSparesOthers) {
    killAtEachCall(make, true);
    EXPECT_GT(killed, 15U);
}

TEST_P(KilledCreator, IsSeenToLeaveHalfAStoreWhereItMakesOneInPlace) {
    EXPECT_THAT(failuresOf([&] { killAtEachCall(makeInPlace, false); }), Contains(HasSubstr("unreadable")));
}

std::string nameOf(const testing::TestParamInfo<tMoment>& moment) {
    constexpr const char* kNames[] = {"BeforeTheCall", "HalfwayThroughIt", "AfterIt"};
    return kNames[static_cast<int>(moment.param)];
}

INSTANTIATE_TEST_SUITE_P(Moments, KilledCreator, testing::Values(tMoment::kBefore, tMoment::kHalfway, tMoment::kAfter),
                         nameOf);

}  // namespace
}  // namespace lumivard::platform::stores::disk
