// Writers, readers and some who compact, all in the same file and at the same time.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "lumivard/platform/stores.h"
#include "tests/fault/disk/DawdlingTap.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace fs = std::filesystem;
using Line = ChildProcess::Line;

/// How somebody makes the file smaller.
using tCompactor = void (*)(const fs::path&);

void compactHonestly(const fs::path& path) {
    compact(path);
}

/// Puts a copy in the file's place and asks nobody.
void compactRudely(const fs::path& path) {
    const fs::path copy = path.string() + std::to_string(::getpid());
    fs::copy_file(path, copy);
    fs::rename(copy, path);
}

class CompactionRace : public testing::Test {
protected:
    fs::path path() const { return folder / "a.lvp"; }

    /// Lets two write and two read until they have done so `times` times, and one compact half as often; finds out
    /// what is left of what was acknowledged.
    void run(std::uint64_t times) {
        create(*file(path(), tMode::kWrite), "first");
        std::vector<std::unique_ptr<ChildProcess>> all;
        all.push_back(start([&](const Line& line) { return shrink(times / 2, line); }));
        for (unsigned int i = 0; i < 2; ++i) {
            all.push_back(start([&, i](const Line& line) { return write(times, i, line); }));
            all.push_back(start([&](const Line& line) { return read(times, line); }));
        }
        for (const auto& child : all) {
            for (unsigned int said = child->hear(); said != ChildProcess::kGone; said = child->hear()) written += said;
            if (child->wait() != 0) ++failed;
        }
        lookAtRest();
        std::cout << "flushes " << written << ", left of them " << left << ", failed processes " << failed << std::endl;
    }

    /// Has the file made smaller while somebody has it open, who flushes after that.
    void compactUnderAWriter(tCompactor compactor) {
        create(*file(path(), tMode::kWrite), "first");
        ChildProcess child([&](const Line& line) {
            const auto store = file(path(), tMode::kWrite);
            line.tell(0);
            line.hear();
            create(*store, "0:0");
            store->flush();
            line.tell(1);
            return 0;
        });
        EXPECT_EQ(child.hear(), 0U);
        const std::string refusal = messageOf<StoreError>([&] { compactor(path()); });
        child.tell(0);
        written = child.hear();
        EXPECT_EQ(child.wait(), 0);
        lookAtRest();
        if (refusal != "nothing was thrown") throw StoreError(refusal);
    }

    FastFolder folder;
    std::mt19937_64 random{test_support::seed()};
    unsigned int written = 0;  // acknowledged flushes, each of one record
    unsigned int left = 0;     // different records that are there in the end
    unsigned int failed = 0;   // processes that met with something that must not be

private:
    std::unique_ptr<ChildProcess> start(const std::function<int(const Line&)>& body) {
        const std::uint64_t seed = random();
        return std::make_unique<ChildProcess>([&, seed](const Line& line) {
            DawdlingTap tap(seed);
            const Watch watch(folder.path(), tap);
            return body(line);
        });
    }

    // Tells of each acknowledged flush.
    int write(std::uint64_t times, unsigned int number, const Line& line) const {
        for (std::uint64_t count = 0; count < times;) {
            const std::string refusal = messageOf<StoreError>([&] {
                const auto store = file(path(), tMode::kWrite);
                create(*store, std::to_string(number) + ":" + std::to_string(count));
                update(*store, 0, std::string(count * 100 % 5000, 'x'));
                store->flush();
                line.tell(1);
                ++count;
            });
            if (refusal.find(": another process has it open for writing.") == std::string::npos &&
                refusal != "nothing was thrown") {
                return 1;
            }
            std::this_thread::yield();
        }
        return 0;
    }

    // Never refused, and never sees fewer records than before.
    int read(std::uint64_t times, const Line&) const {
        unsigned long long before = 1;
        for (std::uint64_t i = 0; i < times; ++i) {
            const auto store = file(path(), tMode::kRead);
            const std::unique_ptr<IDataStore::ILock> guard(store->lock());
            if (store->extent() < before) return 1;
            before = store->extent();
            for (unsigned int offset = 1; offset < before; ++offset) {
                if (contents(*store, offset).find(':') != 1) return 2;
            }
            std::this_thread::yield();
        }
        return 0;
    }

    int shrink(std::uint64_t times, const Line&) const {
        for (std::uint64_t count = 0; count < times; std::this_thread::yield()) {
            const std::string refusal = messageOf<StoreError>([&] { compact(path()); });
            if (refusal == "nothing was thrown") {
                ++count;
            } else if (refusal.find(": another process has it open for writing.") == std::string::npos &&
                       refusal.find(": others have it open for reading.") == std::string::npos) {
                return 1;
            }
        }
        return 0;
    }

    void lookAtRest() {
        try {
            const auto store = file(path(), tMode::kRead);
            std::set<std::string> found;
            for (unsigned int offset = 1; offset < store->extent(); ++offset) found.insert(contents(*store, offset));
            left = static_cast<unsigned int>(found.size());
        } catch (const StoreError&) {
            ++failed;
        }
    }
};

TEST_F(CompactionRace, LosesNoFlushAndBlocksNoReader) {
    const std::uint64_t times = test_support::effort("LVP_COMPACTION_RACES", test_support::usually(100));
    run(times);
    EXPECT_EQ(failed, 0U);
    EXPECT_EQ(left, written);
    EXPECT_EQ(written, 2 * times);
}

TEST_F(CompactionRace, LosesAFlushWhereTheFileIsReplacedUnderAWriter) {
    compactUnderAWriter(compactRudely);
    EXPECT_EQ(written, 1U);
    EXPECT_EQ(left, 0U);
}

TEST_F(CompactionRace, IsRefusedUnderAReader) {
    create(*file(path(), tMode::kWrite), "first");
    ChildProcess child([&](const Line& line) {
        const auto store = file(path(), tMode::kRead);
        line.tell(0);
        line.hear();
        const std::unique_ptr<IDataStore::ILock> guard(store->lock());
        return contents(*store, 0) == "second" ? 0 : 1;
    });
    EXPECT_EQ(child.hear(), 0U);
    EXPECT_NE(messageOf<StoreError>([&] { compact(path()); }).find(": others have it open for reading."),
              std::string::npos);
    update(*file(path(), tMode::kWrite), 0, "second");
    child.tell(0);
    EXPECT_EQ(child.wait(), 0) << "a reader does not see what came after";
}

TEST_F(CompactionRace, IsRefusedUnderAWriter) {
    EXPECT_THROW(compactUnderAWriter(compactHonestly), StoreError);
    EXPECT_EQ(written, 1U);
    EXPECT_EQ(left, 1U);
}

}  // namespace
}  // namespace lumivard::platform::stores::disk
