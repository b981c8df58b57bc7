// What several clients of a database see of each other, and what becomes of a commit whose connection is lost.
#include "stores/postgres/PostgresEngine.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "tests/postgres/Database.h"
#include "tests/postgres/Proxy.h"

namespace lumivard::platform::stores {
namespace {

using testing::HasSubstr;

/// Two clients of one store.
class Clients : public Database {
protected:
    void SetUp() override {
        Database::SetUp();
        if (!Server::isThere()) return;
        a = Server::open(name);
        b = Server::open(name);
    }

    /// Ends the server's side of all connections that hold a transaction.
    static void cutTransactions() {
        Server::run("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE state = 'idle in transaction'");
    }

    std::unique_ptr<Core> a;
    std::unique_ptr<Core> b;
};

TEST_F(Clients, ShowsAClientUnderItsGuardWhatOthersHaveDone) {
    EXPECT_EQ(create(*a, "one"), 0U);
    a->version(7);
    a->flush();
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 0), "one");
    EXPECT_EQ(b->extent(), 1U);
    EXPECT_EQ(b->version(), 7U);
    EXPECT_EQ(stored("epoch"), 1);
}

TEST_F(Clients, KeepsRecordsOfAllLengths) {
    const std::vector<std::size_t> sizes{0, 1, 8191, 8192, 8193, 16384, 100'000, 3, 20'000, 0};
    const unsigned int offset = create(*a, "");
    for (const std::size_t size : sizes) {
        std::string bytes(size, 'x');
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7);
        update(*a, offset, bytes);
        a->flush();
        const tLock guard(b->lock());
        EXPECT_EQ(contents(*b, offset), bytes) << size;
        const long long chunks = Server::count(
            "SELECT count(*) FROM lvp_record r JOIN lvp_store s ON s.id = r.store "
            "WHERE s.name = '" +
            name + "'");
        EXPECT_EQ(static_cast<std::size_t>(chunks), std::max<std::size_t>(1, (size + 8191) / 8192)) << size;
    }
    a->erase(offset);
    a->flush();
    const tLock guard(b->lock());
    EXPECT_EQ(b->size(offset), 0U);
}

TEST_F(Clients, LetsOneWriterInAtATime) {
    constexpr int kRounds = 100;
    create(*a, std::string(1, '\0'));
    a->flush();
    const auto count = [&](Core& store) {
        for (int i = 0; i < kRounds; ++i) {
            const tLock guard(store.lock());
            std::string number = contents(store, 0);
            ++number[0];
            update(store, 0, number);
        }
    };
    std::thread other([&] { count(*b); });
    count(*a);
    other.join();
    const tLock guard(a->lock());
    EXPECT_EQ(static_cast<unsigned char>(contents(*a, 0)[0]), 2 * kRounds);
    EXPECT_EQ(stored("epoch"), 2 * kRounds + 1) << "each commit has an epoch of its own";
}

TEST_F(Clients, ShowsAReaderOneStateUnderAGuard) {
    create(*a, "old");
    create(*a, "old");
    a->flush();
    const auto reader = Server::open(name, tMode::kRead);
    const tLock guard(reader->lock());
    EXPECT_EQ(contents(*reader, 0), "old");
    update(*a, 0, "new");
    update(*a, 1, "new");
    a->flush();
    EXPECT_EQ(contents(*reader, 1), "old");
}

TEST_F(Clients, ConnectsAnewWhereTheConnectionWasLostBetweenGuards) {
    create(*a, "one");
    a->flush();
    Server::cutAll();
    update(*a, 0, "two");
    EXPECT_NO_THROW(a->flush());
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 0), "two");
}

TEST_F(Clients, CommitsAgainWhatWasNotDoneWhenTheConnectionWasLost) {
    create(*a, "one");
    a->flush();
    {
        const tLock guard(a->lock());
        update(*a, 0, "two");
        cutTransactions();
        a->flush();
    }
    EXPECT_EQ(stored("epoch"), 2) << "once";
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 0), "two");
}

TEST_F(Clients, GivesUpAGuardWhoseConnectionWasLostWhenSomebodyElseGotInBetween) {
    create(*a, "one");
    a->flush();
    const tLock guard(a->lock());
    update(*a, 0, "mine");
    cutTransactions();
    update(*b, 0, "theirs");
    b->flush();
    EXPECT_THAT(messageOf<StoreError>([&] { a->flush(); }),
                HasSubstr("the connection was lost, and somebody else has changed the store since"));
    EXPECT_EQ(stored("epoch"), 2);
}

// Messages of a flush: the statements, and the answers. Cut before the server has them all, the commit was not done;
// cut behind, it was, and only the answer is missing.
class ClientsWay : public Clients, public testing::WithParamInterface<std::chrono::milliseconds> {};
INSTANTIATE_TEST_SUITE_P(Kept, ClientsWay,
                         testing::Values(std::chrono::milliseconds(0), std::chrono::milliseconds(50),
                                         std::chrono::hours(1)));

TEST_P(ClientsWay, CommitsOnceAtWhicheverMessageTheConnectionIsCut) {
    Proxy proxy(Server::port());
    auto settings = Server::settings(name, proxy.port());
    settings.keep = GetParam();
    auto client =
        std::make_unique<Core>(name, std::make_unique<PostgresEngine>(settings, tMode::kWrite), tMode::kWrite);
    Core& store = *client;
    create(store, "begin");
    store.flush();
    long long epoch = stored("epoch");
    const auto flush = [&](int message) {
        const std::string bytes = std::to_string(message) + std::string(20'000, '.');
        const tLock guard(store.lock());
        update(store, 0, bytes);
        proxy.cutAt(message);
        EXPECT_NO_THROW(store.flush());
        const bool cut = proxy.hasCut();
        proxy.cutAt(-1);
        EXPECT_EQ(stored("epoch"), ++epoch) << "once, and not twice";
        EXPECT_EQ(contents(store, 0), bytes);
        return cut;
    };
    int message = 0;
    do {
        ++message;
        SCOPED_TRACE("message " + std::to_string(message));
        // Each statement is prepared by now, in whose place others may come than in the first flush.
        EXPECT_FALSE(flush(-1));
        if (!flush(message)) break;
    } while (!HasFailure());
    EXPECT_GT(message, 25) << "a flush has more messages";
    RecordProperty("messages", message);
    client.reset();  // which may keep its guard
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 0).substr(0, 3), std::to_string(message) + ".");
}

TEST_F(Clients, GoesOnAfterTheServerHasRefusedATransaction) {
    create(*a, "one");
    a->flush();
    Server::run("ALTER TABLE lvp_change ADD CONSTRAINT odd CHECK (writer = 0) NOT VALID");
    update(*a, 0, "two");
    const std::string refusal = messageOf<StoreError>([&] { a->flush(); });
    Server::run("ALTER TABLE lvp_change DROP CONSTRAINT odd");
    EXPECT_THAT(refusal, HasSubstr("violates check constraint"));
    {
        const tLock guard(a->lock());
        EXPECT_EQ(a->size(0), 3U) << "it can be read";
    }
    const tLock guard(b->lock());
    EXPECT_EQ(contents(*b, 0), "one");
}

TEST_F(Clients, RefusesAStoreThatThereIsNot) {
    EXPECT_THAT(messageOf<EngineError>([&] { PostgresEngine(Server::settings("nowhere"), tMode::kWrite); }),
                HasSubstr("there is no store \"nowhere\" in the database"));
}

TEST_F(Clients, WaitsNoLongerThanItsDeadlineForTheGuard) {
    const tLock guard(a->lock());
    auto settings = Server::settings(name);
    settings.deadline = std::chrono::milliseconds(100);
    Core hasty(name, std::make_unique<PostgresEngine>(settings, tMode::kWrite), tMode::kWrite);
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock other(hasty.lock()); }), HasSubstr("did not answer in time"));
}

// A flush under a guard stores, and takes the guard again, for which others may wait.
TEST_F(Clients, HasStoredWhatWasFlushedUnderAGuardThatCannotBeHadAgain) {
    create(*a, "one");
    a->flush();
    auto settings = Server::settings(name);
    settings.deadline = std::chrono::milliseconds(200);
    Core hasty(name, std::make_unique<PostgresEngine>(settings, tMode::kWrite), tMode::kWrite);
    {
        const tLock guard(hasty.lock());
        update(hasty, 0, "two");
        const Server::Waiter other("BEGIN; LOCK TABLE lvp_store IN EXCLUSIVE MODE");
        EXPECT_NO_THROW(hasty.flush());
        EXPECT_EQ(stored("epoch"), 2) << "it is stored";
        EXPECT_THAT(messageOf<StoreError>([&] { update(hasty, 0, "three"); }), HasSubstr("did not answer in time"));
    }
    EXPECT_NO_THROW(hasty.flush()) << "nothing has changed under the guard that was lost";
    update(hasty, 0, "four");
    EXPECT_NO_THROW(hasty.flush());
    EXPECT_EQ(stored("epoch"), 3);
}

}  // namespace
}  // namespace lumivard::platform::stores
