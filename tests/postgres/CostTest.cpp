// What a store in a database asks the server for, and what it keeps there.
#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "lumivard/platform/data.h"
#include "tests/postgres/Database.h"

namespace lumivard::platform::stores {
namespace {

class DatabaseCost : public Database {
protected:
    /// How many round trips some work takes.
    template <class Work>
    static unsigned long long trips(const tClient& client, Work work) {
        const auto before = client.engine->trips();
        work();
        return client.engine->trips() - before;
    }

    void make(unsigned int count) const {
        const tClient client = open(kNever);
        for (unsigned int i = 0; i < count; ++i) create(*client, "record " + std::to_string(i));
        client->flush();
    }
};

TEST_F(DatabaseCost, OfAGuardThatWritesTenRecordsIsTwoRoundTrips) {
    make(10);
    const tClient client = open(kNever);
    {
        const tLock guard(client->lock());
        for (unsigned int i = 0; i < 10; ++i) EXPECT_NE(contents(*client, i), "");
    }
    for (int round = 0; round < 3; ++round) {
        const auto count = trips(client, [&] {
            const tLock guard(client->lock());
            for (unsigned int i = 0; i < 10; ++i) update(*client, i, "round " + std::to_string(round));
        });
        EXPECT_EQ(count, 2U);
    }
    EXPECT_EQ(stored("epoch"), 4);
}

TEST_F(DatabaseCost, OfTheNextGuardThatWritesIsOneWhereGuardsAreKept) {
    make(10);
    const tClient client = open(kLong);
    for (int round = 0; round < 4; ++round) {
        const auto count = trips(client, [&] {
            const tLock guard(client->lock());
            for (unsigned int i = 0; i < 10; ++i) update(*client, i, "round " + std::to_string(round));
        });
        EXPECT_EQ(count, round == 0 ? 3U : 1U) << "the first one brings the records, too";
    }
    EXPECT_EQ(stored("epoch"), 5);
}

TEST_F(DatabaseCost, OfReadingWhatIsKnownUnderAGuardIsNothing) {
    make(10);
    const tClient client = open(kNever);
    const tLock guard(client->lock());
    const auto readAll = [&] {
        for (unsigned int i = 0; i < 10; ++i) EXPECT_EQ(contents(*client, i), "record " + std::to_string(i));
    };
    EXPECT_EQ(trips(client, readAll), 1U);
    EXPECT_EQ(trips(client, readAll), 0U);
    EXPECT_EQ(trips(client, [&] { const tLock inner(client->lock()); }), 0U);
}

TEST_F(DatabaseCost, OfAGuardUnderWhichNothingIsWrittenIsOneOrNothingWhereItIsKept) {
    make(1);
    for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
        const tClient client = open(kNever, mode);
        EXPECT_EQ(trips(client, [&] { const tLock guard(client->lock()); }), 1U);
        EXPECT_EQ(trips(client, [&] { const tLock guard(client->lock()); }), 1U) << "nobody waits for its end";
    }
    const tClient client = open(kLong);
    EXPECT_EQ(trips(client, [&] { const tLock guard(client->lock()); }), 1U);
    EXPECT_EQ(trips(client, [&] { const tLock guard(client->lock()); }), 0U);
}

TEST_F(DatabaseCost, OfRecordsOneAfterTheOtherIsOneTripForManyOfThem) {
    make(3000);
    const tClient client = open(kNever);
    const tLock guard(client->lock());
    const auto count = trips(client, [&] {
        for (unsigned int i = 0; i < 3000; ++i) EXPECT_EQ(contents(*client, i), "record " + std::to_string(i));
    });
    EXPECT_LE(count, 8U);
}

TEST_F(DatabaseCost, OfRecordsThatAreExpectedIsOneTrip) {
    make(3000);
    const tClient client = open(kNever);
    const tLock guard(client->lock());
    std::vector<unsigned int> offsets;
    for (unsigned int i = 5; i < 3000; i += 7) offsets.push_back(i);
    const auto count = trips(client, [&] {
        client->access()->expect(offsets.data(), static_cast<unsigned int>(offsets.size()));
        for (const unsigned int offset : offsets)
            EXPECT_EQ(contents(*client, offset), "record " + std::to_string(offset));
    });
    EXPECT_EQ(count, 1U);
}

TEST_F(DatabaseCost, OfWhatOthersHaveChangedIsThatOfTheGuard) {
    make(10);
    const tClient a = open(kNever);
    const tClient b = open(kNever);
    const auto readAll = [&] {
        const tLock guard(b->lock());
        std::string all;
        for (unsigned int i = 0; i < 10; ++i) all += contents(*b, i);
        return all;
    };
    readAll();
    {
        const tLock guard(a->lock());
        for (unsigned int i = 0; i < 10; ++i) update(*a, i, std::to_string(i));
    }
    EXPECT_EQ(trips(b, [&] { EXPECT_EQ(readAll(), "0123456789"); }), 1U);
}

// Children that lie far from each other come with their list.
TEST_F(DatabaseCost, OfAWalkOverATreeIsAFewTripsForEachContainer) {
    using namespace data;
    {
        const tClient client = open(kNever);
        const tLock guard(client->lock());
        const auto model = structure::IContainerFrontEnd::toplevel(client.store.get(), L"model");
        for (int i = 0; i < 40; ++i) {
            model->create(structure::IContainer::kNode, (L"part" + std::to_wstring(i)).c_str(), nullptr);
            for (int gap = 0; gap < 50; ++gap) create(*client, "somebody else's");
        }
    }
    const tClient client = open(kNever);
    const tLock guard(client->lock());
    struct Count final : structure::IVisitor {
        bool container(const tContainer&) override {
            ++containers;
            return true;
        }
        int containers = 0;
    } visitor;
    const auto count =
        trips(client, [&] { EXPECT_TRUE(structure::IVisitor::visit(client.store.get(), L"", visitor)); });
    EXPECT_EQ(visitor.containers, 41);
    EXPECT_LE(count, 20U);
}

// --- What is stored

TEST_F(DatabaseCost, OfAppendingToALongRecordIsItsLastChunk) {
    const tClient client = open(kNever);
    create(*client, std::string(100'000, 'x'));
    client->flush();
    const auto changed = [&](const auto& work) {
        Server::run(
            "DROP TABLE IF EXISTS before; CREATE TABLE before AS SELECT store, off, chunk, r.xmin AS made FROM "
            "lvp_record r JOIN lvp_store s ON s.id = r.store WHERE s.name = '" +
            name + "'");
        work();
        client->flush();
        const tClient other = open(kNever);
        const tLock guard(other->lock());
        EXPECT_EQ(contents(*other, 0), contents(*client, 0));
        return rows("lvp_record",
                    "NOT EXISTS (SELECT 1 FROM before b WHERE b.store = t.store AND b.off = t.off AND "
                    "b.chunk = t.chunk AND b.made = t.xmin)");
    };
    EXPECT_EQ(changed([&] { client->append(0, "more", 4); }), 1);
    EXPECT_EQ(changed([&] { client->append(0, std::string(8192, 'y').data(), 8192); }), 2);
    EXPECT_EQ(changed([&] { client->access()->write(0, 20'000, "z", 1, true); }), 1);
    EXPECT_EQ(changed([&] { client->access()->write(0, 8190, "1234", 4, true); }), 2);
    std::string bytes = contents(*client, 0);
    bytes[50'000] = '!';
    EXPECT_EQ(changed([&] { update(*client, 0, bytes); }), 1) << "what is the same at both ends stays";
    bytes.resize(60'000);
    EXPECT_EQ(changed([&] { update(*client, 0, bytes); }), 1) << "what is left of the last chunk";
    bytes.resize(8192 * 4);
    EXPECT_EQ(changed([&] { update(*client, 0, bytes); }), 0) << "whole chunks go";
    EXPECT_EQ(changed([&] { update(*client, 0, "short"); }), 1);
    Server::run("DROP TABLE before");
}

TEST_F(DatabaseCost, OfTheListOfChangesIsBounded) {
    auto settings = Server::settings(name);
    settings.history = 8;
    const tClient writer = open(settings);
    const tClient reader = open(settings, tMode::kRead);
    create(*writer, "0");
    writer->flush();
    {
        const tLock guard(reader->lock());
        EXPECT_EQ(contents(*reader, 0), "0");
    }
    for (int i = 1; i <= 50; ++i) {
        update(*writer, 0, std::to_string(i));
        writer->flush();
        EXPECT_LE(rows("lvp_change"), 16);
    }
    EXPECT_EQ(stored("low_epoch"), 40);
    EXPECT_GE(rows("lvp_change"), 8);
    const tLock guard(reader->lock());
    EXPECT_EQ(contents(*reader, 0), "50") << "who has slept longer than that forgets everything";
}

TEST_F(DatabaseCost, OfABatchHasNoLimit) {
    const tClient client = open(kNever);
    const std::string large(300'000, 'x');
    for (int i = 0; i < 5000; ++i) create(*client, std::to_string(i));
    for (int i = 0; i < 40; ++i) create(*client, large);
    client->flush();
    EXPECT_EQ(stored("epoch"), 1);
    EXPECT_EQ(rows("lvp_record", "chunk = 0"), 5040);
    const tClient other = open(kNever);
    const tLock guard(other->lock());
    EXPECT_EQ(contents(*other, 4999), "4999");
    EXPECT_EQ(contents(*other, 5039), large);
}

}  // namespace
}  // namespace lumivard::platform::stores
