// Giving up what was changed.
#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "lumivard/platform/stores.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using namespace lumivard::platform;
using stores::StoreError;
using stores::tMode;

class Discard : public testing::Test {
protected:
    std::unique_ptr<stores::IDataStore> open(tMode mode) const { return stores::file(_folder / "store.lvp", mode); }
    static std::string read(stores::IDataStore& store, unsigned int offset) {
        std::string bytes(store.size(offset), '\0');
        store.read(offset, bytes.data(), 0xFFFFFFFFu);
        return bytes;
    }

    /// A file with one record, "old".
    void SetUp() override {
        const auto store = open(tMode::kWrite);
        store->create("old", 3);
        store->version(1);
    }

private:
    TemporaryFolder _folder;
};

TEST_F(Discard, LeavesTheFileAsTheLastFlushDid) {
    {
        const auto store = open(tMode::kWrite);
        store->update(0, "new", 3, true);
        store->flush();
        store->update(0, "newer", 5, true);
        store->create("more", 4);
        store->version(2);
        EXPECT_TRUE(stores::discard(*store));
    }
    const auto store = open(tMode::kRead);
    EXPECT_EQ(read(*store, 0), "new");
    EXPECT_EQ(store->extent(), 1u);
    EXPECT_EQ(store->version(), 1u);
}

TEST_F(Discard, LeavesNoBookkeepingEither) {
    {
        const auto store = open(tMode::kWrite);
        store->update(0, "Old", 3, false);
        stores::discard(*store);
    }
    EXPECT_EQ(read(*open(tMode::kRead), 0), "old");
}

TEST_F(Discard, RefusesWhateverWouldChangeTheStoreAfterIt) {
    const auto store = open(tMode::kWrite);
    store->update(0, "new", 3, true);
    stores::discard(*store);
    EXPECT_EQ(read(*store, 0), "new") << "what was given up shows";
    try {
        store->flush();
        FAIL() << "it was flushed";
    } catch (const StoreError& error) {
        EXPECT_NE(std::string(error.what()).find("what was changed in it has been given up"), std::string::npos);
    }
    EXPECT_THROW(store->update(0, "x", 1, true), StoreError);
    EXPECT_THROW(store->create("x", 1), StoreError);
    EXPECT_NO_THROW(store->update(0, "New", 3, false)) << "which comes from destructors";
}

TEST_F(Discard, IsNothingToAStoreThatWritesNothing) {
    const auto reader = open(tMode::kRead);
    EXPECT_TRUE(stores::discard(*reader));
    EXPECT_EQ(read(*reader, 0), "old");
    const auto memory = stores::memory();
    memory->create("a", 1);
    EXPECT_TRUE(stores::discard(*memory));
    EXPECT_NO_THROW(memory->create("b", 1));
}

TEST_F(Discard, KnowsNoStoresOfOthers) {
    const auto memory = stores::memory();
    store_contract::ForwardingStore store(*memory);
    EXPECT_FALSE(stores::discard(store));
}

}  // namespace
