// Power cuts at each moment of a store's life, simulated from the calls that the system has seen.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <vector>

#include "lumivard/platform/stores.h"
#include "tests/fault/disk/Disk.h"
#include "tests/fault/disk/Finding.h"
#include "tests/fault/disk/PlainFileSystemTap.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace fs = std::filesystem;
using tEvent = Event::tKind;
using tLog = std::vector<Event>;

constexpr char kName[] = "a.lvp";

/// A store's life, on a folder that is watched.
struct Life {
    explicit Life(std::uint64_t seed, bool plainFileSystem = false) : model(seed) {
        const FastFolder folder;
        const std::uint64_t counted = writesCountedBySystem();
        {
            PlainFileSystemTap plain(recorder);
            const Watch watch(folder.path(), plainFileSystem ? static_cast<Tap&>(plain) : recorder);
            for (const unsigned int flushes : {0U, 3U, 6U}) session(folder / kName, flushes);
            compact(folder / kName);
            session(folder / kName, 4);
            writesSeen = watch.writes();
        }
        writesCounted = writesCountedBySystem() - counted;
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            left[entry.path().filename().string()] = bytesOf(entry.path());
        }
    }

    const tLog& log() const { return recorder.log(); }

    Workload model;
    Recorder recorder;
    std::map<std::string, std::string> left;  ///< what is there in the end: names and bytes
    std::uint64_t writesSeen = 0;
    std::uint64_t writesCounted = 0;

private:
    // Several flushes and that of the closing.
    void session(const fs::path& path, unsigned int flushes) {
        auto store = file(path, tMode::kWrite);
        recorder.acknowledge(model.batches());
        for (unsigned int i = 0; i < flushes; ++i) {
            model.next(store.get());
            store->flush();
            recorder.acknowledge(model.batches());
        }
        model.next(store.get());
        store.reset();
        recorder.acknowledge(model.batches());
    }
};

tLog without(tEvent kind, tLog log) {
    log.erase(std::remove_if(log.begin(), log.end(), [&](const Event& event) { return event.kind == kind; }),
              log.end());
    return log;
}

/// A moment of a life, by the number of events before it, and what the disk makes of it.
struct Cut {
    std::size_t events = 0;
    double chance = 0;
    std::uint64_t unit = Disk::kSector;
};

/// All moments with all that a disk may make of them, or as many as are wanted of these, in the order of the log.
std::vector<Cut> cuts(std::size_t events, std::uint64_t wanted, std::mt19937_64& random) {
    std::vector<Cut> all;
    for (std::size_t at = 0; at <= events; ++at) {
        for (const double chance : {0.0, 0.1, 0.5, 0.9, 1.0}) {
            for (const std::uint64_t unit : {Disk::kSector, 8 * Disk::kSector}) all.push_back({at, chance, unit});
        }
    }
    std::shuffle(all.begin(), all.end(), random);
    if (all.size() > wanted) all.resize(wanted);
    std::sort(all.begin(), all.end(), [](const Cut& a, const Cut& b) { return a.events < b.events; });
    return all;
}

class PowerCut : public testing::Test {
protected:
    using tLook = Finding (*)(const fs::path&, tMode, const Workload&, unsigned int);

    /// Cuts the power `count` times in the course of a log, and looks at what the disk holds then.
    void replay(const tLog& log, const Workload& model, std::uint64_t count, tLook look) {
        Disk disk;
        std::size_t taken = 0;
        bool came = false;  // the store was opened before the power went
        unsigned int acknowledged = 0;
        for (const Cut& cut : cuts(log.size(), count, random)) {
            for (; taken < cut.events; ++taken) {
                const Event& event = log[taken];
                disk.take(event);
                came = came || event.kind == tEvent::kAcknowledged;
                if (event.kind == tEvent::kAcknowledged) acknowledged = event.number;
            }
            putDown(disk.afterPowerCut(random, cut.chance, cut.unit));
            const Finding finding = look(path(), random() % 2 == 0 ? tMode::kRead : tMode::kWrite, model, acknowledged);
            tally.add(finding.found);
            if (finding.found == tFound::kAbsent && came) ++lostFiles;
            if (look != lookAt) continue;
            ASSERT_EQ(broken(), 0U) << finding.found << " after flush " << acknowledged << ", event " << taken
                                    << ", chance " << cut.chance << ", unit " << cut.unit << ' ' << finding.message;
            if (tally.all() % 16 == 0 && finding.found != tFound::kAbsent) goOn();
        }
    }

    fs::path path() const { return folder / kName; }
    unsigned int broken() const { return tally.broken() + lostFiles; }

    FastFolder folder;
    Tally tally;
    unsigned int lostFiles = 0;
    std::mt19937_64 random{test_support::seed()};

private:
    void putDown(const Disk::Folder& image) {
        folder.clear();
        std::map<unsigned int, fs::path> made;
        for (const auto& [name, file] : image.names) {
            const auto [first, isFirst] = made.emplace(file, folder / name);
            if (isFirst) {
                std::ofstream(folder / name, std::ios::binary) << withAnyLocks(name, image.files.at(file));
            } else {
                fs::create_hard_link(first->second, folder / name);
            }
        }
    }

    // The lock file is one in which processes meet: after a power cut its bytes are what they may.
    std::string withAnyLocks(const std::string& name, std::string bytes) {
        if (!name.ends_with("-lock") || random() % 2 == 0) return bytes;
        for (char& byte : bytes) byte = static_cast<char>(random());
        return bytes;
    }

    // What was found can be written again, over all the space that is taken for free.
    void goOn() {
        std::uint64_t before = 0;
        {
            const auto store = file(path(), tMode::kWrite);
            before = fingerprint(*store);
            for (int round = 0; round < 3; ++round) {
                rewrite(*store);
                store->flush();
            }
        }
        EXPECT_EQ(fingerprint(*file(path(), tMode::kRead)), before);
        EXPECT_EQ(verify(path(), true).faultCount, 0U);
    }

    static void rewrite(IDataStore& store) {
        for (unsigned int offset = 0; offset < store.extent(); ++offset) {
            std::string bytes(store.size(offset), '\0');
            if (bytes.empty()) continue;
            store.read(offset, bytes.data(), static_cast<unsigned int>(bytes.size()));
            store.update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
        }
    }
};

TEST_F(PowerCut, LeavesExactlyTheLastFlushOrTheOneUnderWay) {
    const std::uint64_t wanted = test_support::effort("LVP_POWER_CUTS", test_support::usually(5000));
    std::size_t events = 0;
    for (std::uint64_t lives = 0; tally.all() < wanted; ++lives) {
        const Life life(random(), lives % 2 == 1);
        events += life.log().size();
        replay(life.log(), life.model, std::min<std::uint64_t>(wanted - tally.all(), 2500), lookAt);
        if (HasFailure()) return;
    }
    std::cout << events << " events; " << tally << std::endl;
    EXPECT_EQ(broken(), 0U);
    EXPECT_GT(tally[tFound::kNext], 0U) << "no power cut came before an acknowledgement";
}

// --- Whether all that reaches the disk is in the log

TEST_F(PowerCut, IsSimulatedFromAllThatTheSystemWasAskedToWrite) {
    const Life life(random());
    EXPECT_GT(life.writesSeen, 20U);
    if (life.writesCounted == 0) GTEST_SKIP() << "this system does not count";
    EXPECT_EQ(life.writesSeen, life.writesCounted);
}

TEST_F(PowerCut, WithoutACutTheSimulatedDiskHoldsWhatTheRealOneDoes) {
    const Life life(random());
    Disk disk;
    for (const Event& event : life.log()) disk.take(event);
    const Disk::Folder simulated = disk.contents();
    ASSERT_EQ(simulated.names.size(), life.left.size());
    for (const auto& [name, number] : simulated.names) {
        ASSERT_TRUE(life.left.contains(name)) << name;
        const std::string& bytes = simulated.files.at(number);
        EXPECT_EQ(bytes.size(), life.left.at(name).size()) << name;
        if (name.ends_with("-lock")) continue;  // what is in it comes through a mapping
        EXPECT_TRUE(bytes == life.left.at(name)) << name;
    }
}

// --- Disks that do not honour a flush

class DishonestDisk : public PowerCut {
protected:
    void replayWithout(tEvent kind) {
        const Life life(random());
        replay(without(kind, life.log()), life.model, test_support::kSanitized ? 100 : 400, lookFromAfar);
        std::cout << tally << ", lost files " << lostFiles << std::endl;
    }
};

TEST_F(DishonestDisk, MixesFlushesWhenDataIsNotWrittenBeforeWhatNamesIt) {
    replayWithout(tEvent::kSync);
    EXPECT_GT(tally[tFound::kMixed] + tally[tFound::kUnreadable] + tally[tFound::kCrashed], 0U);
}

TEST_F(DishonestDisk, LosesAFlushWhenWhatNamesItIsNotWrittenBeforeItReturns) {
    replayWithout(tEvent::kSyncRange);
    EXPECT_GT(tally[tFound::kOlder], 0U);
}

TEST_F(DishonestDisk, LosesTheFileWhenItsNameIsNotWritten) {
    replayWithout(tEvent::kSyncFolder);
    EXPECT_GT(lostFiles, 0U);
}

}  // namespace
}  // namespace lumivard::platform::stores::disk
