// What the stores of the tests do beyond the contract, on which other tests rely.
#include <memory>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/OddStore.h"

namespace lumivard::platform::test_support {
namespace {

using core::storage::datastore::IDataStore;
using store_contract::LoggingStore;
using testing::ElementsAre;
using testing::IsEmpty;
using tCall = LoggingStore::tCall;
using Entry = LoggingStore::Entry;

TEST(OddStore, OffsetsAreSetApartByGrowingMultiplesOf16) {
    OddStore store;
    for (const unsigned int offset : {0U, 16U, 48U, 96U, 160U}) EXPECT_EQ(store.create("x", 1), offset);
}

TEST(OddStore, KnowsTheListedOperationsAlone) {
    OddStore store;
    EXPECT_EQ(store.lock(), nullptr);
    EXPECT_EQ(store.access(), nullptr);
}

TEST(OddStore, OffsetsBetweenRecordsNameNothing) {
    OddStore store;
    store.create("x", 1);
    store.create("y", 1);
    EXPECT_EQ(store.size(1), 0U);
    EXPECT_THROW(store.update(1, "z", 1, true), std::out_of_range);
}

TEST(LoggingStore, NotesEachCallWithItsArguments) {
    OddStore under;
    LoggingStore store(under);
    char byte = 0;
    store.create("ab", 2);
    store.create("ab", 2);
    store.append(16, "c", 1);
    store.update(0, "d", 1, false);
    store.update(16, "e", 1, true);
    store.size(16);
    store.read(0, &byte, 1);
    store.erase(0);
    store.extent();
    store.version(7);
    store.version();
    store.flush();
    EXPECT_THAT(store.log(), ElementsAre(Entry{tCall::kCreate, 0, 2}, Entry{tCall::kCreate, 16, 2},
                                         Entry{tCall::kAppend, 16, 1}, Entry{tCall::kUpdate, 0, 1, false},
                                         Entry{tCall::kUpdate, 16, 1, true}, Entry{tCall::kSize, 16},
                                         Entry{tCall::kRead, 0, 1}, Entry{tCall::kErase, 0}, Entry{tCall::kExtent},
                                         Entry{tCall::kSetVersion}, Entry{tCall::kVersion}, Entry{tCall::kFlush}));
    EXPECT_THAT(store.updates(false), ElementsAre(Entry{tCall::kUpdate, 0, 1, false}));
    EXPECT_EQ(store.count(tCall::kCreate), 2U);
    store.clearLog();
    EXPECT_THAT(store.log(), IsEmpty());
}

TEST(LoggingStore, NotesACallThatThrows) {
    OddStore under;
    LoggingStore store(under);
    EXPECT_THROW(store.erase(5), std::out_of_range);
    EXPECT_THAT(store.log(), ElementsAre(Entry{tCall::kErase, 5}));
}

TEST(LoggingStore, CountsGuardsAndWhatIsDoneWithoutOne) {
    OddStore under;
    LoggingStore store(under);
    store.extent();
    {
        const std::unique_ptr<IDataStore::ILock> outer(store.lock());
        const std::unique_ptr<IDataStore::ILock> inner(store.lock());
        EXPECT_EQ(store.guards(), 2);
        store.extent();
    }
    EXPECT_EQ(store.guards(), 0);
    EXPECT_EQ(store.unguarded(), 1U);
    EXPECT_EQ(store.count(tCall::kLock), 2U);
    EXPECT_EQ(store.count(tCall::kUnlock), 2U);
}

}  // namespace
}  // namespace lumivard::platform::test_support
