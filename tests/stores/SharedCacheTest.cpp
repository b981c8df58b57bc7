// A store that several processes share: which records it keeps in memory, in which ways they come, and what it says of
// those that it hands down.
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "stores/core/Core.h"
#include "tests/stores/Records.h"
#include "tests/stores/SharedEngine.h"

namespace lumivard::platform::stores {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using tLock = std::unique_ptr<IDataStore::ILock>;
using tRange = SharedServer::tRange;

constexpr unsigned int kRecords = 50;
constexpr unsigned int kSize = 100;
constexpr std::size_t kWeight = kSize + sizeof(RecordSlot);
constexpr unsigned long long kEnd = UINT64_MAX;

/// What is stored at an offset.
std::string contentOf(unsigned int offset) {
    return std::string(kSize, static_cast<char>('A' + offset));
}

/// A server that has so many records of one length, and processes that keep as many of them as they are told.
class SharedCache : public testing::Test {
protected:
    SharedCache() {
        for (unsigned int offset = 0; offset < kRecords; ++offset) server.records[offset] = contentOf(offset);
        server.header = {kRecords, 1};
    }

    std::unique_ptr<Core> open(std::size_t records = kRecords) {
        return std::make_unique<Core>("the name", std::make_unique<SharedEngine>(server), tMode::kWrite,
                                      records * kWeight);
    }

    /// Which of some records the server is asked for when they are read under a guard of their own, or one that there
    /// is already.
    std::vector<unsigned int> asked(Core& store, unsigned int begin, unsigned int end) {
        const tLock guard(store.lock());
        server.loads.clear();
        for (unsigned int offset = begin; offset < end; ++offset) {
            EXPECT_EQ(contents(store, offset), contentOf(offset));
        }
        return server.loads;
    }

    SharedServer server;
};

// --- How much is kept

TEST_F(SharedCache, KeepsWhatFits) {
    const auto store = open(10);
    EXPECT_EQ(asked(*store, 0, 10).size(), 10U);
    EXPECT_THAT(asked(*store, 0, 10), IsEmpty());
}

TEST_F(SharedCache, ForgetsWhatDoesNotFitWhenTheOutermostGuardEnds) {
    const auto store = open(10);
    {
        const tLock outermost(store->lock());
        EXPECT_EQ(asked(*store, 0, kRecords).size(), kRecords);
        EXPECT_THAT(asked(*store, 0, kRecords), IsEmpty()) << "under one guard there may be more";
    }
    EXPECT_GE(asked(*store, 0, kRecords).size(), kRecords - 10);
}

TEST_F(SharedCache, ForgetsSoMuchThatItIsNotDoneAtEachGuard) {
    const auto store = open(10);
    asked(*store, 0, 20);
    EXPECT_THAT(asked(*store, 13, 20), IsEmpty()) << "three quarters are left";
    EXPECT_THAT(asked(*store, 12, 13), ElementsAre(12));
    EXPECT_THAT(asked(*store, 12, 20), IsEmpty());
}

TEST_F(SharedCache, ForgetsThoseFirstThatNobodyHasUsedSinceTheLastTime) {
    const auto store = open(10);
    asked(*store, 0, 20);
    {
        const tLock guard(store->lock());
        asked(*store, 13, 15);
        asked(*store, 0, 5);
    }
    EXPECT_THAT(asked(*store, 13, 15), IsEmpty());
    EXPECT_THAT(asked(*store, 0, 5), IsEmpty());
    EXPECT_THAT(asked(*store, 15, 20), ElementsAre(15, 16, 17, 18, 19));
}

TEST_F(SharedCache, KeepsNothingFromGuardToGuardWhereItMayKeepNothing) {
    const auto store = open(0);
    EXPECT_EQ(asked(*store, 0, 3).size(), 3U);
    EXPECT_EQ(asked(*store, 0, 3).size(), 3U);
}

TEST_F(SharedCache, ForgetsWhatIsStoredByNow) {
    const auto store = open(0);
    {
        const tLock guard(store->lock());
        update(*store, 3, "changed");
        EXPECT_EQ(create(*store, "new"), kRecords);
    }
    server.loads.clear();
    EXPECT_EQ(contents(*store, 3), "changed");
    EXPECT_EQ(contents(*store, kRecords), "new");
    EXPECT_THAT(server.loads, ElementsAre(3, kRecords));
}

TEST_F(SharedCache, ForgetsWhatItHasMadeAsItDoesWhatItHasRead) {
    const auto store = open(3);
    {
        const tLock guard(store->lock());
        for (int i = 0; i < 20; ++i) create(*store, contentOf(0));
    }
    EXPECT_EQ(contents(*store, kRecords), contentOf(0));
    EXPECT_THAT(server.loads, ElementsAre(kRecords));
}

TEST_F(SharedCache, ForgetsWhatCouldNotBeStored) {
    const auto store = open();
    server.beforeCommit = [] { throw EngineError("the connection was lost"); };
    {
        const tLock guard(store->lock());
        update(*store, 3, "changed");
        contents(*store, 4);
    }
    server.loads.clear();
    EXPECT_EQ(contents(*store, 3), contentOf(3));
    EXPECT_EQ(contents(*store, 4), contentOf(4));
    EXPECT_THAT(server.loads, ElementsAre(3));
}

TEST_F(SharedCache, GivesCountsOfOpenObjectsBackToARecordThatComesAgain) {
    const auto store = open(0);
    const std::string counted = "open" + contentOf(7).substr(4);
    {
        const tLock guard(store->lock());
        store->access()->write(7, 0, "open", 4, false);
    }
    for (int i = 0; i < 2; ++i) {
        const tLock guard(store->lock());
        server.loads.clear();
        EXPECT_EQ(contents(*store, 7), counted);
        EXPECT_THAT(server.loads, ElementsAre(7));
    }
    {
        const tLock guard(store->lock());
        store->access()->write(7, 4, "!", 1, true);
    }
    EXPECT_EQ(server.records[7], contentOf(7).replace(4, 1, "!")) << "the content alone";
    EXPECT_EQ(contents(*store, 7), "open!" + contentOf(7).substr(5));
}

TEST_F(SharedCache, LetsViewsStandUntilTheGuardEnds) {
    const auto store = open(0);
    const tLock outermost(store->lock());
    std::vector<Core::tView> views;
    for (unsigned int offset = 0; offset < kRecords; ++offset) {
        const tLock inner(store->lock());
        views.push_back(store->access()->view(offset));
    }
    for (unsigned int offset = 0; offset < kRecords; ++offset) {
        EXPECT_EQ(std::string(views[offset].data, views[offset].size), contentOf(offset));
    }
}

/// A table that has records of one length at some offsets.
std::unique_ptr<RecordTable> tableWith(std::initializer_list<unsigned int> offsets) {
    auto table = std::make_unique<RecordTable>();
    for (const unsigned int offset : offsets) {
        RecordSlot& slot = table->at(offset);
        table->heap().assign(slot.bytes, contentOf(0).data(), kSize);
        slot.place = RecordSlot::tPlace::kHere;
    }
    return table;
}

TEST(SharedCacheTable, FreesPagesOfWhichNothingIsKnown) {
    const auto table = tableWith({5, 6, 3000, 3001, 70'000});
    table->at(3001).changed = true;
    table->at(9000).place = RecordSlot::tPlace::kGone;
    EXPECT_EQ(table->shrink(0), kWeight) << "what has changed";
    EXPECT_EQ(table->find(5), nullptr);
    EXPECT_EQ(table->find(70'000), nullptr);
    ASSERT_NE(table->find(3001), nullptr);
    EXPECT_EQ(table->find(3001)->bytes.size(), kSize);
    ASSERT_NE(table->find(9000), nullptr);
    EXPECT_EQ(table->find(9000)->place, RecordSlot::tPlace::kGone) << "it is known that there is none";
    EXPECT_EQ(table->at(5).place, RecordSlot::tPlace::kAway);
}

TEST(SharedCacheTable, KeepsWhatFitsAndWhatCountsAlone) {
    const auto table = tableWith({1, 2, 3});
    table->at(1).counted = true;
    EXPECT_EQ(table->shrink(3 * kWeight), 3 * kWeight);
    EXPECT_EQ(table->shrink(2 * kWeight), 2 * kWeight);
    EXPECT_EQ(table->at(1).place, RecordSlot::tPlace::kHere);
    EXPECT_EQ(table->at(2).place, RecordSlot::tPlace::kAway);
    EXPECT_EQ(table->at(3).place, RecordSlot::tPlace::kHere);
}

// --- Records that are expected

TEST_F(SharedCache, BringsTheRecordsTogetherThatAreExpected) {
    const auto store = open();
    const tLock guard(store->lock());
    const std::vector<unsigned int> offsets{4, 2, 9};
    store->access()->expect(offsets.data(), 3);
    EXPECT_THAT(server.bringings, ElementsAre(ElementsAre(4, 2, 9)));
    asked(*store, 4, 5);
    EXPECT_THAT(server.loads, IsEmpty());
}

TEST_F(SharedCache, BringsNothingThatIsExpectedWithoutAGuard) {
    const auto store = open();
    const std::vector<unsigned int> offsets{4, 2, 9};
    store->access()->expect(offsets.data(), 3);
    EXPECT_THAT(server.bringings, IsEmpty());
    EXPECT_EQ(server.transactions, 0);
}

TEST_F(SharedCache, BringsOfWhatIsExpectedNoneThatIsKnown) {
    const auto store = open();
    const tLock guard(store->lock());
    server.records.erase(3);
    EXPECT_EQ(contents(*store, 2), contentOf(2));
    EXPECT_EQ(store->size(3), 0U);
    update(*store, 4, "changed");
    server.bringings.clear();
    const std::vector<unsigned int> offsets{2, 3, 4, 5, 6};
    store->access()->expect(offsets.data(), 5);
    EXPECT_THAT(server.bringings, ElementsAre(ElementsAre(5, 6)));
    store->access()->expect(offsets.data(), 5);
    EXPECT_EQ(server.bringings.size(), 1U);
    EXPECT_EQ(contents(*store, 4), "changed");
}

TEST_F(SharedCache, PassesOverWhatIsExpectedOutsideTheStore) {
    const auto store = open();
    const tLock guard(store->lock());
    const std::vector<unsigned int> offsets{kRecords, 1, IDataStore::BADOFF, 2, 4'000'000'000};
    store->access()->expect(offsets.data(), 5);
    EXPECT_THAT(server.bringings, ElementsAre(ElementsAre(1, 2)));
    EXPECT_EQ(store->size(kRecords), 0U);
}

TEST_F(SharedCache, LeavesARecordThatIsExpectedAloneToBeAskedFor) {
    const auto store = open();
    const tLock guard(store->lock());
    const std::vector<unsigned int> offsets{1, kRecords};
    store->access()->expect(offsets.data(), 2);
    store->access()->expect(offsets.data(), 1);
    store->access()->expect(nullptr, 0);
    EXPECT_THAT(server.bringings, IsEmpty());
}

TEST_F(SharedCache, TakesAListThatBeginsAnywhere) {
    const auto store = open();
    const tLock guard(store->lock());
    const unsigned int offsets[] = {7, 8};
    std::vector<char> bytes(1 + sizeof offsets);
    std::memcpy(bytes.data() + 1, offsets, sizeof offsets);
    store->access()->expect(bytes.data() + 1, 2);
    EXPECT_THAT(server.bringings, ElementsAre(ElementsAre(7, 8)));
}

TEST_F(SharedCache, IsNotMisledByARecordThatIsExpectedAndGone) {
    const auto store = open();
    const tLock guard(store->lock());
    server.records.erase(8);
    const std::vector<unsigned int> offsets{7, 8};
    store->access()->expect(offsets.data(), 2);
    EXPECT_EQ(store->size(8), 0U);
    EXPECT_EQ(contents(*store, 7), contentOf(7));
}

// --- Records that come with the news

TEST_F(SharedCache, RenewsWhatItKnowsByTheNewsAndNothingElse) {
    const auto a = open();
    const auto b = open();
    asked(*b, 1, 2);
    server.tellsRecords = true;
    {
        const tLock guard(a->lock());
        update(*a, 1, "changed");
        update(*a, 2, "changed too");
        create(*a, "new");
    }
    const tLock guard(b->lock());
    server.loads.clear();
    EXPECT_EQ(contents(*b, 1), "changed");
    EXPECT_THAT(server.loads, IsEmpty());
    EXPECT_EQ(contents(*b, 2), "changed too");
    EXPECT_EQ(contents(*b, kRecords), "new");
    EXPECT_THAT(server.loads, ElementsAre(2, kRecords)) << "nobody had asked for them";
}

TEST_F(SharedCache, ForgetsWhatTheNewsNameAndDoNotBring) {
    const auto a = open();
    const auto b = open();
    asked(*b, 1, 3);
    {
        const tLock guard(a->lock());
        update(*a, 1, "changed");
        a->erase(2);
    }
    server.tellsRecords = true;  // of which the erased one is none
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 1), "changed");
    EXPECT_EQ(b->size(2), 0U);
}

TEST_F(SharedCache, GivesCountsOfOpenObjectsBackToWhatComesWithTheNews) {
    const auto a = open();
    const auto b = open();
    b->access()->write(1, 0, "open", 4, false);
    server.tellsRecords = true;
    {
        const tLock guard(a->lock());
        update(*a, 1, "....changed");
    }
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 1), "openchanged");
    b->access()->write(1, 0, "....", 4, false);
    EXPECT_EQ(contents(*b, 1), "....changed");
}

TEST_F(SharedCache, DoesNotBringBackByTheNewsWhatItHadForgotten) {
    const auto a = open();
    const auto b = open(0);
    asked(*b, 1, 2);
    server.tellsRecords = true;
    {
        const tLock guard(a->lock());
        update(*a, 1, "changed");
    }
    const tLock guard(b->lock());
    server.loads.clear();
    EXPECT_EQ(contents(*b, 1), "changed");
    EXPECT_THAT(server.loads, ElementsAre(1));
}

TEST_F(SharedCache, LeavesNoCountsOfARecordThatWasGivenUpToTheOneThatGetsItsOffset) {
    const auto a = open();
    const auto b = open();
    EXPECT_EQ(create(*a, "mine!"), kRecords);
    a->access()->write(kRecords, 0, "open", 4, false);
    {
        const tLock guard(b->lock());
        EXPECT_EQ(create(*b, "theirs"), kRecords);
    }
    EXPECT_THROW({ const tLock guard(a->lock()); }, StoreError);
    EXPECT_EQ(contents(*a, kRecords), "theirs");
}

// --- Where long records differ

/// A server that has a long record at 0 and a short one at 1.
class SharedRange : public SharedCache {
protected:
    SharedRange() { server.records[0] = longContent(); }

    static std::string longContent() {
        std::string bytes(20'000, '\0');
        for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>('a' + i % 26);
        return bytes;
    }

    /// Where a record is said to differ when that has been done under a guard.
    tRange rangeOf(const std::function<void()>& work, unsigned int offset = 0) {
        {
            const tLock guard(store->lock());
            work();
        }
        EXPECT_EQ(server.ranges.count(offset), 1U);
        return server.ranges[offset];
    }

    const std::unique_ptr<Core> store = open();
};

TEST_F(SharedRange, OfWhatIsAppendedBeginsAtTheEnd) {
    EXPECT_EQ(rangeOf([&] { append(*store, 0, "more"); }), (tRange{20'000, kEnd}));
    EXPECT_EQ(rangeOf([&] { append(*store, 0, "more"); }), (tRange{20'004, kEnd})) << "it is stored by now";
}

TEST_F(SharedRange, OfAWriteIsWhereItWrites) {
    EXPECT_EQ(rangeOf([&] { store->access()->write(0, 9000, "HERE", 4, true); }), (tRange{9000, 9004}));
}

TEST_F(SharedRange, OfAnUpdateLeavesOutACommonBeginningAndEnd) {
    const std::string bytes = longContent().replace(9000, 3, "---").replace(12'000, 1, "-");
    EXPECT_EQ(rangeOf([&] { update(*store, 0, bytes); }), (tRange{9000, 12'001}));
}

TEST_F(SharedRange, OfAnUpdateToAnotherLengthGoesToTheEnd) {
    EXPECT_EQ(rangeOf([&] { update(*store, 0, longContent().insert(9000, "---")); }), (tRange{9000, kEnd}));
    server.records[0] = longContent();
}

TEST_F(SharedRange, OfAnUpdateToLessGoesToTheEnd) {
    EXPECT_EQ(rangeOf([&] { update(*store, 0, longContent().substr(0, 15'000)); }), (tRange{15'000, kEnd}));
    EXPECT_EQ(rangeOf([&] { update(*store, 0, "short"); }), (tRange{0, kEnd}));
}

TEST_F(SharedRange, OfAnUpdateToTheSameIsEmpty) {
    const tRange range = rangeOf([&] { update(*store, 0, longContent()); });
    EXPECT_GE(range.from, range.to);
    EXPECT_EQ(server.records[0], longContent());
}

TEST_F(SharedRange, OfWhatIsChangedTwiceHasBoth) {
    EXPECT_EQ(rangeOf([&] {
                  store->access()->write(0, 9000, "HERE", 4, true);
                  store->access()->write(0, 300, "HERE", 4, true);
              }),
              (tRange{300, 9004}));
    EXPECT_EQ(rangeOf([&] {
                  append(*store, 0, "more");
                  store->access()->write(0, 17'000, "HERE", 4, true);
              }),
              (tRange{17'000, kEnd}));
}

TEST_F(SharedRange, OfANewRecordIsAllOfIt) {
    EXPECT_EQ(rangeOf(
                  [&] {
                      const unsigned int offset = create(*store, longContent());
                      append(*store, offset, "more");
                      store->access()->write(offset, 100, "HERE", 4, true);
                  },
                  kRecords),
              (tRange{0, kEnd}));
}

TEST_F(SharedRange, OfARecordThatWasShortIsAllOfIt) {
    EXPECT_EQ(rangeOf([&] { store->access()->write(1, 50, "HERE", 4, true); }, 1), (tRange{0, kEnd}));
    EXPECT_EQ(rangeOf(
                  [&] {
                      append(*store, 1, longContent());
                      append(*store, 1, "more");
                  },
                  1),
              (tRange{0, kEnd}));
}

TEST_F(SharedRange, OfARecordThatWasShortMeanwhileIsAllOfIt) {
    const std::string cut = longContent().substr(0, Engine::kShort);
    EXPECT_EQ(rangeOf([&] {
                  update(*store, 0, cut);
                  store->access()->write(0, 0, "HERE", 4, true);
                  append(*store, 0, longContent());
              }),
              (tRange{0, kEnd}));
    EXPECT_EQ(rangeOf([&] {
                  update(*store, 0, "HERE" + cut.substr(4));
                  update(*store, 0, "THERE" + cut.substr(5));
                  append(*store, 0, longContent());
              }),
              (tRange{0, kEnd}));
}

TEST_F(SharedRange, OfCountsAloneIsNothing) {
    {
        const tLock guard(store->lock());
        store->access()->write(0, 9000, "HERE", 4, false);
    }
    EXPECT_THAT(server.log, IsEmpty());
    EXPECT_EQ(rangeOf([&] { store->access()->write(0, 100, "THERE", 5, true); }), (tRange{100, 105}));
    EXPECT_EQ(server.records[0], longContent().replace(100, 5, "THERE"));
}

}  // namespace
}  // namespace lumivard::platform::stores
