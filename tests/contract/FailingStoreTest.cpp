// What the store does that fails when it is told to.
#include <new>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/stores.h"

namespace lumivard::platform::store_contract {
namespace {

using core::storage::datastore::IRecordAccess;
using testing::HasSubstr;
using testing::ThrowsMessage;
using tTimes = FailingStore::tTimes;
using tThrown = FailingStore::tThrown;

constexpr unsigned int kKinds = 14;  // of calls

class Failing : public testing::Test {
protected:
    /// Makes one call of each kind, which is what each test has before it.
    void callEach(FailingStore& store) {
        char byte = 0;
        delete store.lock();
        store.version(store.version() + 1);
        store.extent();
        store.append(0, "b", 1);
        store.update(0, "c", 1, true);
        store.update(0, "d", 1, false);
        store.size(0);
        store.read(0, &byte, 1);
        if (auto* const access = store.access()) {
            access->view(0);
            access->write(0, 0, "f", 1, true);
        }
        store.erase(store.create("e", 1));
        store.flush();
    }

    const std::unique_ptr<core::storage::datastore::IDataStore> _under = stores::memory();
    const unsigned int _record = _under->create("a", 1);
    FailingStore _store{*_under, FailingStore::tAccess::kOffered};
};

TEST_F(Failing, FailsNothingThatItIsNotToldTo) {
    EXPECT_NO_THROW(callEach(_store));
    EXPECT_EQ(_store.failed(), 0);
}

TEST_F(Failing, FailsTheCallWithTheNumberTold) {
    _store.failAfter(2, FailingStore::kRead);
    char byte = 0;
    EXPECT_NO_THROW(_store.read(0, &byte, 1));
    EXPECT_NO_THROW(_store.read(0, &byte, 1));
    EXPECT_THROW(_store.read(0, &byte, 1), InjectedFailure);
    EXPECT_EQ(_store.failed(), 1);
    EXPECT_EQ(_store.count(FailingStore::kRead), 3);
}

TEST_F(Failing, FailsOnceOrUntilItIsToldToGoOn) {
    _store.failAfter(0, FailingStore::kSize, tTimes::kOnce);
    EXPECT_THROW(_store.size(0), InjectedFailure);
    EXPECT_EQ(_store.size(0), 1U);
    _store.failAfter(0, FailingStore::kSize, tTimes::kForEver);
    EXPECT_THROW(_store.size(0), InjectedFailure);
    EXPECT_THROW(_store.size(0), InjectedFailure);
    EXPECT_EQ(_store.failed(), 2);
    _store.goOn();
    EXPECT_EQ(_store.size(0), 1U);
}

TEST_F(Failing, LeavesTheStoreBelowAsItWas) {
    _store.failAfter(0, FailingStore::kAllChanges);
    EXPECT_THROW(_store.create("x", 1), InjectedFailure);
    EXPECT_THROW(_store.append(0, "x", 1), InjectedFailure);
    EXPECT_THROW(_store.update(0, "xy", 2, true), InjectedFailure);
    EXPECT_THROW(_store.update(0, "xy", 2, false), InjectedFailure);
    EXPECT_THROW(_store.erase(0), InjectedFailure);
    EXPECT_THROW(_store.version(9), InjectedFailure);
    EXPECT_EQ(_under->extent(), 1U);
    EXPECT_EQ(_under->size(0), 1U);
    EXPECT_EQ(_under->version(), 0U);
}

TEST_F(Failing, TellsEachKindOfCallFromTheOthers) {
    for (unsigned int bit = 0; bit < kKinds; ++bit) {
        _store.failAfter(0, 1u << bit);
        EXPECT_THROW(callEach(_store), InjectedFailure) << bit;
        EXPECT_EQ(_store.count(1u << bit), 1) << bit;
        _store.failAfter(0, FailingStore::kAllCalls & ~(1u << bit));
        EXPECT_THROW(callEach(_store), InjectedFailure) << bit;
    }
    EXPECT_EQ(FailingStore::kAllCalls, (1u << kKinds) - 1);
}

TEST_F(Failing, CountsEachCallOnceAlsoWhereNothingFails) {
    callEach(_store);
    for (unsigned int bit = 0; bit < kKinds; ++bit) EXPECT_EQ(_store.count(1u << bit), 1) << bit;
    EXPECT_EQ(_store.count(), kKinds);
}

TEST_F(Failing, FailsEachCallOfAPieceOfWorkInTurn) {
    long long k = 0;
    for (;; ++k) {
        _store.failAfter(k, FailingStore::kAllCalls, tTimes::kOnce);
        try {
            callEach(_store);
        } catch (const InjectedFailure&) {
        }
        if (_store.failed() == 0) break;
    }
    EXPECT_EQ(k, kKinds);
}

TEST_F(Failing, MayBeTakenForAStoreThatRanOutOfMemory) {
    _store.failAfter(0, FailingStore::kCreate, tTimes::kOnce, tThrown::kBadAlloc);
    EXPECT_THROW(_store.create("x", 1), std::bad_alloc);
}

TEST_F(Failing, SaysWhichCallItWas) {
    _store.failAfter(0, FailingStore::kBookkeeping);
    EXPECT_THAT([this] { _store.update(0, "x", 1, false); }, ThrowsMessage<InjectedFailure>(HasSubstr("bookkeeping")));
}

TEST_F(Failing, TakesEnteringForTakingAGuard) {
    _store.failAfter(1, FailingStore::kLock, tTimes::kOnce);
    delete _store.lock();
    EXPECT_THROW(_store.access()->enter(), InjectedFailure);
    EXPECT_NO_THROW(_store.access()->enter());
    _store.access()->leave();
    EXPECT_EQ(_store.count(FailingStore::kLock), 3);
}

TEST_F(Failing, TellsAWriteOfContentFromOneOfBookkeeping) {
    _store.failAfter(0, FailingStore::kBookkeeping);
    EXPECT_NO_THROW(_store.access()->write(0, 0, "x", 1, true));
    EXPECT_THROW(_store.access()->write(0, 0, "y", 1, false), InjectedFailure);
    _store.failAfter(0, FailingStore::kChanges);
    EXPECT_NO_THROW(_store.access()->write(0, 0, "z", 1, false));
    EXPECT_THROW(_store.access()->write(0, 0, "y", 1, true), InjectedFailure);
    EXPECT_EQ(*_under->access()->view(0).data, 'z');
}

TEST_F(Failing, CountsNeitherChangesNorTheAttachmentWhichAreThoseOfTheStoreBelow) {
    IRecordAccess* const access = _store.access();
    EXPECT_EQ(access->changes(), _under->access()->changes());
    EXPECT_EQ(&access->attachment(), &_under->access()->attachment());
    EXPECT_EQ(_store.count(), 0);
}

TEST_F(Failing, OffersAccessWhereItIsAskedToAndTheStoreBelowDoes) {
    EXPECT_NE(_store.access(), nullptr);
    FailingStore hidden(*_under);
    EXPECT_EQ(hidden.access(), nullptr);
    FailingStore without(hidden, FailingStore::tAccess::kOffered);
    EXPECT_EQ(without.access(), nullptr);
}

}  // namespace
}  // namespace lumivard::platform::store_contract
