// What the store does beyond the contract that can lose what was not flushed.
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "lumivard/platform/store_contract/ForgetfulStore.h"

namespace lumivard::platform::store_contract {
namespace {

class Forgetful : public testing::Test {
protected:
    unsigned int create(const std::string& bytes) {
        return _store.create(bytes.data(), static_cast<unsigned int>(bytes.size()));
    }
    void update(unsigned int offset, const std::string& bytes, bool changed = true) {
        _store.update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), changed);
    }
    std::string contents(unsigned int offset) {
        std::string bytes(_store.size(offset), '\0');
        _store.read(offset, bytes.data(), 0xFFFFFFFF);
        return bytes;
    }

    ForgetfulStore _store;
};

TEST_F(Forgetful, LosesEverythingWhenNothingWasFlushed) {
    create("a");
    _store.version(3);
    _store.crash();
    EXPECT_EQ(_store.extent(), 0U);
    EXPECT_EQ(_store.version(), 0U);
    EXPECT_EQ(_store.size(0), 0U);
    EXPECT_EQ(create("b"), 0U);
}

TEST_F(Forgetful, KeepsWhatWasFlushedAndNothingElse) {
    const unsigned int kept = create("kept");
    const unsigned int erased = create("erased");
    _store.version(3);
    _store.flush();
    update(kept, "lost");
    _store.append(kept, "!", 1);
    _store.erase(erased);
    _store.version(4);
    const unsigned int lost = create("new");
    _store.crash();
    EXPECT_EQ(contents(kept), "kept");
    EXPECT_EQ(contents(erased), "erased");
    EXPECT_EQ(_store.version(), 3U);
    EXPECT_EQ(_store.size(lost), 0U);
    EXPECT_EQ(create("again"), lost);
}

TEST_F(Forgetful, KeepsAnErasureThatWasFlushed) {
    const unsigned int offset = create("gone");
    _store.flush();
    _store.erase(offset);
    _store.flush();
    _store.crash();
    EXPECT_EQ(_store.size(offset), 0U);
    EXPECT_NE(create("next"), offset);
}

TEST_F(Forgetful, LosesBookkeepingThatNoContentTookAlong) {
    const unsigned int alone = create("0");
    const unsigned int along = create("0");
    _store.flush();
    update(alone, "1", false);
    update(along, "1", true);
    update(along, "2", false);
    _store.flush();
    EXPECT_EQ(contents(alone), "1");
    _store.crash();
    EXPECT_EQ(contents(alone), "0");
    EXPECT_EQ(contents(along), "2");
}

TEST_F(Forgetful, LosesTheSameOnceMore) {
    const unsigned int offset = create("a");
    _store.flush();
    for (int time = 0; time < 3; ++time) {
        update(offset, "b");
        _store.crash();
        EXPECT_EQ(contents(offset), "a");
    }
    EXPECT_EQ(_store.flushes(), 1U);
}

TEST_F(Forgetful, RefusesChangesButNoReadingOnceItHasDiedInAFlush) {
    const unsigned int offset = create("a");
    _store.dieInFlush(1);
    EXPECT_THROW(_store.flush(), InjectedFailure);
    EXPECT_THROW(_store.flush(), InjectedFailure);
    EXPECT_THROW(create("b"), InjectedFailure);
    EXPECT_THROW(update(offset, "b"), InjectedFailure);
    EXPECT_THROW(_store.append(offset, "b", 1), InjectedFailure);
    EXPECT_THROW(_store.erase(offset), InjectedFailure);
    EXPECT_THROW(_store.version(2), InjectedFailure);
    EXPECT_EQ(contents(offset), "a");
    EXPECT_NO_THROW(update(offset, "c", false));
    EXPECT_NO_THROW(delete _store.lock());
    _store.crash();
    EXPECT_NO_THROW(create("b"));
    EXPECT_NO_THROW(_store.flush());
}

TEST_F(Forgetful, LeavesOneFlushOrTheOtherWhereItDiedInOne) {
    std::set<std::string> found;
    for (unsigned int seed = 0; seed < 20; ++seed) {
        ForgetfulStore store;
        store.create("a", 1);
        store.flush();
        store.update(0, "b", 1, true);
        store.create("b", 1);
        store.dieInFlush(seed);
        EXPECT_THROW(store.flush(), InjectedFailure);
        store.crash();
        char byte = '.';
        store.read(0, &byte, 1);
        EXPECT_EQ(store.extent(), byte == 'a' ? 1U : 2U) << "never a mixture";
        EXPECT_EQ(store.flushes(), byte == 'a' ? 1U : 2U);
        found.emplace(1, byte);
    }
    EXPECT_EQ(found, (std::set<std::string>{"a", "b"}));
}

TEST_F(Forgetful, DiesTheSameWayWithTheSameSeed) {
    for (unsigned int seed = 0; seed < 8; ++seed) {
        ForgetfulStore one, two;
        for (ForgetfulStore* store : {&one, &two}) {
            store->create("a", 1);
            store->dieInFlush(seed);
            EXPECT_THROW(store->flush(), InjectedFailure);
            store->crash();
        }
        EXPECT_EQ(one.extent(), two.extent()) << seed;
    }
}

}  // namespace
}  // namespace lumivard::platform::store_contract
