// One file in several processes, and processes that die.
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lumivard/platform/stores.h"
#include "stores/core/Core.h"
#include "stores/lmdb/LmdbEngine.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Line = ChildProcess::Line;

constexpr char kWriterElsewhere[] = "another process has it open for writing";

class FileSharing : public testing::Test {
protected:
    fs::path path() const { return folder / "a.lvp"; }
    std::unique_ptr<IDataStore> open(tMode mode = tMode::kWrite) const { return file(path(), mode); }

    TemporaryFolder folder;
};

void guard(IDataStore& store) {
    delete store.lock();
}

// --- Death

TEST_F(FileSharing, AProcessThatEndsWithoutClosingLeavesTheLastFlush) {
    ChildProcess child([&](const Line&) {
        auto store = open();
        create(*store, "flushed");
        store->version(1);
        store->flush();
        update(*store, 0, "not flushed");
        create(*store, "nor this");
        store->version(2);
        store.release();
        return 0;
    });
    EXPECT_EQ(child.wait(), 0);
    auto store = open();
    EXPECT_EQ(contents(*store, 0), "flushed");
    EXPECT_EQ(store->extent(), 1U);
    EXPECT_EQ(store->version(), 1U);
}

TEST_F(FileSharing, AProcessThatEndsBeforeItsFirstFlushLeavesAnEmptyStore) {
    ChildProcess child([&](const Line&) {
        auto store = open();
        create(*store, "not flushed");
        store.release();
        return 0;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(open()->extent(), 0U);
}

// Writes flush number n into every record, over and over, and tells of each flush.
int flushForEver(IDataStore& store, const Line& line) {
    constexpr unsigned int kRecords = 40;
    for (unsigned int i = 0; i < kRecords; ++i) create(store, "");
    for (unsigned int number = 1;; ++number) {
        for (unsigned int i = 0; i < kRecords; ++i) store.update(i, &number, sizeof number, true);
        store.version(number);
        store.flush();
        line.tell(number);
    }
}

TEST_F(FileSharing, AKilledWriterLeavesExactlyItsLastFlushOrTheOneUnderWay) {
    for (unsigned int kill = 1; kill <= 25; ++kill) {
        fs::remove(path());
        ChildProcess child([&](const Line& line) { return flushForEver(*open(), line); });
        unsigned int acknowledged = 0;
        while (acknowledged < kill) acknowledged = child.hear();
        child.kill();
        for (unsigned int more = child.hear(); more != ChildProcess::kGone; more = child.hear()) acknowledged = more;

        const auto store = open();
        const unsigned int found = store->version();
        EXPECT_TRUE(found == acknowledged || found == acknowledged + 1) << found << " after " << acknowledged;
        ASSERT_EQ(store->extent(), 40U);
        for (unsigned int i = 0; i < 40; ++i) {
            unsigned int number = 0;
            store->read(i, &number, sizeof number);
            EXPECT_EQ(number, found) << "record " << i;
        }
    }
}

TEST_F(FileSharing, TheLockOfAKilledWriterBlocksNobody) {
    for (int i = 0; i < 10; ++i) {
        ChildProcess child([&](const Line& line) {
            const auto store = open();
            line.tell(1);
            line.hear();
            return 0;
        });
        ASSERT_EQ(child.hear(), 1U);
        child.kill();
        EXPECT_NO_THROW(create(*open(), "x"));
    }
    EXPECT_EQ(open()->extent(), 10U);
}

// --- Writers

TEST_F(FileSharing, ASecondWriterIsRefusedAtOnceAndByName) {
    const auto store = open();
    ChildProcess child([&](const Line&) {
        const std::string message = messageOf<StoreError>([&] { open(); });
        return message == "Cannot open the store \"" + path().string() + "\": " + kWriterElsewhere + "." ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
}

TEST_F(FileSharing, ANewWriterIsWelcomeWhenTheFirstHasClosed) {
    ChildProcess child([&](const Line& line) {
        auto store = open();
        create(*store, "first");
        line.tell(1);
        line.hear();
        store.reset();
        line.tell(2);
        line.hear();
        return 0;
    });
    ASSERT_EQ(child.hear(), 1U);
    EXPECT_THAT(messageOf<StoreError>([&] { open(); }), HasSubstr(kWriterElsewhere));
    child.tell(0);
    ASSERT_EQ(child.hear(), 2U);
    EXPECT_EQ(contents(*open(), 0), "first");
    child.tell(0);
    EXPECT_EQ(child.wait(), 0);
}

// Opens for writing when told, and reports: 1 open, 2 refused since there is a writer, 3 anything else.
int openWhenTold(const fs::path& path, const Line& line) {
    line.hear();
    std::unique_ptr<IDataStore> store;
    const std::string message = messageOf<StoreError>([&] { store = file(path, tMode::kWrite); });
    line.tell(store ? 1 : message.find(kWriterElsewhere) != std::string::npos ? 2 : 3);
    line.hear();
    return 0;
}

TEST_F(FileSharing, OfSeveralWhoCreateAtOnceOneWinsAndAllFindItsFile) {
    for (int round = 0; round < 30; ++round) {
        const fs::path name = folder / ("race" + std::to_string(round));
        std::vector<std::unique_ptr<ChildProcess>> children;
        for (int i = 0; i < 4; ++i) {
            children.push_back(
                std::make_unique<ChildProcess>([&](const Line& line) { return openWhenTold(name, line); }));
        }
        for (const auto& child : children) child->tell(0);
        int winners = 0;
        for (const auto& child : children) {
            const unsigned int outcome = child->hear();
            EXPECT_TRUE(outcome == 1 || outcome == 2) << outcome;
            if (outcome == 1) ++winners;
        }
        EXPECT_EQ(winners, 1);
        for (const auto& child : children) {
            child->tell(0);
            EXPECT_EQ(child->wait(), 0);
        }
        EXPECT_EQ(file(name, tMode::kRead)->extent(), 0U);
    }
    EXPECT_EQ(folder.entries(), 60);  // each file and its lock file
}

// --- Readers beside a writer

TEST_F(FileSharing, AReaderSeesTheLastFlushAndNotWhatCameAfter) {
    auto writer = open();
    create(*writer, "flushed");
    writer->version(1);
    writer->flush();
    update(*writer, 0, "not flushed");
    create(*writer, "not flushed");
    writer->version(2);
    ChildProcess child([&](const Line&) {
        const auto reader = open(tMode::kRead);
        return contents(*reader, 0) == "flushed" && reader->extent() == 1 && reader->version() == 1 ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
}

TEST_F(FileSharing, AReaderMovesToALaterFlushAtItsNextOutermostGuard) {
    ChildProcess child([&](const Line& line) {
        auto writer = open();
        create(*writer, "one");
        create(*writer, "gone");
        writer->flush();
        line.tell(1);
        line.hear();
        update(*writer, 0, "two");
        writer->erase(1);
        create(*writer, "new");
        writer->version(5);
        writer->flush();
        line.tell(2);
        line.hear();
        return 0;
    });
    ASSERT_EQ(child.hear(), 1U);
    const auto reader = open(tMode::kRead);
    EXPECT_EQ(contents(*reader, 0), "one");
    {
        const std::unique_ptr<IDataStore::ILock> outer(reader->lock());
        child.tell(0);
        ASSERT_EQ(child.hear(), 2U);
        guard(*reader);
        EXPECT_EQ(contents(*reader, 0), "one");
        EXPECT_EQ(contents(*reader, 1), "gone") << "a record that is first asked for belongs to the same flush";
        EXPECT_EQ(reader->extent(), 2U);
    }
    guard(*reader);
    EXPECT_EQ(contents(*reader, 0), "two");
    EXPECT_EQ(reader->size(1), 0U);
    EXPECT_EQ(contents(*reader, 2), "new");
    EXPECT_EQ(reader->extent(), 3U);
    EXPECT_EQ(reader->version(), 5U);
    child.tell(0);
    EXPECT_EQ(child.wait(), 0);
}

TEST_F(FileSharing, AReaderWithoutGuardStaysWhereItIs) {
    ChildProcess child([&](const Line& line) {
        auto writer = open();
        create(*writer, "one");
        create(*writer, "one");
        writer->flush();
        line.tell(1);
        line.hear();
        for (const unsigned int offset : {0U, 1U}) update(*writer, offset, "two");
        writer->flush();
        line.tell(2);
        line.hear();
        return 0;
    });
    ASSERT_EQ(child.hear(), 1U);
    const auto reader = open(tMode::kRead);
    EXPECT_EQ(contents(*reader, 0), "one");
    child.tell(0);
    ASSERT_EQ(child.hear(), 2U);
    EXPECT_EQ(contents(*reader, 0) + contents(*reader, 1), "oneone");
    guard(*reader);
    EXPECT_EQ(contents(*reader, 0) + contents(*reader, 1), "twotwo");
    child.tell(0);
    EXPECT_EQ(child.wait(), 0);
}

TEST_F(FileSharing, AReaderFollowsAWriterThatOutgrowsItsMap) {
    ChildProcess child([&](const Line& line) {
        auto writer = open();
        create(*writer, "small");
        writer->flush();
        line.tell(1);
        line.hear();
        for (int i = 0; i < 20; ++i) create(*writer, std::string(100000, 'x'));
        writer->flush();
        line.tell(2);
        line.hear();
        return 0;
    });
    ASSERT_EQ(child.hear(), 1U);
    auto engine = std::make_unique<LmdbEngine>(path(), tMode::kRead,
                                               LmdbEngine::Settings{.mapSize = 32768, .fileSystem = std::nullopt});
    Core reader("reader", std::move(engine), tMode::kRead);
    EXPECT_EQ(contents(reader, 0), "small");
    child.tell(0);
    ASSERT_EQ(child.hear(), 2U);
    guard(reader);
    EXPECT_EQ(contents(reader, 0), "small");
    EXPECT_TRUE(contents(reader, 20) == std::string(100000, 'x'));
    child.tell(0);
    EXPECT_EQ(child.wait(), 0);
}

TEST_F(FileSharing, SeveralReadersAreOpenBesideAWriterAndBlockNobody) {
    auto writer = open();
    create(*writer, "one");
    writer->flush();
    std::vector<std::unique_ptr<ChildProcess>> readers;
    for (int i = 0; i < 3; ++i) {
        readers.push_back(std::make_unique<ChildProcess>([&](const Line& line) {
            const auto reader = open(tMode::kRead);
            line.tell(static_cast<unsigned int>(contents(*reader, 0).size()));
            line.hear();
            guard(*reader);
            line.tell(static_cast<unsigned int>(contents(*reader, 0).size()));
            line.hear();
            return 0;
        }));
    }
    for (const auto& reader : readers) EXPECT_EQ(reader->hear(), 3U);
    update(*writer, 0, "three");
    writer->flush();
    for (const auto& reader : readers) reader->tell(0);
    for (const auto& reader : readers) EXPECT_EQ(reader->hear(), 5U);
    for (const auto& reader : readers) reader->tell(0);
    for (const auto& reader : readers) EXPECT_EQ(reader->wait(), 0);
}

TEST_F(FileSharing, AKilledReaderBlocksNobody) {
    open();
    ChildProcess child([&](const Line& line) {
        const auto reader = open(tMode::kRead);
        line.tell(1);
        line.hear();
        return 0;
    });
    ASSERT_EQ(child.hear(), 1U);
    child.kill();
    auto writer = open();
    for (int i = 0; i < 50; ++i) {
        create(*writer, "x");
        writer->flush();
    }
    EXPECT_EQ(writer->extent(), 50U);
}

TEST_F(FileSharing, AKilledReaderHoldsNoSpaceOnceAWriterOpens) {
    create(*open(), "");
    // Goes with every flush, and keeps the lock file from starting afresh.
    ChildProcess living([&](const Line& line) {
        const auto reader = open(tMode::kRead);
        for (line.tell(1);; line.tell(1)) {
            line.hear();
            guard(*reader);
        }
        return 0;
    });
    ASSERT_EQ(living.hear(), 1U);
    ChildProcess dead([&](const Line& line) {
        const auto reader = open(tMode::kRead);
        line.tell(1);
        line.hear();
        return 0;
    });
    ASSERT_EQ(dead.hear(), 1U);
    dead.kill();

    const auto writer = open();
    for (int i = 0; i < 30; ++i) {
        update(*writer, 0, std::string(1 << 20, static_cast<char>('a' + i % 26)));
        writer->flush();
        living.tell(0);
        ASSERT_EQ(living.hear(), 1U);
    }
    EXPECT_LT(fs::file_size(path()), 10U << 20);
}

TEST_F(FileSharing, BookkeepingOfAReaderReachesNeitherTheFileNorTheWriter) {
    create(*open(), "refs=0");
    ChildProcess child([&](const Line&) {
        const auto reader = open(tMode::kRead);
        update(*reader, 0, "refs=1", false);
        return 0;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(contents(*open(), 0), "refs=0");
}

// --- Children

TEST_F(FileSharing, AChildReadsThroughAHandleOfItsOwnBesideItsParent) {
    auto store = open();
    create(*store, "parent");
    store->flush();
    ChildProcess child([&](const Line&) { return contents(*open(tMode::kRead), 0) == "parent" ? 0 : 1; });
    EXPECT_EQ(child.wait(), 0);
}

TEST_F(FileSharing, AChildCanChangeNothingThroughTheHandleOfItsParent) {
    auto store = open();
    create(*store, "parent");
    ChildProcess child([&](const Line&) {
        const std::string message = messageOf<StoreError>([&] { store->flush(); });
        store.reset();
        return message.find("it was opened by the parent of this process") != std::string::npos ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
    append(*store, 0, "+");
    store->flush();
    store.reset();
    EXPECT_EQ(contents(*open(), 0), "parent+");
}

TEST_F(FileSharing, AChildReadsNothingThroughTheHandleOfItsParentThatTheParentHadNotRead) {
    auto store = open();
    create(*store, "parent");
    store.reset();
    store = open();
    ChildProcess child([&](const Line&) {
        const std::string message = messageOf<StoreError>([&] { store->size(0); });
        return message.find("it was opened by the parent of this process") != std::string::npos ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(contents(*store, 0), "parent");
}

TEST_F(FileSharing, AChildThatClosesTheHandleOfItsParentLeavesThatInOrder) {
    auto store = open();
    create(*store, "a");
    store->flush();
    ChildProcess child([&](const Line&) {
        update(*store, 0, "child");
        store.reset();
        return 0;
    });
    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(contents(*store, 0), "a");
    EXPECT_THAT(messageOf<StoreError>([&] { open(); }), HasSubstr("this process has it open already"));
    ChildProcess other([&](const Line&) {
        return messageOf<StoreError>([&] { open(); }).find(kWriterElsewhere) != std::string::npos ? 0 : 1;
    });
    EXPECT_EQ(other.wait(), 0);
    store.reset();
    EXPECT_EQ(contents(*open(), 0), "a");
}

TEST_F(FileSharing, AChildThatClosesTheHandleOfItsParentKeepsItsOwn) {
    create(*open(), "a");
    auto store = open(tMode::kRead);
    ChildProcess child([&](const Line&) {
        const auto own = open(tMode::kRead);
        store.reset();
        const std::string message = messageOf<StoreError>([&] { open(tMode::kRead); });
        return message.find("this process has it open already") != std::string::npos ? 0 : 1;
    });
    EXPECT_EQ(child.wait(), 0);
}

TEST_F(FileSharing, AClosedStoreIsFreeThoughAChildLives) {
    for (const tMode mode : {tMode::kWrite, tMode::kRead}) {
        open().reset();
        auto store = open(mode);
        ChildProcess child([&](const Line& line) {
            line.tell(1);
            line.hear();
            store.release();
            return 0;
        });
        EXPECT_EQ(child.hear(), 1U);
        store.reset();
        EXPECT_NO_THROW(open());
        EXPECT_NO_THROW(compact(path()));
        child.tell(1);
        EXPECT_EQ(child.wait(), 0);
    }
}

// --- Limits of the process

TEST_F(FileSharing, WhenAddressSpaceRunsOutTheFlushFailsAndReadingGoesOn) {
    if (test_support::kSanitized) GTEST_SKIP() << "a sanitizer needs all the address space there is";
    ChildProcess child([&](const Line&) {
        auto engine = std::make_unique<LmdbEngine>(
            path(), tMode::kWrite, LmdbEngine::Settings{.mapSize = 1 << 20, .fileSystem = std::nullopt});
        Core store(path().string(), std::move(engine), tMode::kWrite);
        create(store, "good");
        create(store, "better");
        store.flush();
        const std::string large(64 << 20, 'x');
        create(store, large);
        const rlimit limit{256 << 20, 256 << 20};
        if (::setrlimit(RLIMIT_AS, &limit) != 0) return 2;
        const std::string message = messageOf<StoreError>([&] { store.flush(); });
        if (message.find("its file needs more address space than there is") == std::string::npos) return 3;
        return contents(store, 1) == "better" ? 0 : 4;
    });
    EXPECT_EQ(child.wait(), 0);
    auto store = open();
    EXPECT_EQ(store->extent(), 2U);
    EXPECT_EQ(contents(*store, 0), "good");
}

TEST_F(FileSharing, AFileThatMayNotGrowMakesTheFlushFailAndKeepsTheLastOne) {
    ChildProcess child([&](const Line&) {
        ::signal(SIGXFSZ, SIG_IGN);
        auto store = open();
        create(*store, "good");
        store->flush();
        update(*store, 0, "lost");
        create(*store, std::string(10 << 20, 'x'));
        const rlimit limit{1 << 20, 1 << 20};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
        const std::string first = messageOf<StoreError>([&] { store->flush(); });
        if (first.find("Cannot flush the store \"" + path().string()) != 0) return 3;
        if (messageOf<StoreError>([&] { update(*store, 0, "x"); }) != first) return 4;
        return contents(*store, 0) == "lost" ? 0 : 5;
    });
    EXPECT_EQ(child.wait(), 0);
    auto store = open();
    EXPECT_EQ(store->extent(), 1U);
    EXPECT_EQ(contents(*store, 0), "good");
}

}  // namespace
}  // namespace lumivard::platform::stores
