// What a core does beyond the contract of `IRecordAccess`, and what of it reaches the engine.
#include <memory>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "tests/stores/CoreFixture.h"

namespace lumivard::platform::stores {
namespace {

using core::storage::datastore::IRecordAccess;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class CoreAccess : public CoreFixture {
protected:
    void write(unsigned int offset, unsigned int position, const std::string& bytes, bool changed = true) {
        core().write(offset, position, bytes.data(), static_cast<unsigned int>(bytes.size()), changed);
    }
    std::string shown(unsigned int offset) {
        const auto view = core().view(offset);
        return view.size == 0 ? std::string() : std::string(view.data, view.size);
    }
};

// --- Views and writes

TEST_F(CoreAccess, AViewBringsItsRecordInOnceAndStaysInItsPlace) {
    stored({"a", "b"});
    open();
    EXPECT_EQ(shown(1), "b");
    const char* const place = core().view(1).data;
    EXPECT_EQ(shown(0) + shown(1), "ab");
    EXPECT_EQ(core().view(1).data, place);
    write(1, 0, "B");
    EXPECT_EQ(shown(1), "B");
    EXPECT_THAT(disk.loads, ElementsAre(1, 0));
}

TEST_F(CoreAccess, AViewThatCannotBeBroughtInThrows) {
    stored({"a"});
    open();
    disk.beforeLoad = fail;
    EXPECT_EQ(failureOf([&] { core().view(0); }), "Cannot read record 0 of the store \"the name\": the disk is full.");
}

TEST_F(CoreAccess, AWriteOfContentIsFlushedWithTheWholeRecord) {
    stored({"abcd", "efgh"});
    open();
    write(1, 2, "G");
    core().flush();
    ASSERT_THAT(disk.commits, SizeIs(1));
    EXPECT_THAT(disk.commits[0].records, ElementsAre(Written{1, "efGh"}));
}

TEST_F(CoreAccess, AWriteOfBookkeepingAloneNeverMakesAFlushWorkAndIsStoredByClosing) {
    stored({"refs=0"});
    open();
    write(0, 5, "1", false);
    core().flush();
    EXPECT_THAT(disk.commits, IsEmpty());
    close();
    EXPECT_EQ(disk.records[0], "refs=1");
}

TEST_F(CoreAccess, AWriteOutsideItsRecordSaysSo) {
    stored({"abcd"});
    open();
    const std::string sentence = "Cannot change record 0 of the store \"the name\": the bytes do not lie inside it.";
    EXPECT_EQ(failureOf([&] { write(0, 3, "xy"); }), sentence);
    EXPECT_EQ(failureOf([&] { write(0, 0xFFFFFFFF, "xy", false); }), sentence);
    EXPECT_EQ(failureOf([&] { write(7, 0, "x"); }),
              "Cannot change record 7 of the store \"the name\": there is no such record.");
    core().flush();
    EXPECT_THAT(disk.commits, IsEmpty());
}

TEST_F(CoreAccess, AStoreOpenedForReadingRefusesAWriteOfContentAndTakesOneOfBookkeeping) {
    stored({"refs=0"});
    open(tMode::kRead);
    EXPECT_EQ(failureOf([&] { write(0, 0, "R"); }),
              "Cannot change record 0 of the store \"the name\": it was opened for reading only.");
    write(0, 5, "1", false);
    EXPECT_EQ(shown(0), "refs=1");
}

TEST_F(CoreAccess, AStoreOpenedForReadingPassesOverAWriteOfBookkeepingToARecordThatIsGone) {
    stored({"refs=1"});
    open(tMode::kRead);
    EXPECT_EQ(shown(0), "refs=1");
    disk.records.clear();
    disk.news = Engine::News{disk.header, true, {}};
    delete core().lock();
    EXPECT_NO_THROW(write(0, 5, "0", false));
}

TEST_F(CoreAccess, AfterAFailedFlushAWriteOfContentThrowsTheSameErrorAndOneOfBookkeepingDoesNot) {
    stored({"refs=0"});
    open();
    write(0, 0, "R");
    disk.beforeCommit = fail;
    const std::string first = failureOf([&] { core().flush(); });
    EXPECT_EQ(failureOf([&] { write(0, 0, "S"); }), first);
    EXPECT_NO_THROW(write(0, 5, "1", false));
    EXPECT_EQ(shown(0), "Refs=1");
}

TEST_F(CoreAccess, ChangesTellThatAnotherProcessHasMadeSome) {
    stored({"a"});
    open(tMode::kRead);
    const auto before = core().changes();
    delete core().lock();
    EXPECT_EQ(core().changes(), before) << "nobody has";
    disk.news = Engine::News{disk.header, true, {}};
    core().enter();
    EXPECT_GT(core().changes(), before);
    core().leave();
}

TEST_F(CoreAccess, WhatAViewShowsMayBeHandedToAnyOperation) {
    stored({"abcdefgh", "x"});
    open();
    const auto view = [this](unsigned int offset) { return core().view(offset); };
    EXPECT_EQ(core().create(view(0).data + 4, 4), 2U);
    core().append(1, view(0).data, 8);
    core().append(0, view(0).data, 8);
    EXPECT_EQ(shown(0), "abcdefghabcdefgh");
    core().write(0, 1, view(0).data, 8, true);
    EXPECT_EQ(shown(0), "aabcdefghbcdefgh");
    core().update(0, view(0).data + 2, 8, true);
    EXPECT_EQ(shown(0) + shown(1) + shown(2),
              "bcdefghb"
              "xabcdefgh"
              "efgh");
}

// --- Records that the engine lends

class LentRecords : public CoreAccess {
protected:
    LentRecords() { disk.lends = true; }

    bool showsLent(unsigned int offset) {
        const auto view = core().view(offset);
        for (const auto& bytes : disk.lent) {
            if (bytes->data() == view.data) return true;
        }
        return false;
    }
};

TEST_F(LentRecords, AreShownWhereTheEngineHasThem) {
    stored({"a", "bc"});
    open();
    EXPECT_EQ(shown(1), "bc");
    EXPECT_TRUE(showsLent(1));
    EXPECT_EQ(contents(core(), 1), "bc");
    EXPECT_EQ(core().size(1), 2U);
    EXPECT_THAT(disk.loads, ElementsAre(1));
}

TEST_F(LentRecords, AreCopiedToBeCountedAndGivenBackWhenTheCountIsWhatIsStored) {
    stored({"refs=0"});
    open();
    for (int i = 0; i < 3; ++i) {
        write(0, 5, "1", false);
        EXPECT_EQ(shown(0), "refs=1");
        EXPECT_FALSE(showsLent(0));
        write(0, 5, "2", false);
        write(0, 5, "1", false);
        EXPECT_FALSE(showsLent(0));
        write(0, 5, "0", false);
        EXPECT_EQ(shown(0), "refs=0");
        EXPECT_TRUE(showsLent(0));
    }
    EXPECT_THAT(disk.loads, ElementsAre(0));
    close();
    EXPECT_THAT(disk.loads, ElementsAre(0)) << "there is nothing to compare";
    EXPECT_THAT(disk.commits, IsEmpty());
}

TEST_F(LentRecords, AreNotGivenBackForContentThatWasChanged) {
    stored({"refs=0"});
    open();
    write(0, 0, "R");
    write(0, 0, "r");
    write(0, 5, "1", false);
    write(0, 5, "0", false);
    EXPECT_FALSE(showsLent(0));
    core().flush();
    ASSERT_THAT(disk.commits, SizeIs(1));
    EXPECT_THAT(disk.commits[0].records, ElementsAre(Written{0, "refs=0"}));
}

TEST_F(LentRecords, AreReadAnewAfterAFlush) {
    stored({"refs=0", "a", "b"});
    open();
    write(0, 5, "1", false);
    EXPECT_EQ(shown(1) + shown(2), "ab");
    write(2, 0, "B");
    core().flush();
    EXPECT_EQ(shown(0) + shown(1) + shown(2), "refs=1aB");
    EXPECT_TRUE(showsLent(1));
    write(0, 5, "0", false);
    EXPECT_EQ(shown(0), "refs=0");
    EXPECT_FALSE(showsLent(0)) << "what it was copied from is gone";
    write(1, 0, "A");
    write(2, 0, "C");
    core().flush();
    close();
    EXPECT_EQ(disk.records[0] + disk.records[1] + disk.records[2], "refs=0AC");
}

TEST_F(LentRecords, AreReadAnewAfterAFlushThatFailed) {
    stored({"a", "b"});
    open();
    EXPECT_EQ(shown(0), "a");
    write(1, 0, "B");
    disk.beforeCommit = fail;
    failureOf([&] { core().flush(); });
    EXPECT_EQ(shown(0) + shown(1), "aB");
    EXPECT_THAT(disk.loads, ElementsAre(0, 1, 0));
}

TEST_F(LentRecords, AreReadAnewWhenThereIsNews) {
    stored({"a", "b"});
    open(tMode::kRead);
    EXPECT_EQ(shown(0) + shown(1), "ab");
    disk.records[1] = "B";
    disk.news = Engine::News{disk.header, false, {1}};
    delete core().lock();
    EXPECT_EQ(shown(0) + shown(1), "aB");
    disk.records[0] = "A";
    disk.news = Engine::News{disk.header, true, {}};
    delete core().lock();
    EXPECT_EQ(shown(0) + shown(1), "AB");
}

TEST_F(LentRecords, AreReadAnewAfterAGuardThatWasRefused) {
    stored({"refs=0"});
    open(tMode::kRead);
    EXPECT_EQ(shown(0), "refs=0");
    disk.beforeGuard = [this] {
        disk.lent.clear();  // the snapshot has moved already
        fail();
    };
    failureOf([&] { core().enter(); });
    EXPECT_EQ(shown(0), "refs=0");
    EXPECT_THAT(disk.loads, ElementsAre(0, 0));
}

TEST_F(LentRecords, GiveWayToWhatEachOperationMakesOfThem) {
    stored({"abcd", "abcd", "abcd", "abcd", ""});
    open();
    for (unsigned int offset = 0; offset < 5; ++offset) shown(offset);
    core().append(0, core().view(0).data, 4);
    core().update(1, "xy", 2, true);
    core().update(2, "z", 1, false);
    core().erase(3);
    core().append(4, "e", 1);
    EXPECT_EQ(shown(0) + shown(1) + shown(2) + shown(3) + shown(4), "abcdabcdxyze");
    EXPECT_EQ(core().size(3), 0U);
    close();
    EXPECT_EQ(disk.records[0] + disk.records[1] + disk.records[2] + disk.records[4], "abcdabcdxyze");
    EXPECT_EQ(disk.records.count(3), 0U);
}

TEST_F(LentRecords, AreCopiedAtOnceWhenTheyAreLong) {
    stored({std::string(RecordHeap::kLongestLent, 'a'), std::string(RecordHeap::kLongestLent + 1, 'b')});
    open();
    EXPECT_TRUE(showsLent(0));
    EXPECT_FALSE(showsLent(1));
    write(0, 0, "x");
    core().flush();
    disk.loads.clear();
    EXPECT_EQ(shown(1), std::string(RecordHeap::kLongestLent + 1, 'b'));
    EXPECT_THAT(disk.loads, IsEmpty()) << "so that it is not read anew after each flush";
}

// --- Closing

TEST_F(CoreAccess, ClosingComparesBookkeepingInTheOrderOfTheFile) {
    stored({"refs=0", "refs=0", "refs=0", "refs=0"});
    open();
    for (const unsigned int offset : {3U, 0U, 2U}) write(offset, 5, "1", false);
    write(2, 5, "0", false);
    disk.loads.clear();
    close();
    EXPECT_THAT(disk.loads, ElementsAre(0, 2, 3));
    ASSERT_THAT(disk.commits, SizeIs(1));
    EXPECT_THAT(disk.commits[0].records, ElementsAre(Written{0, "refs=1"}, Written{3, "refs=1"}));
}

TEST_F(CoreAccess, ClosingAReaderComparesNothing) {
    stored({"refs=0"});
    open(tMode::kRead);
    write(0, 5, "1", false);
    disk.loads.clear();
    close();
    EXPECT_THAT(disk.loads, IsEmpty());
}

/// Reads a record of its store in its last moment.
class LastReader final : public IRecordAccess::IAttachment {
public:
    LastReader(Core& core, std::string& seen) : _core(core), _seen(seen) {}
    ~LastReader() override {
        _seen = contents(_core, 0);
        EXPECT_EQ(_core.attachment(), nullptr);
    }

private:
    Core& _core;
    std::string& _seen;
};

TEST_F(CoreAccess, TheAttachmentIsLetGoWhileTheStoreCanStillBeUsed) {
    stored({"a"});
    open();
    std::string seen;
    core().attachment() = std::make_unique<LastReader>(core(), seen);
    close();
    EXPECT_EQ(seen, "a");
}

// --- The guard

TEST_F(CoreAccess, TheEngineHearsOfTheFirstEntryAndOfTheLastLeave) {
    open();
    core().enter();
    std::unique_ptr<IDataStore::ILock> guard(core().lock());
    core().leave();
    EXPECT_EQ(disk.guards, 1);
    core().enter();
    guard.reset();
    EXPECT_EQ(disk.guards, 1);
    core().leave();
    EXPECT_EQ(disk.guards, 0);
    EXPECT_EQ(disk.guardsTaken, 1);
}

TEST_F(CoreAccess, AnEntryThatFailsLeavesTheGuardFree) {
    open();
    disk.beforeGuard = fail;
    EXPECT_EQ(failureOf([&] { core().enter(); }), "Cannot take the guard of the store \"the name\": the disk is full.");
    disk.beforeGuard = nullptr;
    std::thread([&] {
        core().enter();
        core().leave();
    }).join();
    core().enter();
    core().leave();
    EXPECT_EQ(disk.guardsTaken, 2);
    EXPECT_EQ(disk.guards, 0);
}

}  // namespace
}  // namespace lumivard::platform::stores
