// The holding of a store's guard.
#include "record/Guard.h"

#include <gtest/gtest.h>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "lumivard/platform/stores.h"
#include "tests/support/OddStore.h"

namespace {

using lumivard::platform::data::Record::Guard;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::OddStore;

TEST(Guard, HoldsTheStoreForItsScope) {
    const auto under = lumivard::platform::stores::memory();
    LoggingStore store(*under);
    {
        const Guard outer(&store);
        const Guard inner(&store);
        EXPECT_EQ(store.guards(), 2);
    }
    EXPECT_EQ(store.guards(), 0);
}

TEST(Guard, IsGivenBackOnTheWayOfAnException) {
    const auto under = lumivard::platform::stores::memory();
    LoggingStore store(*under);
    try {
        const Guard guard(&store);
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(store.guards(), 0);
}

TEST(Guard, MayBeNothing) {
    OddStore store;
    const Guard guard(&store);
    EXPECT_EQ(store.lock(), nullptr);
}

}  // namespace
