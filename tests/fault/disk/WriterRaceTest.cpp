// Many who want to write one file at the same moment: processes, and threads of one process.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "lumivard/platform/stores.h"
#include "stores/lmdb/FileRegistry.h"
#include "tests/fault/disk/GrantingTap.h"
#include "tests/fault/disk/Workload.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace fs = std::filesystem;
using Line = ChildProcess::Line;

/// How a racer opens the file.
using tOpener = std::function<std::unique_ptr<IDataStore>(const fs::path&, tMode)>;

std::unique_ptr<IDataStore> openHonestly(const fs::path& path, tMode mode) {
    return file(path, mode);
}

/// Opens the same file, in a process to which each lock on it is granted.
std::unique_ptr<IDataStore> openPastTheLock(const fs::path& path, tMode mode) {
    static GrantingTap granting;
    static const Watch watch(path.parent_path(), granting);  // until the process ends
    return file(path, mode);
}

/// Opens it, and its lock file, as if this process had neither open.
std::unique_ptr<IDataStore> openPastTheRegistry(const fs::path& path, tMode mode) {
    static std::mutex oneByOne;  // the database relies on what is bypassed here
    const std::lock_guard held(oneByOne);
    for (const std::string& name : {path.string(), path.string() + "-lock"}) {
        struct stat status = {};
        if (::stat(name.c_str(), &status) == 0) FileRegistry::leave(status);
    }
    return file(path, mode);
}

/// Where racers wait for each other: a pipe in which one byte for each is put at once.
class Barrier {
public:
    explicit Barrier(unsigned int racers) : _racers(racers) {
        if (::pipe(_ends) != 0) throw std::runtime_error("no pipe");
    }
    ~Barrier() {
        ::close(_ends[0]);
        ::close(_ends[1]);
    }
    Barrier(const Barrier&) = delete;
    Barrier& operator=(const Barrier&) = delete;

    void wait() const {
        char byte = 0;
        if (::read(_ends[0], &byte, 1) != 1) ::_exit(97);
    }
    void open() const {
        const std::string bytes(_racers, 'x');
        EXPECT_EQ(::write(_ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

private:
    const unsigned int _racers;
    int _ends[2] = {};
};

// What a racer tells.
enum tOutcome : unsigned int { kOpen, kRefused, kNoFile, kOther };

tOutcome outcomeOf(const fs::path& path, const std::string& message, const char* refusal) {
    if (message == "nothing was thrown") return kOpen;
    const std::string start = "Cannot open the store \"" + path.string() + "\": ";
    if (message == start + refusal + ".") return kRefused;
    return message == start + "there is no such file." ? kNoFile : kOther;
}

/// What came of one race.
struct Result {
    unsigned int winners = 0;
    unsigned int refused = 0;
    unsigned int readers = 0;
    unsigned int strange = 0;    ///< refused with other words, or a reader that did not get in
    unsigned int disturbed = 0;  ///< a reader that saw what nobody flushed, or a winner whose flush is gone
};

/// Races of processes, some of which only read.
class WriterRace : public testing::Test {
protected:
    Result race(unsigned int writers, unsigned int readers, const tOpener& opener) {
        ++_races;
        const bool existed = fs::exists(path());
        const std::uint64_t before = existed ? fingerprint(*file(path(), tMode::kRead)) : 0;
        Workload model(random());
        const Barrier barrier(writers + readers);
        std::vector<std::unique_ptr<ChildProcess>> racers;
        for (unsigned int i = 0; i < writers + readers; ++i) {
            racers.push_back(std::make_unique<ChildProcess>([&, i](const Line& line) {
                barrier.wait();
                return i < writers ? write(opener, i, line) : read(opener, before, line);
            }));
        }
        barrier.open();
        Result result;
        std::vector<unsigned int> won;
        for (unsigned int i = 0; i < writers + readers; ++i) {
            const unsigned int outcome = racers[i]->hear();
            if (i < writers) {
                ++(outcome == kOpen ? result.winners : outcome == kRefused ? result.refused : result.strange);
                if (outcome == kOpen) won.push_back(i);
            } else {
                ++(outcome == kOpen || (outcome == kNoFile && !existed) ? result.readers : result.strange);
            }
        }
        for (const auto& racer : racers) racer->tell(0);  // all have tried: the winner may write and go
        for (const auto& racer : racers) {
            if (racer->wait() != 0) ++result.disturbed;
        }
        for (const unsigned int winner : won) result.disturbed += holds(lastWord(winner)) ? 0 : 1;
        return result;
    }

    /// Races until there were so many, each on the file that the one before has left, or on none.
    Result campaign(std::uint64_t races, const tOpener& opener, const std::function<void(const Result&)>& look) {
        Result all;
        for (std::uint64_t i = 0; i < races; ++i) {
            if (i % 4 == 0) folder.clear();
            const unsigned int writers = 2 + static_cast<unsigned int>(random() % 5);
            const Result result = race(writers, 2, opener);
            EXPECT_EQ(result.winners + result.refused + result.readers + result.strange, writers + 2);
            look(result);
            all.winners += result.winners;
            all.refused += result.refused;
            all.readers += result.readers;
            all.strange += result.strange;
            all.disturbed += result.disturbed;
            if (HasFailure()) break;
        }
        std::cout << "winners " << all.winners << ", refused " << all.refused << ", readers " << all.readers
                  << ", strange " << all.strange << ", disturbed " << all.disturbed << std::endl;
        return all;
    }

    fs::path path() const { return folder / "a.lvp"; }

    FastFolder folder;
    std::mt19937_64 random{test_support::seed()};

private:
    /// What nobody else has written, in this race or in an earlier one.
    std::string lastWord(unsigned int number) const {
        return "winner " + std::to_string(number) + " of race " + std::to_string(_races);
    }

    int write(const tOpener& opener, unsigned int number, const Line& line) const {
        std::unique_ptr<IDataStore> store;
        const std::string message = messageOf<StoreError>([&] { store = opener(path(), tMode::kWrite); });
        line.tell(outcomeOf(path(), message, "another process has it open for writing"));
        if (store) writeALot(*store, number);
        line.hear();
        if (store) create(*store, lastWord(number));
        return 0;
    }

    static void writeALot(IDataStore& store, unsigned int number) {
        while (store.extent() < 20) create(store, "");
        for (int flush = 0; flush < 3; ++flush) {
            for (unsigned int i = 0; i < 20; ++i) update(store, i, std::string(200, static_cast<char>('a' + number)));
            store.version(number);
            store.flush();
        }
    }

    // What it sees belongs together: the flush before the race, or one of the winner's.
    int read(const tOpener& opener, std::uint64_t before, const Line& line) const {
        std::unique_ptr<IDataStore> store;
        const std::string message = messageOf<StoreError>([&] { store = opener(path(), tMode::kRead); });
        line.tell(outcomeOf(path(), message, ""));
        bool sound = true;
        for (int look = 0; look < 20 && store; ++look) {
            const std::unique_ptr<IDataStore::ILock> guard(store->lock());
            sound = sound && (fingerprint(*store) == before || belongsTogether(*store));
        }
        line.hear();
        return sound ? 0 : 1;
    }

    static bool belongsTogether(IDataStore& store) {
        if (store.extent() == 0) return true;
        if (store.extent() < 20) return false;
        const std::string expected(200, static_cast<char>('a' + store.version()));
        for (unsigned int i = 0; i < 20; ++i) {
            if (contents(store, i) != expected) return false;
        }
        return true;
    }

    bool holds(const std::string& word) const {
        if (!fs::exists(path())) return false;
        const auto store = file(path(), tMode::kRead);
        for (unsigned int offset = 0; offset < store->extent(); ++offset) {
            if (contents(*store, offset) == word) return true;
        }
        return false;
    }

    unsigned int _races = 0;
};

TEST_F(WriterRace, IsWonByOneProcessAndTheOthersAreToldSoAndReadersGetIn) {
    const std::uint64_t races = test_support::effort("LVP_RACES", test_support::usually(200));
    const Result all = campaign(races, openHonestly, [](const Result& result) {
        EXPECT_EQ(result.winners, 1U);
        EXPECT_EQ(result.strange, 0U);
        EXPECT_EQ(result.disturbed, 0U);
    });
    EXPECT_EQ(all.winners, races);
}

TEST_F(WriterRace, HasSeveralWinnersWhereTheLockIsBypassed) {
    unsigned int doubles = 0;
    const Result all = campaign(test_support::usually(20), openPastTheLock,
                                [&](const Result& result) { doubles += result.winners > 1 ? 1 : 0; });
    EXPECT_GT(doubles, 0U);
    EXPECT_GT(all.disturbed, 0U) << "somebody's flush is lost, or somebody saw a mixture";
}

// --- Threads of one process

/// Lets threads open the file at once, until each has tried, and gives how many got in; the others have to be told.
unsigned int raceThreads(const fs::path& path, unsigned int count, const tOpener& opener) {
    std::atomic<unsigned int> waiting{count};
    std::atomic<unsigned int> winners{0};
    std::atomic<unsigned int> strange{0};
    std::vector<std::unique_ptr<IDataStore>> stores(count);
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            for (--waiting; waiting != 0;) std::this_thread::yield();
            const std::string message = messageOf<StoreError>([&] { stores[i] = opener(path, tMode::kWrite); });
            const tOutcome outcome = outcomeOf(path, message, "this process has it open already");
            if (outcome == kOpen) ++winners;
            if (outcome == kOther || outcome == kNoFile) ++strange;
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(strange, 0U);
    return winners;
}

class ThreadRace : public testing::Test {
protected:
    fs::path path() const { return folder / "a.lvp"; }

    FastFolder folder;
};

TEST_F(ThreadRace, IsWonByOneThread) {
    const std::uint64_t races = test_support::effort("LVP_RACES", test_support::usually(200));
    for (std::uint64_t i = 0; i < races; ++i) {
        if (i % 4 == 0) folder.clear();
        ASSERT_EQ(raceThreads(path(), 4, openHonestly), 1U);
    }
}

TEST_F(ThreadRace, HasSeveralWinnersWhereTheLockIsBypassed) {
    GrantingTap granting;
    const Watch watch(folder.path(), granting);
    EXPECT_GT(raceThreads(path(), 4, openPastTheRegistry), 1U);
}

}  // namespace
}  // namespace lumivard::platform::stores::disk
