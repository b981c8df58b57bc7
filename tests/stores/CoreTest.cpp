#include "stores/core/Core.h"

#include <memory>
#include <new>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "tests/stores/CoreFixture.h"

namespace lumivard::platform::stores {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

class CoreTest : public CoreFixture {};

// --- Offsets

TEST_F(CoreTest, OffsetsCountUpFromZero) {
    open();
    for (unsigned int i = 0; i < 3000; ++i) EXPECT_EQ(create(core(), "x"), i);
}

TEST_F(CoreTest, OffsetsGoOnWhereTheStoredOnesEnd) {
    stored({"a", "b", "c"});
    open();
    EXPECT_EQ(create(core(), "d"), 3U);
}

TEST_F(CoreTest, AnErasedOffsetNeverComesBack) {
    open();
    create(core(), "a");
    core().erase(create(core(), "b"));
    EXPECT_EQ(create(core(), "c"), 2U);
    core().erase(2);
    open();
    EXPECT_EQ(create(core(), "d"), 3U);
}

TEST_F(CoreTest, ExtentCountsTheOffsetsEverHandedOut) {
    open();
    create(core(), "a");
    core().erase(create(core(), "b"));
    EXPECT_EQ(core().extent(), 2U);
}

TEST_F(CoreTest, TheLastOffsetIsTheOneBeforeBadOff) {
    disk.header.extent = 0xFFFFFFFE;
    open();
    EXPECT_EQ(create(core(), "last"), 0xFFFFFFFEU);
    EXPECT_EQ(contents(core(), 0xFFFFFFFE), "last");
    EXPECT_EQ(core().extent(), 0xFFFFFFFFU);
}

TEST_F(CoreTest, WhenAllOffsetsAreHandedOutCreateThrowsAndTheRestGoesOn) {
    disk.header.extent = 0xFFFFFFFE;
    open();
    create(core(), "last");
    EXPECT_THAT(failureOf([&] { create(core(), "one more"); }),
                StartsWith("Cannot create a record in the store \"the name\": all of its 4294967295 offsets"));
    EXPECT_EQ(core().extent(), 0xFFFFFFFFU);
    update(core(), 0xFFFFFFFE, "changed");
    core().flush();
    EXPECT_THAT(disk.commits.back().records, ElementsAre(Written{0xFFFFFFFE, "changed"}));
}

TEST_F(CoreTest, AppendThatWouldNotFitIn32BitsThrowsAndChangesNothing) {
    open();
    create(core(), "x");
    core().flush();
    EXPECT_THAT(failureOf([&] { core().append(0, "y", 0xFFFFFFFF); }),
                StartsWith("Cannot append to record 0 of the store \"the name\": it would become longer"));
    EXPECT_EQ(contents(core(), 0), "x");
    core().flush();
    EXPECT_THAT(disk.commits, SizeIs(1));
}

// --- Bringing records in

TEST_F(CoreTest, ARecordIsLoadedWhenItIsFirstAskedForAndOnlyThen) {
    stored({"a", "b"});
    open();
    EXPECT_THAT(disk.loads, IsEmpty());
    EXPECT_EQ(core().size(1), 1U);
    EXPECT_EQ(contents(core(), 1), "b");
    update(core(), 1, "bb");
    append(core(), 1, "bb");
    EXPECT_THAT(disk.loads, ElementsAre(1));
}

TEST_F(CoreTest, EveryOperationOnARecordLoadsIt) {
    stored({"a", "b", "c", "d", "e"});
    open();
    char byte = 0;
    core().size(0);
    core().read(1, &byte, 1);
    append(core(), 2, "+");
    core().erase(3);
    core().access()->view(4);
    EXPECT_THAT(disk.loads, ElementsAre(0, 1, 2, 3, 4));
    EXPECT_EQ(contents(core(), 2), "c+");
}

TEST_F(CoreTest, AnOffsetThatWasNeverHandedOutIsNotAskedFor) {
    stored({"a"});
    open();
    EXPECT_EQ(core().size(1), 0U);
    EXPECT_EQ(core().size(0xFFFFFFFF), 0U);
    EXPECT_THAT(disk.loads, IsEmpty());
}

TEST_F(CoreTest, ARecordThatTheEngineDoesNotHaveCostsNoSlot) {
    stored({"a"});
    disk.records.clear();
    open();
    EXPECT_EQ(core().size(0), 0U);
    EXPECT_EQ(core().size(0), 0U);
    EXPECT_THAT(disk.loads, ElementsAre(0, 0)) << "nothing is kept of it, not even that it is not there";
}

TEST_F(CoreTest, AnErasedRecordIsNotAskedForAgain) {
    stored({"a"});
    open();
    core().erase(0);
    EXPECT_EQ(core().size(0), 0U);
    EXPECT_THAT(disk.loads, ElementsAre(0));
}

TEST_F(CoreTest, ALoadThatFailsNamesTheRecordAndMayBeTriedAgain) {
    stored({"a"});
    open();
    disk.beforeLoad = fail;
    EXPECT_EQ(failureOf([&] { core().size(0); }), "Cannot read record 0 of the store \"the name\": the disk is full.");
    disk.beforeLoad = nullptr;
    EXPECT_EQ(contents(core(), 0), "a");
}

TEST_F(CoreTest, AHeaderThatCannotBeReadIsAFailureToOpen) {
    disk.beforeHeader = fail;
    EXPECT_EQ(failureOf([&] { open(); }), "Cannot open the store \"the name\": the disk is full.");
}

// --- Flush

TEST_F(CoreTest, FlushOfANewStoreCommitsNothing) {
    open();
    core().flush();
    EXPECT_THAT(disk.commits, IsEmpty());
}

TEST_F(CoreTest, FlushCommitsWhatChangedAsOneBatchByRisingOffset) {
    stored({"a", "b", "c", "d"});
    open();
    create(core(), "e");
    append(core(), 2, "+");
    update(core(), 0, "A");
    core().erase(1);
    core().version(3);
    core().flush();
    ASSERT_THAT(disk.commits, SizeIs(1));
    EXPECT_EQ(disk.commits[0].header.extent, 5U);
    EXPECT_EQ(disk.commits[0].header.version, 3U);
    EXPECT_THAT(disk.commits[0].records,
                ElementsAre(Written{0, "A"}, Written{1, std::nullopt}, Written{2, "c+"}, Written{4, "e"}));
}

TEST_F(CoreTest, ASecondFlushCommitsNothing) {
    open();
    create(core(), "a");
    core().flush();
    core().flush();
    close();
    EXPECT_THAT(disk.commits, SizeIs(1));
}

TEST_F(CoreTest, ARecordChangedManyTimesIsCommittedOnce) {
    open();
    create(core(), "a");
    for (int i = 0; i < 100; ++i) append(core(), 0, "a");
    core().flush();
    EXPECT_THAT(disk.commits[0].records, ElementsAre(Written{0, std::string(101, 'a')}));
}

TEST_F(CoreTest, TheVersionAloneIsAChange) {
    open();
    core().version(1);
    core().flush();
    ASSERT_THAT(disk.commits, SizeIs(1));
    EXPECT_EQ(disk.commits[0].header.version, 1U);
    EXPECT_THAT(disk.commits[0].records, IsEmpty());
}

TEST_F(CoreTest, AFlushAfterTouchingOneOf100000RecordsWritesOne) {
    open();
    for (int i = 0; i < 100000; ++i) create(core(), "record");
    core().flush();
    update(core(), 77777, "touched");
    core().flush();
    EXPECT_THAT(disk.commits.back().records, ElementsAre(Written{77777, "touched"}));
}

TEST_F(CoreTest, AnOperationThatThrowsLeavesNothingToFlush) {
    stored({"a"});
    open();
    EXPECT_THROW(update(core(), 5, "x"), StoreError);
    EXPECT_THROW(append(core(), 5, "x"), StoreError);
    EXPECT_THROW(core().erase(5), StoreError);
    core().flush();
    EXPECT_THAT(disk.commits, IsEmpty());
}

// --- Bookkeeping

TEST_F(CoreTest, BookkeepingAloneNeverMakesAFlushWork) {
    stored({"refs=0"});
    open();
    update(core(), 0, "refs=1", false);
    core().flush();
    EXPECT_THAT(disk.commits, IsEmpty());
    EXPECT_EQ(contents(core(), 0), "refs=1");
}

TEST_F(CoreTest, BookkeepingOfOtherRecordsStaysOutOfAFlush) {
    stored({"refs=0", "refs=0"});
    open();
    update(core(), 0, "refs=1", false);
    update(core(), 1, "content");
    core().flush();
    EXPECT_THAT(disk.commits[0].records, ElementsAre(Written{1, "content"}));
}

TEST_F(CoreTest, BookkeepingTravelsWithContentOfTheSameRecord) {
    open();
    create(core(), "refs=0");
    update(core(), 0, "refs=1", false);
    core().flush();
    EXPECT_EQ(disk.records[0], "refs=1");
}

TEST_F(CoreTest, ACountThatWasFlushedAt1AndWentBackTo0IsStoredAs0ByClosing) {
    open();
    create(core(), "refs=1");
    core().flush();
    update(core(), 0, "refs=0", false);
    close();
    EXPECT_EQ(disk.records[0], "refs=0");
    ASSERT_THAT(disk.commits, SizeIs(2));
    EXPECT_THAT(disk.commits[1].records, ElementsAre(Written{0, "refs=0"}));
}

TEST_F(CoreTest, ClosingAStoreThatWasOnlyWalkedCommitsNothing) {
    stored({"refs=0", "refs=0"});
    open();
    for (unsigned int offset = 0; offset < 2; ++offset) {
        update(core(), offset, "refs=1", false);
        update(core(), offset, "refs=0", false);
    }
    close();
    EXPECT_THAT(disk.commits, IsEmpty());
}

TEST_F(CoreTest, ClosingCommitsContentAndBookkeepingTogetherByRisingOffset) {
    stored({"refs=0", "refs=0", "refs=0", "refs=0"});
    open();
    update(core(), 3, "refs=9", false);
    update(core(), 1, "refs=9", false);
    update(core(), 2, "refs=9", false);
    update(core(), 2, "content");
    core().erase(1);
    close();
    ASSERT_THAT(disk.commits, SizeIs(1));
    EXPECT_THAT(disk.commits[0].records,
                ElementsAre(Written{1, std::nullopt}, Written{2, "content"}, Written{3, "refs=9"}));
}

TEST_F(CoreTest, BookkeepingOfALengthOfItsOwnIsNoticed) {
    stored({"refs=0"});
    open();
    update(core(), 0, "refs=0 ", false);
    close();
    EXPECT_EQ(disk.records[0], "refs=0 ");
}

// --- Closing

TEST_F(CoreTest, ClosingCommitsContentAsAFlushDoes) {
    open();
    create(core(), "a");
    core().version(2);
    close();
    EXPECT_EQ(disk.records[0], "a");
    EXPECT_EQ(disk.header.version, 2U);
    EXPECT_EQ(disk.header.extent, 1U);
}

TEST_F(CoreTest, ClosingCommitsTheVersionAlone) {
    open();
    core().version(2);
    close();
    EXPECT_EQ(disk.header.version, 2U);
}

TEST_F(CoreTest, ClosingLetsNoExceptionOut) {
    open();
    create(core(), "a");
    disk.beforeCommit = fail;
    EXPECT_NO_THROW(close());
    EXPECT_THAT(disk.commits, IsEmpty());
}

TEST_F(CoreTest, ClosingCommitsContentAlsoWhenBookkeepingCannotBeCompared) {
    stored({"refs=0"});
    open();
    update(core(), 0, "refs=1", false);
    create(core(), "content");
    disk.beforeLoad = fail;
    close();
    ASSERT_THAT(disk.commits, SizeIs(1));
    EXPECT_THAT(disk.commits[0].records, ElementsAre(Written{1, "content"}));
}

// --- A flush that fails

TEST_F(CoreTest, AFailedFlushSaysWhichStoreAndWhy) {
    open();
    create(core(), "a");
    disk.beforeCommit = fail;
    EXPECT_EQ(failureOf([&] { core().flush(); }), "Cannot flush the store \"the name\": the disk is full.");
}

TEST_F(CoreTest, AfterAFailedFlushEveryChangeAndFlushThrowsTheSameError) {
    open();
    create(core(), "a");
    disk.beforeCommit = fail;
    const std::string first = failureOf([&] { core().flush(); });
    disk.beforeCommit = nullptr;
    EXPECT_EQ(failureOf([&] { core().flush(); }), first);
    EXPECT_EQ(failureOf([&] { create(core(), "b"); }), first);
    EXPECT_EQ(failureOf([&] { append(core(), 0, "b"); }), first);
    EXPECT_EQ(failureOf([&] { update(core(), 0, "b"); }), first);
    EXPECT_EQ(failureOf([&] { core().erase(0); }), first);
    EXPECT_EQ(failureOf([&] { core().version(1); }), first);
    close();
    EXPECT_THAT(disk.commits, IsEmpty());
}

TEST_F(CoreTest, AfterAFailedFlushReadingGoesOn) {
    stored({"stored"});
    open();
    create(core(), "new");
    disk.beforeCommit = fail;
    EXPECT_THROW(core().flush(), StoreError);
    EXPECT_EQ(contents(core(), 0), "stored");
    EXPECT_EQ(contents(core(), 1), "new");
    EXPECT_EQ(core().extent(), 2U);
}

TEST_F(CoreTest, AfterAFailedFlushObjectsCanStillBeLetGo) {
    stored({"refs=0"});
    open();
    update(core(), 0, "refs=1", false);
    core().version(1);
    disk.beforeCommit = fail;
    EXPECT_THROW(core().flush(), StoreError);
    EXPECT_NO_THROW(update(core(), 0, "refs=0", false));
}

TEST_F(CoreTest, AfterAFailedFlushReopeningStartsFromTheLastGoodOne) {
    open();
    create(core(), "good");
    core().flush();
    update(core(), 0, "lost");
    disk.beforeCommit = fail;
    EXPECT_THROW(core().flush(), StoreError);
    disk.beforeCommit = nullptr;
    open();
    EXPECT_EQ(contents(core(), 0), "good");
    update(core(), 0, "better");
    core().flush();
    EXPECT_EQ(disk.records[0], "better");
}

TEST_F(CoreTest, AFlushThatRanOutOfMemoryInTheEngineCountsAsFailed) {
    open();
    create(core(), "a");
    disk.beforeCommit = [] { throw std::bad_alloc(); };
    EXPECT_THROW(core().flush(), std::bad_alloc);
    disk.beforeCommit = nullptr;
    EXPECT_THROW(core().flush(), std::bad_alloc);
    EXPECT_THROW(create(core(), "b"), std::bad_alloc);
}

// --- Reading only

TEST_F(CoreTest, AStoreOpenedForReadingRefusesEveryChangeOfContent) {
    stored({"a"});
    open(tMode::kRead);
    const std::string why = "the store \"the name\": it was opened for reading only.";
    EXPECT_EQ(failureOf([&] { create(core(), "b"); }), "Cannot create a record in " + why);
    EXPECT_EQ(failureOf([&] { append(core(), 0, "b"); }), "Cannot append to record 0 of " + why);
    EXPECT_EQ(failureOf([&] { update(core(), 0, "b"); }), "Cannot change record 0 of " + why);
    EXPECT_EQ(failureOf([&] { core().erase(0); }), "Cannot erase record 0 of " + why);
    EXPECT_EQ(failureOf([&] { core().version(1); }), "Cannot set the version of " + why);
    EXPECT_EQ(contents(core(), 0), "a");
    EXPECT_EQ(core().version(), 0U);
}

TEST_F(CoreTest, AStoreOpenedForReadingKeepsBookkeepingInMemoryAndNeverStoresIt) {
    stored({"refs=0"});
    open(tMode::kRead);
    update(core(), 0, "refs=1", false);
    EXPECT_EQ(contents(core(), 0), "refs=1");
    EXPECT_NO_THROW(core().flush());
    close();
    EXPECT_THAT(disk.commits, IsEmpty());
    EXPECT_EQ(disk.records[0], "refs=0");
}

TEST_F(CoreTest, AStoreOpenedForReadingPassesOverBookkeepingOfARecordThatIsGone) {
    stored({"refs=0"});
    open(tMode::kRead);
    update(core(), 0, "refs=1", false);
    disk.records.clear();
    disk.news = Engine::News{disk.header, true, {}};
    delete core().lock();
    EXPECT_NO_THROW(update(core(), 0, "refs=0", false));
    EXPECT_EQ(core().size(0), 0U);
}

TEST_F(CoreTest, AStoreOpenedForWritingRefusesBookkeepingOfNoRecord) {
    open();
    EXPECT_EQ(failureOf([&] { update(core(), 0, "refs=0", false); }),
              "Cannot change record 0 of the store \"the name\": there is no such record.");
}

// --- The guard and what others do

TEST_F(CoreTest, TheEngineHearsOfTheOutermostGuardOnly) {
    open();
    {
        const std::unique_ptr<IDataStore::ILock> outer(core().lock());
        const std::unique_ptr<IDataStore::ILock> inner(core().lock());
        EXPECT_EQ(disk.guards, 1);
        EXPECT_EQ(disk.guardsTaken, 1);
    }
    EXPECT_EQ(disk.guards, 0);
    delete core().lock();
    EXPECT_EQ(disk.guardsTaken, 2);
}

TEST_F(CoreTest, WhenEverythingMayHaveChangedEverythingIsAskedForAnew) {
    stored({"a", "b"});
    open(tMode::kRead);
    EXPECT_EQ(contents(core(), 0) + contents(core(), 1), "ab");
    disk.records = {{0, "A"}, {2, "C"}};
    disk.news = Engine::News{{3, 9}, true, {}};
    delete core().lock();
    EXPECT_EQ(contents(core(), 0), "A");
    EXPECT_EQ(core().size(1), 0U);
    EXPECT_EQ(contents(core(), 2), "C");
    EXPECT_EQ(core().extent(), 3U);
    EXPECT_EQ(core().version(), 9U);
}

TEST_F(CoreTest, WhenSomeRecordsHaveChangedOnlyTheyAreAskedForAnew) {
    stored({"a", "b"});
    open();
    EXPECT_EQ(contents(core(), 0) + contents(core(), 1), "ab");
    disk.records = {{0, "A"}, {1, "B"}, {2, "C"}};
    disk.news = Engine::News{{3, 9}, false, {1, 2, 5000000}};
    disk.loads.clear();
    delete core().lock();
    EXPECT_EQ(contents(core(), 0) + contents(core(), 1) + contents(core(), 2), "aBC");
    EXPECT_THAT(disk.loads, UnorderedElementsAre(1, 2));
    EXPECT_EQ(core().extent(), 3U);
    EXPECT_EQ(core().version(), 9U);
}

TEST_F(CoreTest, WithoutNewsWhatIsInMemoryStays) {
    stored({"a"});
    open(tMode::kRead);
    EXPECT_EQ(contents(core(), 0), "a");
    disk.records[0] = "A";
    delete core().lock();
    EXPECT_EQ(contents(core(), 0), "a");
}

TEST_F(CoreTest, AnInnerGuardBringsNoNews) {
    stored({"a"});
    open(tMode::kRead);
    const std::unique_ptr<IDataStore::ILock> outer(core().lock());
    EXPECT_EQ(contents(core(), 0), "a");
    disk.records[0] = "A";
    disk.news = Engine::News{disk.header, true, {}};
    delete core().lock();
    EXPECT_EQ(contents(core(), 0), "a");
}

TEST_F(CoreTest, AGuardThatCannotBeTakenIsFreeForOthers) {
    open();
    disk.beforeGuard = fail;
    EXPECT_EQ(failureOf([&] { delete core().lock(); }),
              "Cannot take the guard of the store \"the name\": the disk is full.");
    disk.beforeGuard = nullptr;
    std::thread([&] { delete core().lock(); }).join();
    EXPECT_EQ(disk.guardsTaken, 1);
    EXPECT_EQ(disk.guards, 0);
}

// --- In memory alone

TEST(MemoryStore, EndsWithItsObject) {
    auto store = memory();
    create(*store, "a");
    store->flush();
    store = memory();
    EXPECT_EQ(store->extent(), 0U);
}

TEST(MemoryStore, IsNamedMemoryInMessages) {
    const auto store = memory();
    EXPECT_EQ(failureOf([&] { store->erase(3); }),
              "Cannot erase record 3 of the store \"memory:\": there is no such record.");
}

TEST(MemoryStore, OffersAccessToItsRecords) {
    EXPECT_NE(memory()->access(), nullptr);
}

}  // namespace
}  // namespace lumivard::platform::stores
