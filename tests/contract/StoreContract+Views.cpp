#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/StoreContract.h"

// What the examination asks of a store that shows its records in place.

namespace lumivard::platform::store_contract {

using core::storage::datastore::IRecordAccess;

std::string StoreContract::bytesOf(const IRecordAccess::tView& view) {
    return view.size == 0 ? std::string() : std::string(view.data, view.size);
}

std::string StoreContract::shown(unsigned int offset) {
    return bytesOf(store().access()->view(offset));
}

TEST_P(StoreContract, AViewIsWhatReadGives) {
    LVP_SKIP_WITHOUT_ACCESS();
    for (const unsigned int size : {0U, 1U, 2U, 7U, 8U, 64U, 65U, 1000U, 5000U, 70000U}) {
        const unsigned int offset = create(pattern(size, size + 1));
        ASSERT_TRUE(shown(offset) == pattern(size, size + 1)) << size;
        ASSERT_TRUE(shown(offset) == contents(offset)) << size;
    }
}

TEST_P(StoreContract, AViewOfNoRecordIsEmpty) {
    LVP_SKIP_WITHOUT_ACCESS();
    EXPECT_EQ(store().access()->view(0).size, 0U);
    create("kept");
    for (const unsigned int offset : {erasedOffset(store()), kBadOffset, kBadOffset - 1}) {
        EXPECT_EQ(store().access()->view(offset).size, 0U) << offset;
    }
}

TEST_P(StoreContract, AViewShowsTheRecordAsItIsNow) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create("abcdefgh");
    EXPECT_EQ(shown(offset), "abcdefgh");
    update(offset, "ABCDEFGH");
    EXPECT_EQ(shown(offset), "ABCDEFGH");
    update(offset, "12345678", false);
    EXPECT_EQ(shown(offset), "12345678");
    append(offset, "9");
    EXPECT_EQ(shown(offset), "123456789");
    update(offset, "abc");
    EXPECT_EQ(shown(offset), "abc");
    store().update(offset, nullptr, 0, true);
    EXPECT_EQ(shown(offset), "");
    store().erase(offset);
    EXPECT_EQ(shown(offset), "");
}

TEST_P(StoreContract, AViewStandsWhileOtherRecordsAreLookedAt) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create("looked at");
    const auto view = store().access()->view(offset);
    for (unsigned int i = 0; i < 300; ++i) {
        const unsigned int other = create(pattern(i * 7, i));
        EXPECT_EQ(shown(other), contents(other));
    }
    EXPECT_EQ(bytesOf(view), "looked at");
    EXPECT_EQ(store().access()->view(offset).data, view.data);
}

TEST_P(StoreContract, ViewsOfRecordsThatWereJustBroughtInStandTogether) {
    LVP_SKIP_WITHOUT_ACCESS();
    for (unsigned int i = 0; i < 200; ++i) create(pattern(i * 7, i));
    LVP_SKIP_UNLESS_REOPENED();
    std::vector<IRecordAccess::tView> views;
    for (unsigned int i = 0; i < 200; ++i) views.push_back(store().access()->view(i));
    for (unsigned int i = 0; i < 200; ++i) EXPECT_TRUE(bytesOf(views[i]) == pattern(i * 7, i)) << i;
}

TEST_P(StoreContract, AViewStandsWhileOtherRecordsAreChanged) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int before = create(pattern(40, 2));
    const unsigned int offset = create(pattern(40));
    const unsigned int after = create(pattern(40, 3));
    const auto view = store().access()->view(offset);
    for (unsigned int size = 1; size < 5000; size += 97) {
        for (const unsigned int other : {before, after}) {
            update(other, pattern(size, 4), size % 2 == 0);
            append(other, pattern(size, 5));
            store().access()->write(other, size - 1, "write", 2, true);
        }
        ASSERT_EQ(bytesOf(view), pattern(40)) << size;
    }
}

TEST_P(StoreContract, AViewStandsWhileOtherRecordsComeAndGo) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int before = create(pattern(40, 2));
    const unsigned int offset = create(pattern(40));
    const auto view = store().access()->view(offset);
    store().erase(before);
    for (unsigned int i = 0; i < 3000; ++i) {
        const unsigned int other = create(pattern(i % 90, i));
        if (i % 3 == 0) store().erase(other);
    }
    EXPECT_EQ(bytesOf(view), pattern(40));
}

TEST_P(StoreContract, ViewsSurviveReopening) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create(pattern(5000));
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_TRUE(shown(offset) == pattern(5000));
}

TEST_P(StoreContract, AccessLastsAsLongAsTheOpenStore) {
    LVP_SKIP_WITHOUT_ACCESS();
    IRecordAccess* const early = store().access();
    const unsigned int offset = create("early");
    for (unsigned int i = 0; i < 1000; ++i) create(pattern(i % 100, i));
    store().flush();
    EXPECT_EQ(bytesOf(early->view(offset)), "early");
    EXPECT_EQ(store().access(), early);
}

}  // namespace lumivard::platform::store_contract
