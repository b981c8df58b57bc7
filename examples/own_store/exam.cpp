// A store of one's own sits the exam that the stores of the library sit, and the code of an application is tried on
// stores that fail. OwnStore is the store, Visits the application; all in memory. GoogleTest prints what is tried, and
// the status tells whether it held.
#include <lumivard/platform/store_contract/FailingStore.h>
#include <lumivard/platform/store_contract/ForgetfulStore.h>
#include <lumivard/platform/store_contract/StoreContract.h>

#include <memory>

#include "OwnStore.h"
#include "Visits.h"

using namespace lumivard::platform::store_contract;

// --- The store sits the exam that the stores of the library sit.

namespace lumivard::platform::store_contract {
namespace {

class OwnSubject final : public ISubject {
public:
    core::storage::datastore::IDataStore& store() override { return _store; }

private:
    OwnStore _store;
};

INSTANTIATE_TEST_SUITE_P(Own, StoreContract,
                         testing::Values(Row{"OwnStore", [] { return std::make_unique<OwnSubject>(); }}), nameOf);

}  // namespace
}  // namespace lumivard::platform::store_contract

// --- The code that works with a store, when the store does not.

namespace {

TEST(Visits, AreCountedOrNotWhicheverCallOfTheStoreFails) {
    bool failed = true;
    for (long long k = 0; failed; ++k) {
        OwnStore under;
        FailingStore store(under);
        store.failAfter(k, FailingStore::kAllCalls, FailingStore::tTimes::kOnce);
        int expected = 1;
        try {
            visits::add(store);
        } catch (const InjectedFailure&) {
            expected = visits::count(under);
            EXPECT_TRUE(expected == 0 || expected == 1) << "call " << k;
        }
        visits::add(under);
        EXPECT_EQ(visits::count(under), expected + 1) << "call " << k;
        failed = store.failed() != 0;
    }
}

TEST(Visits, AreThoseOfTheLastFlushWhenThePowerHasGone) {
    ForgetfulStore store;
    visits::add(store);
    store.flush();
    visits::add(store);
    store.crash();
    EXPECT_EQ(visits::count(store), 1);
}

}  // namespace
