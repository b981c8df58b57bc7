#include "lumivard/platform/store_contract/StoreContract.h"

#include <array>
#include <ostream>
#include <set>
#include <vector>

namespace lumivard::platform::store_contract {

using core::storage::datastore::IDataStore;

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

std::string nameOf(const testing::TestParamInfo<Row>& row) {
    return row.param.name;
}

unsigned int StoreContract::create(const std::string& bytes) {
    return store().create(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

void StoreContract::update(unsigned int offset, const std::string& bytes, bool changed) {
    store().update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), changed);
}

void StoreContract::append(unsigned int offset, const std::string& bytes) {
    store().append(offset, bytes.data(), static_cast<unsigned int>(bytes.size()));
}

std::string StoreContract::contents(unsigned int offset) {
    std::string bytes(store().size(offset), '\0');
    store().read(offset, bytes.data(), 0xFFFFFFFF);
    return bytes;
}

bool StoreContract::flushAndReopen() {
    store().flush();
    return subject().reopen();
}

std::string StoreContract::pattern(std::size_t size, unsigned int seed) {
    std::string bytes(size, '\0');
    unsigned int state = seed * 2654435761U;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

unsigned int StoreContract::erasedOffset(IDataStore& store) {
    const unsigned int offset = store.create("gone", 4);
    store.erase(offset);
    return offset;
}

// --- Offsets

TEST_P(StoreContract, FirstRecordOfANewStoreGetsOffsetZero) {
    EXPECT_EQ(create("root"), 0U);
}

TEST_P(StoreContract, FirstRecordGetsOffsetZeroAlsoAfterTheVersionWasSet) {
    store().version(7);
    EXPECT_EQ(create("root"), 0U);
}

TEST_P(StoreContract, FirstRecordGetsOffsetZeroAlsoWhenTheEmptyStoreWasClosedBefore) {
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(create("root"), 0U);
}

TEST_P(StoreContract, EachRecordGetsItsOwnOffsetWhichIsNeverBadOff) {
    std::set<unsigned int> offsets;
    for (int i = 0; i < 2000; ++i) offsets.insert(create("x"));
    EXPECT_EQ(offsets.size(), 2000U);
    EXPECT_EQ(offsets.count(kBadOffset), 0U);
}

TEST_P(StoreContract, ANewRecordNeverGetsTheOffsetOfALivingOne) {
    const unsigned int first = create("first");
    const unsigned int second = create("second");
    store().erase(first);
    const unsigned int third = create("third");
    EXPECT_NE(third, second);
    EXPECT_EQ(contents(second), "second");
    EXPECT_EQ(contents(third), "third");
}

TEST_P(StoreContract, AnOffsetStaysThroughEveryChangeOfItsRecord) {
    const unsigned int offset = create("12345678");
    const unsigned int after = create("after");
    update(offset, pattern(40));
    append(offset, "abcd");
    update(offset, "short");
    update(offset, pattern(5000));
    EXPECT_EQ(contents(offset), pattern(5000));
    EXPECT_EQ(contents(after), "after");
}

TEST_P(StoreContract, TwoStoresKnowNothingOfEachOther) {
    const auto other = another();
    create("mine");
    store().version(3);
    EXPECT_EQ(other->store().extent(), 0U);
    EXPECT_EQ(other->store().version(), 0U);
    EXPECT_EQ(other->store().create("theirs", 6), 0U);
    EXPECT_EQ(contents(0), "mine");
}

// --- extent

TEST_P(StoreContract, ExtentOfANewStoreIsZero) {
    EXPECT_EQ(store().extent(), 0U);
}

TEST_P(StoreContract, ExtentIsNotZeroOnceARecordWasCreated) {
    create("root");
    EXPECT_NE(store().extent(), 0U);
}

TEST_P(StoreContract, ExtentIsNotZeroAfterARecordWithoutBytes) {
    store().create(nullptr, 0);
    EXPECT_NE(store().extent(), 0U);
}

TEST_P(StoreContract, ExtentStaysZeroThroughAllThatCreatesNoRecord) {
    char byte = 0;
    store().version(5);
    store().read(0, &byte, 1);
    store().size(0);
    store().flush();
    delete store().lock();
    EXPECT_EQ(store().extent(), 0U);
}

TEST_P(StoreContract, ExtentIsNotZeroWhenAllRecordsHaveBeenErased) {
    store().erase(create("root"));
    EXPECT_NE(store().extent(), 0U);
}

TEST_P(StoreContract, ExtentOfAnEmptyStoreIsZeroWhenReopened) {
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(store().extent(), 0U);
}

TEST_P(StoreContract, ExtentOfASetUpStoreIsNotZeroWhenReopened) {
    create("root");
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_NE(store().extent(), 0U);
}

// --- create

TEST_P(StoreContract, ARecordKeepsExactlyItsBytesAtEveryLength) {
    const std::array<std::size_t, 17> lengths = {0,   1,   2,    3,    4,    7,    8,     9,      63,
                                                 255, 256, 1000, 4095, 4096, 4097, 70000, 1048576};
    std::vector<unsigned int> offsets;
    for (const std::size_t length : lengths) offsets.push_back(create(pattern(length, 3)));
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        EXPECT_EQ(store().size(offsets[i]), lengths[i]);
        EXPECT_TRUE(contents(offsets[i]) == pattern(lengths[i], 3)) << "length " << lengths[i];
    }
}

TEST_P(StoreContract, CreateCopiesWhatItIsGiven) {
    std::string bytes = "before";
    const unsigned int offset = create(bytes);
    std::fill(bytes.begin(), bytes.end(), '#');
    EXPECT_EQ(contents(offset), "before");
}

TEST_P(StoreContract, CreateTakesBytesAtAnyAddress) {
    const std::string bytes = pattern(64);
    for (unsigned int shift = 0; shift < 8; ++shift) {
        const unsigned int offset = store().create(bytes.data() + shift, 13);
        EXPECT_EQ(contents(offset), bytes.substr(shift, 13));
    }
}

TEST_P(StoreContract, ARecordMayHaveNoBytes) {
    const unsigned int offset = store().create(nullptr, 0);
    EXPECT_NE(offset, kBadOffset);
    EXPECT_EQ(store().size(offset), 0U);
    update(offset, "some");
    EXPECT_EQ(contents(offset), "some");
}

TEST_P(StoreContract, NoneOfTheBytesAtAnAddressGoIntoARecordOfNone) {
    const unsigned int offset = store().create("data", 0);
    store().append(offset, "data", 0);
    EXPECT_EQ(store().size(offset), 0U);
    store().update(offset, "data", 0, true);
    EXPECT_EQ(store().size(offset), 0U);
}

TEST_P(StoreContract, CreateLeavesOtherRecordsAlone) {
    const unsigned int first = create("first");
    for (unsigned int i = 0; i < 3000; ++i) create(pattern(i % 50, i));
    EXPECT_EQ(contents(first), "first");
}

// --- update

TEST_P(StoreContract, UpdateFrom8To40BytesKeepsTheOffsetAndReportsSize40) {
    const unsigned int offset = create("12345678");
    update(offset, pattern(40));
    EXPECT_EQ(store().size(offset), 40U);
    EXPECT_EQ(contents(offset), pattern(40));
}

TEST_P(StoreContract, UpdateToShorterContentsDropsTheOldTail) {
    const unsigned int offset = create(pattern(40));
    update(offset, "short");
    EXPECT_EQ(store().size(offset), 5U);
    std::array<char, 40> buffer;
    buffer.fill('.');
    store().read(offset, buffer.data(), kWhole);
    EXPECT_EQ(std::string(buffer.data(), 8), "short...");
}

TEST_P(StoreContract, UpdateAfterAShorterOneShowsNothingOfTheTailBefore) {
    const unsigned int offset = create("abcdefgh");
    update(offset, "x");
    append(offset, "y");
    EXPECT_EQ(contents(offset), "xy");
}

TEST_P(StoreContract, UpdateToNoBytesLeavesAnEmptyRecord) {
    const unsigned int offset = create("full");
    store().update(offset, nullptr, 0, true);
    EXPECT_EQ(store().size(offset), 0U);
    append(offset, "again");
    EXPECT_EQ(contents(offset), "again");
}

TEST_P(StoreContract, UpdateCopiesWhatItIsGiven) {
    const unsigned int offset = create("first");
    std::string bytes = "second";
    update(offset, bytes);
    std::fill(bytes.begin(), bytes.end(), '#');
    EXPECT_EQ(contents(offset), "second");
}

TEST_P(StoreContract, UpdateLeavesOtherRecordsAlone) {
    const unsigned int before = create("before");
    const unsigned int offset = create("offset");
    const unsigned int after = create("after");
    update(offset, pattern(9000));
    EXPECT_EQ(contents(before), "before");
    EXPECT_EQ(contents(after), "after");
}

TEST_P(StoreContract, BookkeepingUpdatesAreReadBackLikeAnyOther) {
    const unsigned int offset = create("refs=0");
    update(offset, "refs=1", false);
    EXPECT_EQ(contents(offset), "refs=1");
    update(offset, "refs=10", false);
    EXPECT_EQ(contents(offset), "refs=10");
}

TEST_P(StoreContract, BookkeepingUpdatesGoAlongWithContentWhenThatIsFlushed) {
    const unsigned int offset = create("refs=0 a");
    update(offset, "refs=1 a", false);
    update(offset, "refs=1 b", true);
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(contents(offset), "refs=1 b");
}

// --- append

TEST_P(StoreContract, AppendOf4BytesTo4GivesASizeOf8WithTheFirst4Untouched) {
    const unsigned int offset = create("abcd");
    append(offset, "efgh");
    EXPECT_EQ(store().size(offset), 8U);
    EXPECT_EQ(contents(offset), "abcdefgh");
}

TEST_P(StoreContract, AppendToARecordWithoutBytesGivesItItsFirst) {
    const unsigned int offset = store().create(nullptr, 0);
    append(offset, "abcd");
    EXPECT_EQ(contents(offset), "abcd");
}

TEST_P(StoreContract, AppendOfNothingChangesNothing) {
    const unsigned int offset = create("abcd");
    store().append(offset, nullptr, 0);
    EXPECT_EQ(contents(offset), "abcd");
}

TEST_P(StoreContract, ManyAppendsAddUpInTheirOrder) {
    const unsigned int list = create("");
    const unsigned int other = create("other");
    std::string expected;
    for (unsigned int i = 0; i < 5000; ++i) {
        const std::string entry = pattern(4, i);
        append(list, entry);
        expected += entry;
    }
    EXPECT_TRUE(contents(list) == expected);
    EXPECT_EQ(contents(other), "other");
}

TEST_P(StoreContract, AppendCopiesWhatItIsGiven) {
    const unsigned int offset = create("a");
    std::string bytes = "bc";
    append(offset, bytes);
    std::fill(bytes.begin(), bytes.end(), '#');
    EXPECT_EQ(contents(offset), "abc");
}

TEST_P(StoreContract, AppendAfterReopeningGoesToTheEnd) {
    const unsigned int offset = create("abcd");
    LVP_SKIP_UNLESS_REOPENED();
    append(offset, "efgh");
    EXPECT_EQ(contents(offset), "abcdefgh");
}

// --- size and read

TEST_P(StoreContract, ReadCopiesAtMostTheBytesAskedFor) {
    const unsigned int offset = create("abcdefgh");
    std::string buffer = "........";
    store().read(offset, buffer.data(), 3);
    EXPECT_EQ(buffer, "abc.....");
}

TEST_P(StoreContract, ReadOfOneByteGivesTheFirstOnly) {
    const unsigned int offset = create("abcd");
    std::string buffer = "..";
    store().read(offset, buffer.data(), 1);
    EXPECT_EQ(buffer, "a.");
}

TEST_P(StoreContract, ReadOfNoBytesLeavesTheBuffer) {
    const unsigned int offset = create("abcd");
    char byte = '.';
    store().read(offset, &byte, 0);
    EXPECT_EQ(byte, '.');
}

TEST_P(StoreContract, ReadOfTheWholeFillsABufferOfExactlyItsSize) {
    const unsigned int offset = create(pattern(100));
    std::vector<char> buffer(100 + 16, '.');
    store().read(offset, buffer.data(), kWhole);
    EXPECT_EQ(std::string(buffer.data(), 100), pattern(100));
    EXPECT_EQ(std::string(buffer.data() + 100, 16), std::string(16, '.'));
}

TEST_P(StoreContract, ReadOfMoreThanThereIsWritesNothingBeyondTheRecord) {
    const unsigned int offset = create("abcd");
    std::string buffer = "........";
    store().read(offset, buffer.data(), 7);
    EXPECT_EQ(buffer, "abcd....");
}

TEST_P(StoreContract, ReadAtBadOffLeavesTheByteAndRaisesNothing) {
    create("root");
    std::string buffer = "........";
    EXPECT_NO_THROW(store().read(kBadOffset, buffer.data(), 1));
    EXPECT_NO_THROW(store().read(kBadOffset, buffer.data(), kWhole));
    EXPECT_EQ(buffer, "........");
}

TEST_P(StoreContract, ReadAtBadOffDoesNothingInAnEmptyStoreEither) {
    char byte = '.';
    EXPECT_NO_THROW(store().read(kBadOffset, &byte, 1));
    EXPECT_EQ(byte, '.');
}

TEST_P(StoreContract, ReadAtBadOffTakesANullBuffer) {
    create("root");
    EXPECT_NO_THROW(store().read(kBadOffset, nullptr, kWhole));
}

TEST_P(StoreContract, ReadOfARecordWithoutBytesTakesANullBuffer) {
    const unsigned int offset = store().create(nullptr, 0);
    EXPECT_NO_THROW(store().read(offset, nullptr, kWhole));
    EXPECT_NO_THROW(store().read(offset, nullptr, 0));
}

TEST_P(StoreContract, ReadFillsABufferAtAnyAddress) {
    const unsigned int offset = create(pattern(13));
    std::string buffer(32, '.');
    for (unsigned int shift = 0; shift < 8; ++shift) {
        store().read(offset, buffer.data() + shift, 13);
        EXPECT_EQ(buffer.substr(shift, 13), pattern(13));
    }
}

TEST_P(StoreContract, ReadAndSizeChangeNothing) {
    const unsigned int offset = create("abcd");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(store().size(offset), 4U);
        EXPECT_EQ(contents(offset), "abcd");
    }
}

TEST_P(StoreContract, SizeOfAnOffsetThatNamesNoRecordIsZero) {
    EXPECT_EQ(store().size(0), 0U);
    EXPECT_EQ(store().size(kBadOffset), 0U);
    create("root");
    EXPECT_EQ(store().size(kBadOffset), 0U);
    EXPECT_EQ(store().size(kBadOffset - 1), 0U);
    EXPECT_EQ(store().size(5), 0U);
}

TEST_P(StoreContract, ReadOfAnOffsetThatNamesNoRecordDoesNothing) {
    create("root");
    std::string buffer = "........";
    for (const unsigned int offset : {5U, 1000000U, kBadOffset - 1}) {
        EXPECT_NO_THROW(store().read(offset, buffer.data(), kWhole));
    }
    EXPECT_EQ(buffer, "........");
}

// --- erase

TEST_P(StoreContract, AnErasedRecordHasNoSizeAndNoBytes) {
    const unsigned int offset = create("abcd");
    store().erase(offset);
    std::string buffer = "........";
    store().read(offset, buffer.data(), kWhole);
    EXPECT_EQ(store().size(offset), 0U);
    EXPECT_EQ(buffer, "........");
}

TEST_P(StoreContract, EraseLeavesOtherRecordsAlone) {
    const unsigned int before = create("before");
    const unsigned int offset = create("offset");
    const unsigned int after = create("after");
    store().erase(offset);
    EXPECT_EQ(contents(before), "before");
    EXPECT_EQ(contents(after), "after");
}

TEST_P(StoreContract, AnErasedRecordStaysAwayWhenReopened) {
    const unsigned int kept = create("kept");
    const unsigned int offset = create("gone");
    if (!flushAndReopen()) GTEST_SKIP() << "this store does not outlive its closing";
    store().erase(offset);
    ASSERT_TRUE(flushAndReopen());
    EXPECT_EQ(store().size(offset), 0U);
    EXPECT_EQ(contents(kept), "kept");
}

}  // namespace lumivard::platform::store_contract
