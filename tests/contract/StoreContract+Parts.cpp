#include <string>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/StoreContract.h"

// What the examination asks of a store that gives parts of records.

namespace lumivard::platform::store_contract {

using core::storage::datastore::IRecordAccess;

std::string StoreContract::part(unsigned int offset, unsigned int position, unsigned int size) {
    std::string bytes(size, '\0');
    bytes.resize(store().access()->read(offset, position, bytes.data(), size));
    return bytes;
}

TEST_P(StoreContract, PartsOfRecordsAreThoseOfTheWhole) {
    LVP_SKIP_WITHOUT_PARTS();
    IRecordAccess* access = store().access();
    const unsigned int offset = create("abcdefgh");
    std::string buffer = "........";
    EXPECT_EQ(access->read(offset, 2, buffer.data(), 3), 3U);
    EXPECT_EQ(buffer, "cde.....");
    EXPECT_EQ(access->read(offset, 6, buffer.data(), 100), 2U);
    EXPECT_EQ(buffer, "ghe.....");
    EXPECT_EQ(access->read(offset, 0, buffer.data(), kWhole), 8U);
    EXPECT_EQ(buffer, "abcdefgh");
}

TEST_P(StoreContract, PartsBeyondTheEndAreEmpty) {
    LVP_SKIP_WITHOUT_PARTS();
    IRecordAccess* access = store().access();
    const unsigned int offset = create("abcd");
    std::string buffer = "........";
    for (const unsigned int position : {4U, 5U, 0xFFFFFFFFU}) {
        EXPECT_EQ(access->read(offset, position, buffer.data(), 1), 0U) << position;
    }
    EXPECT_EQ(access->read(offset, 0xFFFFFFFF, buffer.data(), kWhole), 0U);
    EXPECT_EQ(access->read(offset, 0, buffer.data(), 0), 0U);
    EXPECT_EQ(buffer, "........");
}

TEST_P(StoreContract, PartsOfNoRecordAreEmpty) {
    LVP_SKIP_WITHOUT_PARTS();
    IRecordAccess* access = store().access();
    std::string buffer = "........";
    EXPECT_EQ(access->read(kBadOffset, 0, buffer.data(), 1), 0U);
    EXPECT_EQ(access->read(erasedOffset(store()), 0, buffer.data(), 1), 0U);
    EXPECT_EQ(access->read(store().create(nullptr, 0), 0, nullptr, 1), 0U);
    EXPECT_EQ(buffer, "........");
}

TEST_P(StoreContract, APartOfEachLengthAtEachPositionIsThatOfTheWhole) {
    LVP_SKIP_WITHOUT_PARTS();
    const std::string whole = pattern(20);
    const unsigned int offset = create(whole);
    for (unsigned int position = 0; position <= 20; ++position) {
        for (unsigned int size = 0; size <= 22; ++size) {
            EXPECT_EQ(part(offset, position, size), whole.substr(position, size)) << position << ", " << size;
        }
    }
}

TEST_P(StoreContract, PartsAreThoseOfTheRecordAsItIsNow) {
    LVP_SKIP_WITHOUT_PARTS();
    const unsigned int offset = create("abcdefgh");
    EXPECT_EQ(part(offset, 2, 4), "cdef");
    update(offset, "ABCDEFGH");
    EXPECT_EQ(part(offset, 2, 4), "CDEF");
    update(offset, "12345678", false);
    EXPECT_EQ(part(offset, 2, 4), "3456");
    append(offset, "9");
    EXPECT_EQ(part(offset, 6, 4), "789");
    update(offset, "abc");
    EXPECT_EQ(part(offset, 2, 4), "c");
    store().erase(offset);
    EXPECT_EQ(part(offset, 0, 4), "");
}

TEST_P(StoreContract, AccessLastsAsLongAsTheOpenStore) {
    LVP_SKIP_WITHOUT_PARTS();
    IRecordAccess* const early = store().access();
    const unsigned int offset = create("early");
    for (unsigned int i = 0; i < 1000; ++i) create(pattern(i % 100, i));
    store().flush();
    char byte = '.';
    EXPECT_EQ(early->read(offset, 4, &byte, 1), 1U);
    EXPECT_EQ(byte, 'y');
}

TEST_P(StoreContract, PartsSurviveReopening) {
    LVP_SKIP_WITHOUT_PARTS();
    const unsigned int offset = create(pattern(5000));
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(part(offset, 4990, 100), pattern(5000).substr(4990));
}

}  // namespace lumivard::platform::store_contract
