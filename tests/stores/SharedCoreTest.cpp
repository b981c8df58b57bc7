// A store that several processes share: what a guard is there.
#include <memory>
#include <string>

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
using testing::SizeIs;

using tLock = std::unique_ptr<IDataStore::ILock>;

/// Two processes, over one server that has the records 0 and 1.
class SharedCore : public testing::Test {
protected:
    std::unique_ptr<Core> open(tMode mode = tMode::kWrite) {
        return std::make_unique<Core>("the name", std::make_unique<SharedEngine>(server), mode);
    }
    std::string failureOf(const std::function<void()>& work) { return messageOf<StoreError>(work); }

    SharedServer server{.header = {2, 5}, .records = {{0, "zero"}, {1, "one"}}};
    std::unique_ptr<Core> a = open();
    std::unique_ptr<Core> b = open();
};

// --- Transactions

TEST_F(SharedCore, StoresWhatWasWrittenUnderAGuardWhenThatEnds) {
    {
        const tLock guard(a->lock());
        update(*a, 0, "changed");
        EXPECT_EQ(create(*a, "new"), 2U);
        a->erase(1);
        EXPECT_EQ(server.records[0], "zero");
    }
    EXPECT_EQ(server.records, (std::map<unsigned int, std::string>{{0, "changed"}, {2, "new"}}));
    EXPECT_EQ(server.header.extent, 3U);
    EXPECT_THAT(server.log, ElementsAre(ElementsAre(0, 1, 2)));
}

TEST_F(SharedCore, StoresNothingForAGuardUnderWhichNothingWasWritten) {
    {
        const tLock guard(a->lock());
        EXPECT_EQ(contents(*a, 0), "zero");
    }
    EXPECT_THAT(server.log, IsEmpty());
    EXPECT_EQ(server.holder, nullptr);
}

TEST_F(SharedCore, HasOneTransactionForAllGuardsOfAThread) {
    const tLock outer(a->lock());
    for (int i = 0; i < 3; ++i) {
        const tLock inner(a->lock());
        update(*a, 0, "changed");
    }
    EXPECT_EQ(server.transactions, 1);
    EXPECT_THAT(server.log, IsEmpty());
}

TEST_F(SharedCore, SeesUnderAGuardWhatOthersHaveDone) {
    EXPECT_EQ(contents(*b, 0), "zero");
    const auto before = b->access()->changes();
    {
        const tLock guard(a->lock());
        update(*a, 0, "changed");
        a->erase(1);
        create(*a, "new");
        a->version(6);
    }
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 0), "changed");
    EXPECT_EQ(b->size(1), 0U);
    EXPECT_EQ(contents(*b, 2), "new");
    EXPECT_EQ(b->extent(), 3U);
    EXPECT_EQ(b->version(), 6U);
    EXPECT_NE(b->access()->changes(), before);
    EXPECT_EQ(create(*b, "more"), 3U);
}

TEST_F(SharedCore, ForgetsEverythingWhereTheServerCannotTellWhatHasChanged) {
    EXPECT_EQ(contents(*b, 0), "zero");
    {
        const tLock guard(a->lock());
        update(*a, 0, "changed");
    }
    server.forgetful = true;
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 0), "changed");
}

TEST_F(SharedCore, FlushUnderAGuardEndsOneTransactionAndBeginsAnother) {
    const tLock guard(a->lock());
    update(*a, 0, "changed");
    a->flush();
    EXPECT_EQ(server.records[0], "changed");
    EXPECT_NE(server.holder, nullptr);
    EXPECT_EQ(server.transactions, 2);
    update(*a, 1, "more");
    EXPECT_EQ(server.records[1], "one");
}

TEST_F(SharedCore, ReadsWithoutAGuardInATransactionOfItsOwn) {
    EXPECT_EQ(contents(*a, 1), "one");
    EXPECT_EQ(server.transactions, 1);
    EXPECT_EQ(server.holder, nullptr);
    EXPECT_EQ(contents(*a, 1), "one");
    EXPECT_EQ(server.transactions, 1) << "it is known by now";
    EXPECT_EQ(a->size(77), 0U);
}

TEST_F(SharedCore, ReadsWithoutAGuardWhatOthersHaveDoneUntilThen) {
    EXPECT_EQ(contents(*b, 0), "zero");
    {
        const tLock guard(a->lock());
        update(*a, 0, "changed");
        update(*a, 1, "changed too");
    }
    EXPECT_EQ(contents(*b, 1), "changed too");
    EXPECT_EQ(contents(*b, 0), "changed") << "both are of one state";
}

TEST_F(SharedCore, GivesUpWhatIsDiscarded) {
    {
        const tLock guard(a->lock());
        update(*a, 0, "changed");
        discard(*a);
    }
    EXPECT_EQ(server.records[0], "zero");
    EXPECT_EQ(server.holder, nullptr);
    EXPECT_EQ(contents(*a, 0), "zero");
}

TEST_F(SharedCore, LooksForRecordsThatOthersHaveMadeWithoutAGuardToo) {
    {
        const tLock guard(a->lock());
        create(*a, "new");
    }
    EXPECT_EQ(contents(*b, 2), "new");
    EXPECT_EQ(b->size(3), 0U);
    EXPECT_EQ(b->size(IDataStore::BADOFF), 0U);
}

// --- Without a guard

TEST_F(SharedCore, GathersWhatIsWrittenWithoutAGuardUntilAFlush) {
    update(*a, 0, "changed");
    create(*a, "new");
    EXPECT_THAT(server.log, IsEmpty());
    a->flush();
    EXPECT_THAT(server.log, ElementsAre(ElementsAre(0, 2)));
    EXPECT_EQ(server.holder, nullptr);
    EXPECT_EQ(create(*a, "newer"), 3U);
}

TEST_F(SharedCore, TakesWhatWasGatheredAlongWithTheNextGuard) {
    update(*a, 0, "changed");
    { const tLock guard(a->lock()); }
    EXPECT_EQ(server.records[0], "changed");
}

TEST_F(SharedCore, StoresWhatWasGatheredWhenItCloses) {
    update(*a, 0, "changed");
    a.reset();
    EXPECT_EQ(server.records[0], "changed");
    EXPECT_EQ(server.holder, nullptr);
}

TEST_F(SharedCore, KeepsWhatWasGatheredBesideWhatOthersHaveDoneElsewhere) {
    update(*a, 0, "mine");
    {
        const tLock guard(b->lock());
        update(*b, 1, "theirs");
    }
    a->flush();
    EXPECT_EQ(server.records, (std::map<unsigned int, std::string>{{0, "mine"}, {1, "theirs"}}));
}

const std::string kConflict =
    "Cannot take the guard of the store \"the name\": what was written without a guard is given up, since somebody "
    "else "
    "has changed the same.";

TEST_F(SharedCore, GivesUpWhatWasGatheredWhereOthersHaveChangedTheSame) {
    update(*a, 0, "mine");
    update(*a, 1, "mine");
    {
        const tLock guard(b->lock());
        update(*b, 0, "theirs");
    }
    EXPECT_EQ(failureOf([&] { a->flush(); }), kConflict);
    EXPECT_EQ(server.holder, nullptr);
    a->flush();
    EXPECT_EQ(contents(*a, 0), "theirs");
    EXPECT_EQ(contents(*a, 1), "one");
    update(*a, 1, "again");
    a->flush();
    EXPECT_EQ(server.records[1], "again");
}

TEST_F(SharedCore, GivesUpNewRecordsThatWereGatheredWhereOthersHaveMadeSomeToo) {
    EXPECT_EQ(create(*a, "mine"), 2U);
    {
        const tLock guard(b->lock());
        EXPECT_EQ(create(*b, "theirs"), 2U);
    }
    EXPECT_EQ(failureOf([&] { const tLock guard(a->lock()); }), kConflict);
    EXPECT_EQ(a->extent(), 3U);
    EXPECT_EQ(contents(*a, 2), "theirs");
    EXPECT_EQ(create(*a, "mine"), 3U);
}

TEST_F(SharedCore, GivesUpAGatheredVersionWhereOthersHaveChangedAnything) {
    a->version(7);
    {
        const tLock guard(b->lock());
        update(*b, 0, "theirs");
    }
    EXPECT_EQ(failureOf([&] { a->flush(); }), kConflict);
    EXPECT_EQ(a->version(), 5U);
}

// A destructor takes the guard as well, and tells nobody.
TEST_F(SharedCore, TellsInTheNextFlushWhatWasGivenUpWhereNobodyHasHeardIt) {
    update(*a, 0, "mine");
    {
        const tLock guard(b->lock());
        update(*b, 0, "theirs");
    }
    EXPECT_EQ(failureOf([&] { a->access()->enter(); }), kConflict);
    EXPECT_EQ(contents(*a, 0), "theirs");
    EXPECT_EQ(failureOf([&] { update(*a, 1, "more"); }), kConflict);
    EXPECT_EQ(failureOf([&] { create(*a, "more"); }), kConflict) << "what comes after it may build on it";
    EXPECT_EQ(failureOf([&] { a->flush(); }), kConflict);
    EXPECT_NO_THROW(a->flush());
    update(*a, 1, "more");
    a->flush();
    EXPECT_EQ(server.records[1], "more");
}

TEST_F(SharedCore, TellsOfAConflictThatARecordHasBroughtWhichWasReadWithoutAGuard) {
    update(*a, 0, "mine");
    {
        const tLock guard(b->lock());
        update(*b, 0, "theirs");
    }
    EXPECT_EQ(failureOf([&] { contents(*a, 1); }), kConflict);
    EXPECT_EQ(contents(*a, 1), "one") << "reading goes on";
    EXPECT_EQ(failureOf([&] { a->flush(); }), kConflict);
    EXPECT_NO_THROW(a->flush());
}

// --- Outcomes

TEST_F(SharedCore, TellsInTheNextGuardToo) {
    server.beforeCommit = [] { throw EngineConflict("somebody else got in between"); };
    {
        const tLock guard(a->lock());
        update(*a, 0, "changed");
    }
    server.beforeCommit = nullptr;
    EXPECT_EQ(failureOf([&] { const tLock guard(a->lock()); }),
              "Cannot flush the store \"the name\": somebody else got in between.");
    EXPECT_EQ(server.holder, nullptr);
    const tLock guard(a->lock());
    update(*a, 0, "again");
    EXPECT_NO_THROW(a->flush());
}

TEST_F(SharedCore, TellsThatWhatAGuardWroteIsLostAndGoesOn) {
    server.beforeCommit = [] { throw EngineConflict("somebody else got in between"); };
    {
        const tLock guard(a->lock());
        update(*a, 0, "changed");
        create(*a, "new");
    }
    server.beforeCommit = nullptr;
    const std::string lost = "Cannot flush the store \"the name\": somebody else got in between.";
    EXPECT_EQ(contents(*a, 0), "zero");
    EXPECT_EQ(failureOf([&] { update(*a, 0, "more"); }), lost);
    EXPECT_EQ(failureOf([&] { a->flush(); }), lost);
    EXPECT_NO_THROW(a->flush());
    {
        const tLock guard(a->lock());
        EXPECT_EQ(create(*a, "new"), 2U);
    }
    EXPECT_EQ(server.records[2], "new");
}

TEST_F(SharedCore, TellsALossInTheFlushUnderTheGuard) {
    server.beforeCommit = [] { throw EngineConflict("somebody else got in between"); };
    const tLock guard(a->lock());
    update(*a, 0, "changed");
    EXPECT_THAT(failureOf([&] { a->flush(); }), testing::HasSubstr("somebody else got in between"));
}

TEST_F(SharedCore, RefusesChangesOnceItIsUnknownWhatBecameOfSome) {
    server.beforeCommit = [] { throw EngineError("the connection was lost"); };
    {
        const tLock guard(a->lock());
        update(*a, 0, "changed");
    }
    server.beforeCommit = nullptr;
    const std::string unknown = "Cannot flush the store \"the name\": the connection was lost.";
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(failureOf([&] { a->flush(); }), unknown);
        EXPECT_EQ(failureOf([&] { update(*a, 0, "more"); }), unknown);
    }
    EXPECT_EQ(contents(*a, 1), "one") << "reading goes on";
    EXPECT_EQ(contents(*a, 0), "zero") << "of what is stored";
    EXPECT_THAT(server.log, IsEmpty());
    {
        const tLock guard(b->lock());
        update(*b, 0, "theirs");
    }
    const tLock guard(a->lock());
    EXPECT_EQ(contents(*a, 0), "theirs") << "and goes on further";
}

// --- What a process notes for itself

TEST_F(SharedCore, NeverStoresCountsOfOpenObjects) {
    {
        const tLock guard(a->lock());
        a->access()->write(0, 0, "Z", 1, false);
        a->access()->write(1, 0, "ONE", 3, false);
        EXPECT_EQ(contents(*a, 0), "Zero");
    }
    EXPECT_THAT(server.log, IsEmpty());
    {
        const tLock guard(a->lock());
        append(*a, 0, "!");
        a->access()->write(1, 1, "-", 1, true);
    }
    EXPECT_EQ(server.records[0], "zero!");
    EXPECT_EQ(server.records[1], "o-e") << "the content alone";
    EXPECT_EQ(contents(*a, 0), "Zero!");
    EXPECT_EQ(contents(*b, 0), "zero!") << "others never hear of it, whatever becomes of the process";
}

TEST_F(SharedCore, StoresWhatCannotBeToldFromContent) {
    const auto before = a->access()->changes();
    update(*a, 1, "ONE", false);
    EXPECT_EQ(a->access()->changes(), before) << "it is bookkeeping all the same";
    a->flush();
    EXPECT_EQ(server.records[1], "ONE");
}

TEST_F(SharedCore, KeepsCountsBesideWhatOthersChange) {
    a->access()->write(0, 0, "Z", 1, false);
    {
        const tLock guard(b->lock());
        update(*b, 0, "zebra");
    }
    const tLock guard(a->lock());
    EXPECT_EQ(contents(*a, 0), "Zebra");
    a->access()->write(0, 0, "z", 1, false);
    a->access()->write(0, 1, "E", 1, true);
    a->flush();
    EXPECT_EQ(server.records[0], "zEbra");
}

TEST_F(SharedCore, CountsInAStoreThatIsOnlyReadToo) {
    const auto reader = open(tMode::kRead);
    reader->access()->write(0, 0, "Z", 1, false);
    EXPECT_EQ(contents(*reader, 0), "Zero");
    EXPECT_THAT(failureOf([&] { update(*reader, 0, "x"); }), testing::HasSubstr("opened for reading only"));
    const tLock guard(reader->lock());
    EXPECT_EQ(contents(*reader, 0), "Zero");
}

}  // namespace
}  // namespace lumivard::platform::stores
