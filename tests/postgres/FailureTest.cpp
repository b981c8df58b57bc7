// What a store in a database does where the server, the way to it or the guard is not as it should be.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <thread>

#include <gmock/gmock.h>

#include "lumivard/platform/stores.h"
#include "lumivard/platform/stores/Postgres.h"
#include "tests/postgres/Database.h"
#include "tests/postgres/Proxy.h"

namespace lumivard::platform::stores {
namespace {

using std::chrono::milliseconds;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;

class DatabaseFailure : public Database {
protected:
    void TearDown() override {
        if (!Server::isThere()) return;
        Server::run("DROP TRIGGER IF EXISTS warning ON lvp_change; DROP TRIGGER IF EXISTS warning ON lvp_store");
    }

    /// Each commit that changes this table comes with a warning, as that of a server that has given up waiting for its
    /// standbys.
    static void warnOnCommit(const std::string& table) {
        Server::run(
            "CREATE OR REPLACE FUNCTION lvp_warn() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE WARNING "
            "'not replicated'; RETURN NULL; END $$");
        Server::run("CREATE CONSTRAINT TRIGGER warning AFTER INSERT OR UPDATE ON " + table +
                    " DEFERRABLE INITIALLY DEFERRED FOR EACH ROW EXECUTE FUNCTION lvp_warn()");
    }

    tClient openHasty(tMode mode = tMode::kWrite) const {
        auto settings = Server::settings(name);
        settings.deadline = milliseconds(300);
        return open(std::move(settings), mode);
    }
};

// --- Commits

TEST_F(DatabaseFailure, OfACommitThatCameWithAWarningIsMendedByAnotherOneWithout) {
    const tClient client = open(kNever);
    warnOnCommit("lvp_change");
    create(*client, "one");
    EXPECT_NO_THROW(client->flush());
    EXPECT_EQ(stored("epoch"), 1) << "and it was done once";
    update(*client, 0, "two");
    EXPECT_NO_THROW(client->flush());
    EXPECT_EQ(stored("epoch"), 2);
}

TEST_F(DatabaseFailure, OfACommitThatNothingIsKnownOfRefusesAllChangesUntilTheStoreIsOpenedAgain) {
    {
        const tClient other = open(kNever);
        create(*other, "zero");
        other->flush();
    }
    const tClient client = openHasty();
    create(*client, "one");
    warnOnCommit("lvp_store");
    const auto refusal = [&](const auto& work) { return messageOf<StoreError>(work); };
    EXPECT_THAT(refusal([&] { client->flush(); }), HasSubstr("it is not known whether it was done"));
    EXPECT_THAT(refusal([&] { client->flush(); }), HasSubstr("it is not known whether it was done"));
    EXPECT_THAT(refusal([&] { create(*client, "two"); }), HasSubstr("it is not known whether it was done"));
    EXPECT_EQ(contents(*client, 0), "zero") << "it can be read";
    EXPECT_EQ(contents(*client, 1), "one");
    TearDown();
    const tClient again = open(kNever);
    create(*again, "two");
    EXPECT_NO_THROW(again->flush());
}

// It may have been replicated no further than here, and whoever waits for its end may wait for long.
TEST_F(DatabaseFailure, OfACommitThatNothingIsKnownOfLetsReadWhileSomebodyElseHasTheGuard) {
    const tClient client = openHasty();
    create(*client, "one");
    warnOnCommit("lvp_store");
    EXPECT_THROW(client->flush(), StoreError);
    TearDown();
    const tClient other = open(kNever);
    const tLock theirs(other->lock());
    const tLock guard(client->lock());
    EXPECT_EQ(client->extent(), 1U);
    EXPECT_EQ(contents(*client, 0), "one") << "and what is stored by now is seen";
}

// So many others have stored something by then that the list of changes begins behind it.
TEST_F(DatabaseFailure, OfACommitWhoseTraceIsGoneIsToldAsNotKnown) {
    const tClient client = open(kNever);
    create(*client, "one");
    Server::run(
        "CREATE OR REPLACE FUNCTION lvp_warn() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE WARNING 'lost'; "
        "DELETE FROM lvp_change WHERE store = NEW.store; UPDATE lvp_store SET epoch = epoch + 5, low_epoch = epoch + 2 "
        "WHERE id = NEW.store; RETURN NULL; END $$");
    Server::run(
        "CREATE CONSTRAINT TRIGGER warning AFTER INSERT ON lvp_change DEFERRABLE INITIALLY DEFERRED FOR EACH ROW "
        "EXECUTE FUNCTION lvp_warn()");
    EXPECT_THAT(messageOf<StoreError>([&] { client->flush(); }),
                HasSubstr("it is not known whether it was done: too much was stored since"));
}

TEST_F(DatabaseFailure, OfAFlushOfWhichNothingWasSentLosesThatAndGoesOn) {
    {
        const tClient other = open(kNever);
        create(*other, "one");
        create(*other, std::string(20'000, 'b'));
        other->flush();
    }
    Proxy proxy(Server::port());
    auto settings = Server::settings(name, proxy.port());
    settings.deadline = milliseconds(300);
    const tClient client = open(std::move(settings));
    {
        const tLock guard(client->lock());
        update(*client, 0, "two");
        proxy.close(true);
        EXPECT_THROW(client->size(1), StoreError);
        EXPECT_THAT(messageOf<StoreError>([&] { client->flush(); }), HasSubstr("nothing was stored: "));
    }
    proxy.close(false);
    {
        const tLock guard(client->lock());
        EXPECT_EQ(contents(*client, 0), "one");
        update(*client, 0, "three");
        EXPECT_NO_THROW(client->flush());
    }
    EXPECT_EQ(stored("epoch"), 2);
}

// --- Servers that have lost something

TEST_F(DatabaseFailure, OfAServerThatIsBehindIsToldByName) {
    const tClient client = openHasty();
    create(*client, "one");
    client->flush();
    update(*client, 0, "two");
    client->flush();
    Server::run(
        "UPDATE lvp_store s SET epoch = 1, writer = (SELECT writer FROM lvp_change c WHERE c.store = s.id AND "
        "c.epoch = 1) WHERE name = '" +
        name + "'");
    Server::run("DELETE FROM lvp_change WHERE epoch = 2 AND store = (SELECT id FROM lvp_store WHERE name = '" + name +
                "')");
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(client->lock()); }),
                HasSubstr("the server is behind what was seen of the store"));
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(client->lock()); }),
                HasSubstr("the server is behind what was seen of the store"));
    EXPECT_EQ(contents(*client, 0), "two") << "what is known stays";
}

TEST_F(DatabaseFailure, OfAServerWithAnotherHistoryIsToldByName) {
    const tClient client = openHasty();
    create(*client, "one");
    client->flush();
    // As after a backup was restored that is older, and others have gone on from there.
    Server::run("UPDATE lvp_change SET writer = writer + 1 WHERE store = (SELECT id FROM lvp_store WHERE name = '" +
                name + "')");
    Server::run("UPDATE lvp_store SET epoch = epoch + 5, writer = 7 WHERE name = '" + name + "'");
    Server::cutAll();
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(client->lock()); }),
                HasSubstr("the server has another history than what was seen of the store"));
}

TEST_F(DatabaseFailure, OfAStoreThatWasDeletedIsToldByName) {
    const tClient client = openHasty();
    Server::run("DELETE FROM lvp_store WHERE name = '" + name + "'");
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(client->lock()); }), HasSubstr("not there any more"));
    Server::cutAll();
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(client->lock()); }), HasSubstr("there is no store"));
}

TEST_F(DatabaseFailure, OfAStoreThatWasDeletedIsNotSeenInAnotherOneOfItsName) {
    const tClient client = openHasty();
    create(*client, "one");
    client->flush();
    Server::run("DELETE FROM lvp_store WHERE name = '" + name + "'");
    Server::run("INSERT INTO lvp_store(name, epoch, next_off) VALUES('" + name + "', 100, 5)");
    Server::cutAll();
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(client->lock()); }), HasSubstr("not there any more"));
        EXPECT_THAT(messageOf<StoreError>([&] { client->size(3); }), HasSubstr("not there any more"));
    }
    EXPECT_EQ(contents(*client, 0), "one") << "what is known stays";
}

TEST_F(DatabaseFailure, OfAStoreOfANewerVersionOrAnotherMachineIsToldByName) {
    Server::run("UPDATE lvp_store SET format = 2 WHERE name = '" + name + "'");
    EXPECT_THAT(messageOf<EngineError>([&] { open(kNever); }), HasSubstr("it was made by a newer version"));
    Server::run("UPDATE lvp_store SET format = 1, layout = 5 WHERE name = '" + name + "'");
    EXPECT_THAT(messageOf<EngineError>([&] { open(kNever); }),
                HasSubstr("another byte order or width of wide characters"));
}

TEST_F(DatabaseFailure, OfWhatTheServerHasOfAStoreIsToldByName) {
    {
        const tClient client = open(kNever);
        create(*client, std::string(20'000, 'a'));
        create(*client, "one");
        client->flush();
    }
    const std::string store = "(SELECT id FROM lvp_store WHERE name = '" + name + "')";
    const std::string odd = "what the server has of the store is not as it should be";
    const tClient sound = open(kNever);
    for (const char* const number : {"next_off = -1", "next_off = 4294967296", "version = -1"}) {
        SCOPED_TRACE(number);
        Server::run(std::string("UPDATE lvp_store SET ") + number + " WHERE name = '" + name + "'");
        EXPECT_THAT(messageOf<EngineError>([&] { open(kNever); }), HasSubstr(odd));
        EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(sound->lock()); }), HasSubstr(odd));
        Server::run("UPDATE lvp_store SET next_off = 2, version = 0 WHERE name = '" + name + "'");
    }
    EXPECT_EQ(contents(*sound, 1), "one");
    Server::run("DELETE FROM lvp_record WHERE chunk = 1 AND store = " + store);
    const tClient client = open(kNever);
    EXPECT_THAT(messageOf<StoreError>([&] { client->size(0); }), HasSubstr("of its parts some are missing"));
    EXPECT_EQ(contents(*client, 1), "one") << "others can be read";
    Server::run("UPDATE lvp_change SET offs = '{4294967297}' WHERE store = " + store);
    Server::run("UPDATE lvp_change SET epoch = 2 WHERE store = " + store);
    Server::run("UPDATE lvp_store SET epoch = 2 WHERE name = '" + name + "'");
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(sound->lock()); }), HasSubstr(odd));
}

// --- Guards

TEST_F(DatabaseFailure, OfTheConnectionUnderAGuardIsNotSeenWhereNobodyHasStoredAnything) {
    for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
        const tClient writer = open(kNever);
        create(*writer, std::string(20, 'a'));
        create(*writer, std::string(20'000, 'b'));
        writer->flush();
        const tClient client = open(kNever, mode);
        const auto last = static_cast<unsigned int>(client->extent()) - 1;
        const tLock guard(client->lock());
        Server::cutAll();
        EXPECT_EQ(client->size(last), 20'000U);
        if (mode == tMode::kRead) continue;
        update(*client, last, "changed");
        EXPECT_NO_THROW(client->flush());
    }
}

TEST_F(DatabaseFailure, OfTheConnectionUnderAGuardEndsItWhereSomebodyHasStoredSomething) {
    const tClient writer = open(kNever);
    create(*writer, "one");
    create(*writer, std::string(20'000, 'b'));
    writer->flush();
    for (const milliseconds keep : {kNever, milliseconds(kLong)}) {
        const tClient client = open(keep);
        {
            const tLock guard(client->lock());
            update(*client, 0, "mine");
            Server::cutAll();
            update(*writer, 0, "theirs " + std::to_string(keep.count()));
            writer->flush();
            const auto overtaken = HasSubstr("the connection was lost, and somebody else has changed the store since");
            EXPECT_THAT(messageOf<StoreError>([&] { client->size(1); }), overtaken);
            EXPECT_THAT(messageOf<StoreError>([&] { client->size(1); }), overtaken);
            EXPECT_THAT(messageOf<StoreError>([&] { client->flush(); }), overtaken);
        }
        const tLock guard(client->lock());
        EXPECT_EQ(contents(*client, 0), "theirs " + std::to_string(keep.count()));
        EXPECT_EQ(client->size(1), 20'000U);
    }
}

TEST_F(DatabaseFailure, OfAGuardThatWasLostIsNotKept) {
    const tClient writer = open(kNever);
    create(*writer, "one");
    create(*writer, std::string(20'000, 'b'));
    writer->flush();
    const tClient client = open(kLong);
    EXPECT_EQ(contents(*client, 0), "one");
    {
        const tLock guard(client->lock());
        Server::cutAll();
        update(*writer, 0, "two");
        writer->flush();
        EXPECT_THROW(client->size(1), StoreError);
    }
    const tLock guard(client->lock());
    EXPECT_EQ(contents(*client, 0), "two");
}

TEST_F(DatabaseFailure, OfAKeptGuardsConnectionIsSeenBeforeItIsUsedAgain) {
    const tClient keeper = open(kLong);
    const tClient other = open(kNever);
    create(*keeper, "one");
    keeper->flush();
    {
        const tLock guard(keeper->lock());
        EXPECT_EQ(contents(*keeper, 0), "one");
    }
    Server::cutAll();
    update(*other, 0, "two");
    other->flush();
    const tLock guard(keeper->lock());
    EXPECT_EQ(contents(*keeper, 0), "two");
}

TEST_F(DatabaseFailure, OfWaitingForAGuardThatIsKeptForLongIsToldByName) {
    const tClient keeper = open(kLong);
    const tClient other = openHasty();
    { const tLock guard(keeper->lock()); }
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(other->lock()); }),
                HasSubstr("somebody else may have its guard"));
}

// The transaction that is asked for along with a commit may wait while nobody looks at its answer.
TEST_F(DatabaseFailure, OfATransactionThatTheServerHasWaitedForTooLongIsToldByName) {
    auto settings = Server::settings(name);
    settings.keep = kLong;
    settings.deadline = milliseconds(500);
    const tClient client = open(std::move(settings));
    {
        std::optional<Server::Waiter> other;
        {
            const tLock guard(client->lock());
            create(*client, "one");
            other.emplace("BEGIN; LOCK TABLE lvp_store IN EXCLUSIVE MODE");
        }
        const std::string refused =
            "SELECT count(*) FROM pg_stat_activity WHERE state = 'idle in transaction (aborted)'";
        while (Server::count(refused) == 0) std::this_thread::yield();
        EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(client->lock()); }),
                    HasSubstr("somebody else may have its guard"));
    }
    const tLock guard(client->lock());
    EXPECT_EQ(contents(*client, 0), "one");
}

TEST_F(DatabaseFailure, DoesNotComeFromAGuardThatIsKeptForAMomentByWhoDoesNothingMore) {
    const tClient keeper = open(milliseconds(20));
    const tClient other = open(kNever);
    create(*keeper, "one");
    { const tLock guard(keeper->lock()); }  // stores it, and asks for the next transaction
    for (int round = 0; round < 3; ++round) {
        const tLock guard(other->lock());
        update(*other, 0, "theirs " + std::to_string(round));
    }
    { const tLock guard(keeper->lock()); }  // stores nothing
    const tLock guard(other->lock());
    EXPECT_EQ(contents(*other, 0), "theirs 2");
}

TEST_F(DatabaseFailure, OfACallFromAChildOfTheProcessIsToldByName) {
    tClient client = open(kLong);
    create(*client, "one");
    client->flush();
    { const tLock guard(client->lock()); }
    const pid_t child = ::fork();
    if (child == 0) {
        int status = 1;
        try {
            const tLock guard(client->lock());
        } catch (const StoreError& error) {
            status = std::string(error.what()).find("opened by another process") == std::string::npos ? 2 : 0;
        }
        client.store.reset();  // waits for nothing, and leaves the parent's connection alone
        ::_exit(status);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    const tLock guard(client->lock());
    EXPECT_EQ(contents(*client, 0), "one");
}

// --- Ways to the server

/// A server that takes connections, and says nothing.
class SilentServer {
public:
    SilentServer() : _socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        if (::bind(_socket, any, size) != 0 || ::listen(_socket, 4) != 0 || ::getsockname(_socket, any, &size) != 0) {
            throw std::runtime_error("there is no port");
        }
        port = std::to_string(ntohs(address.sin_port));
    }
    ~SilentServer() { ::close(_socket); }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    std::string port;

private:
    int _socket;
};

TEST_F(DatabaseFailure, OfOneHostIsMadeUpForByAnother) {
    const SilentServer silent;
    for (const std::string& broken :
         {std::string("127.0.0.1:1"), "127.0.0.1:" + silent.port, std::string("host.invalid")}) {
        SCOPED_TRACE(broken);
        std::string location = Server::url(name);
        location.insert(location.find('@') + 1, broken + ",");
        const auto store = stores::open(location, tMode::kWrite);
        create(*store, "one");
        EXPECT_NO_THROW(store->flush());
    }
}

TEST_F(DatabaseFailure, OfAllHostsIsToldForEach) {
    const SilentServer silent;
    const std::string message = messageOf<StoreError>([&] {
        stores::open("postgresql://x@127.0.0.1:1,127.0.0.1:" + silent.port + ",host.invalid/db?store=x&deadline=300",
                     tMode::kRead);
    });
    EXPECT_THAT(message, HasSubstr("127.0.0.1:1: connection to server"));
    EXPECT_THAT(message, HasSubstr("127.0.0.1:" + silent.port + ": the server did not answer in time"));
    EXPECT_THAT(messageOf<StoreError>([&] { stores::open("postgresql://host.invalid/db?store=x", tMode::kRead); }),
                HasSubstr("the host \"host.invalid\" is not found"));
}

TEST_F(DatabaseFailure, DoesNotComeFromNamesOfHosts) {
    std::string location = Server::url(name);
    location.replace(location.find("127.0.0.1"), 9, "localhost");
    EXPECT_NE(stores::open(location, tMode::kRead), nullptr);
}

TEST_F(DatabaseFailure, DoesNotComeFromLocationsThatNameAService) {
    const std::string location = Server::url(name);
    const std::size_t at = location.find('@');
    const std::size_t slash = location.find('/', at);
    const std::string database = location.substr(slash + 1, location.find('?') - slash - 1);
    const std::string user = location.substr(location.find("//") + 2, at - location.find("//") - 2);
    const std::string file = testing::TempDir() + "/lvp_service." + std::to_string(::getpid());
    std::ofstream(file) << "[lvp_test]\nhost=127.0.0.1\nport=" << Server::port() << "\nuser=" << user
                        << "\ndbname=" << database << "\n";
    ASSERT_EQ(::setenv("PGSERVICEFILE", file.c_str(), 1), 0);
    EXPECT_NO_THROW(stores::open(
        "postgresql:///?service=lvp_test&store=" + location.substr(location.find("store=") + 6), tMode::kRead));
    EXPECT_EQ(::unsetenv("PGSERVICEFILE"), 0);
    EXPECT_EQ(std::remove(file.c_str()), 0);
}

// --- Setting up

TEST_F(DatabaseFailure, DoesNotComeWhereAStoreIsSetUpListedAndRemoved) {
    const std::string location = Server::url(name + " more");
    runInPostgres(location, postgresCreation(location));
    {
        const auto store = postgres(location, tMode::kWrite);
        create(*store, "one");
        store->version(3);
        store->flush();
    }
    EXPECT_THAT(postgresStores(location),
                Contains(testing::AllOf(Field(&PostgresStore::name, name + " more"), Field(&PostgresStore::version, 3U),
                                        Field(&PostgresStore::extent, 1U), Field(&PostgresStore::epoch, 1U))));
    EXPECT_THAT(messageOf<StoreError>([&] { runInPostgres(location, postgresCreation(location)); }),
                HasSubstr("there is a store of that name already"));
    runInPostgres(location, postgresRemoval(location));
    EXPECT_THAT(messageOf<StoreError>([&] { postgres(location, tMode::kRead); }), HasSubstr("there is no store"));
}

TEST_F(DatabaseFailure, OfARemovalThatSomebodyHoldsUpLeavesTheStore) {
    const tClient client = open(kNever);
    create(*client, "one");
    client->flush();
    const std::string location = Server::url(name) + "&deadline=200";
    {
        const tLock guard(client->lock());
        EXPECT_THAT(messageOf<StoreError>([&] { runInPostgres(location, postgresRemoval(location)); }),
                    HasSubstr("lock timeout"));
        update(*client, 0, "two");
    }
    client->flush();
    const tClient other = open(kNever);
    EXPECT_EQ(contents(*other, 0), "two");
}

/// Two roles that may log in, and nothing else.
class DatabaseRights : public Database {
protected:
    void SetUp() override {
        Database::SetUp();
        if (!Server::isThere()) return;
        drop();
        for (const char* const role : {"lvp_test_reader", "lvp_test_writer"}) {
            Server::run(std::string("CREATE ROLE ") + role + " LOGIN");
        }
    }
    void TearDown() override {
        if (Server::isThere()) drop();
    }
    static void drop() {
        for (const char* const role : {"lvp_test_reader", "lvp_test_writer"}) {
            Server::run(std::string("DO $$ BEGIN IF EXISTS (SELECT 1 FROM pg_roles WHERE rolname = '") + role +
                        "') THEN EXECUTE 'DROP OWNED BY " + role + "'; EXECUTE 'DROP ROLE " + role +
                        "'; END IF; END $$");
        }
    }
};

TEST_F(DatabaseRights, AreThoseThatWereGiven) {
    const std::string asReader = Server::url(name, "lvp_test_reader");
    const std::string asWriter = Server::url(name, "lvp_test_writer");
    EXPECT_THAT(messageOf<StoreError>([&] { postgres(asReader, tMode::kRead); }), HasSubstr("permission denied"));
    runInPostgres(Server::url(name), postgresRights("lvp_test_reader", tMode::kRead));
    runInPostgres(Server::url(name), postgresRights("lvp_test_writer", tMode::kWrite));
    {
        const auto writer = postgres(asWriter, tMode::kWrite);
        create(*writer, "one");
        create(*writer, "two");
        writer->flush();
        writer->erase(1);
        update(*writer, 0, std::string(20'000, 'x'));
        writer->flush();
        update(*writer, 0, "one");
        writer->flush();
    }
    const auto reader = postgres(asReader, tMode::kRead);
    EXPECT_EQ(contents(*reader, 0), "one");
    const auto wishful = postgres(asReader, tMode::kWrite);
    EXPECT_THAT(messageOf<StoreError>([&] { const tLock guard(wishful->lock()); }), HasSubstr("permission denied"));
}

TEST_F(DatabaseRights, AreAskedForAgainUnderAGuardThatWasRefusedSomething) {
    runInPostgres(Server::url(name), postgresRights("lvp_test_writer", tMode::kWrite));
    {
        const auto writer = Server::open(name);
        create(*writer, std::string(20'000, 'a'));
        create(*writer, std::string(20'000, 'b'));
        writer->flush();
    }
    const auto store = postgres(Server::url(name, "lvp_test_writer"), tMode::kWrite);
    const tLock guard(store->lock());
    Server::run("REVOKE SELECT ON lvp_record FROM lvp_test_writer");
    EXPECT_THAT(messageOf<StoreError>([&] { store->size(0); }), HasSubstr("permission denied"));
    Server::run("GRANT SELECT ON lvp_record TO lvp_test_writer");
    EXPECT_EQ(store->size(0), 20'000U);
    Server::run("REVOKE INSERT, UPDATE ON lvp_record FROM lvp_test_writer");
    update(*store, 0, "one");
    EXPECT_THAT(messageOf<StoreError>([&] { store->flush(); }), HasSubstr("permission denied"));
    EXPECT_EQ(store->size(1), 20'000U) << "it can be read";
}

TEST_F(DatabaseRights, AreAskedForAgainUnderAGuardWhoseConnectionIsLostToo) {
    runInPostgres(Server::url(name), postgresRights("lvp_test_writer", tMode::kWrite));
    {
        const auto writer = Server::open(name);
        create(*writer, std::string(20'000, 'a'));
        writer->flush();
    }
    const auto store = postgres(Server::url(name, "lvp_test_writer"), tMode::kWrite);
    const tLock guard(store->lock());
    Server::cutAll();
    Server::run("REVOKE UPDATE ON lvp_store FROM lvp_test_writer");
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THAT(messageOf<StoreError>([&] { store->size(0); }), HasSubstr("permission denied"));
    }
    Server::run("GRANT UPDATE ON lvp_store TO lvp_test_writer");
    EXPECT_EQ(store->size(0), 20'000U);
}

TEST_F(DatabaseRights, AreNotGivenByWhoMayNot) {
    runInPostgres(Server::url(name), postgresRights("lvp_test_writer", tMode::kWrite));
    const std::string asWriter = Server::url(name, "lvp_test_writer");
    EXPECT_THAT(
        messageOf<StoreError>([&] { runInPostgres(asWriter, postgresRights("lvp_test_reader", tMode::kRead)); }),
        HasSubstr("no privileges were granted"));
}

}  // namespace
}  // namespace lumivard::platform::stores
