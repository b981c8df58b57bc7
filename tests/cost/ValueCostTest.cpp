// What is done with a value costs what it touches, however long the value is.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "stores/core/RecordHeap.h"
#include "tests/cost/Cost.h"
#include "tests/support/OddStore.h"

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using core::memory::SharedPtr;
using core::storage::datastore::IDataStore;
using metadata::IPrimitive;
using structure::IContainer;
using structure::IContainerFrontEnd;
using test_support::costOf;
using test_support::CountingStore;
using test_support::tCost;

constexpr unsigned int kNumbers = 1'000'000;
// What writing inside of a record takes, which moves it where the address sanitizer watches.
const int kRequestsOfWriting = stores::RecordHeap::kWatched ? 1 : 0;
constexpr unsigned int kWhole = kNumbers * sizeof(unsigned int);

/// A value of so many numbers.
class LongValue : public testing::Test {
protected:
    void SetUp() override { open(stores::memory()); }

    void open(std::unique_ptr<IDataStore> store) {
        _value = {};
        _top = {};
        _counting.reset();
        _store = std::move(store);
        _counting = std::make_unique<CountingStore>(*_store);
        _top = IContainerFrontEnd::toplevel(_counting.get(), L"top");
        _value = _top->create(L"v", metadata::kUInt32);
        _value->set(_numbers.data(), 0, kNumbers);
    }

    template <class Work>
    tCost cost(Work work) {
        return costOf(*_counting, [&] { work(*_value); });
    }

    IContainer& top() { return *_top; }

private:
    const std::vector<unsigned int> _numbers = std::vector<unsigned int>(kNumbers, 7);
    std::unique_ptr<IDataStore> _store;
    std::unique_ptr<CountingStore> _counting;
    SharedPtr<IContainer> _top;
    SharedPtr<IPrimitive> _value;
};

void readOne(IPrimitive& value) {
    unsigned int number = 0;
    EXPECT_TRUE(value.get(&number, kNumbers - 1, 1));
    EXPECT_EQ(number, 7u);
}

void writeOne(IPrimitive& value) {
    const unsigned int number = 7;
    EXPECT_TRUE(value.set(&number, kNumbers / 2, 1));
}

TEST_F(LongValue, GivesOneOfItsNumbersWithoutACopyOfAll) {
    const tCost read = cost(readOne);
    EXPECT_EQ(read.bytes, 0u);
    EXPECT_LE(read.calls, 2u);
    EXPECT_EQ(read.requests, 0);
}

TEST_F(LongValue, TakesOneNumberAsItsBytesAlone) {
    const tCost written = cost(writeOne);
    EXPECT_EQ(written.bytes, sizeof(unsigned int));
    EXPECT_LE(written.calls, 8u);
    EXPECT_EQ(written.requests, kRequestsOfWriting);
}

TEST_F(LongValue, IsOpenedAndClosedByCountingAlone) {
    const tCost opened = cost([this](IPrimitive&) { EXPECT_TRUE(top().property(L"v")); });
    EXPECT_EQ(opened.bytes, 2 * sizeof(unsigned int));
    EXPECT_LE(opened.calls, 6u);
    EXPECT_LE(opened.requests, 2 + 2 * kRequestsOfWriting);
}

TEST_F(LongValue, ShowsItsFieldsWithoutACopy) {
    EXPECT_EQ(cost([](IPrimitive& value) { value.units(); }).bytes, 0u);
    EXPECT_EQ(cost([](IPrimitive& value) { value.dimension(); }).calls, 0u);
    EXPECT_EQ(cost([](IPrimitive& value) { value.container()->flags(); }).bytes, 0u);
    EXPECT_EQ(cost([](IPrimitive& value) { value.container()->path(); }).bytes, 0u);
}

TEST_F(LongValue, HasItsFlagsWrittenAlone) {
    EXPECT_EQ(cost([](IPrimitive& value) { value.container()->on(8); }).bytes, 1u);
}

// A store that knows the contract and no more is asked for whole records.
TEST_F(LongValue, IsCopiedWhereTheStoreCannotShowIt) {
    open(std::make_unique<test_support::OddStore>());
    EXPECT_GE(cost(readOne).bytes, kWhole);
    EXPECT_GE(cost(writeOne).bytes, 2 * kWhole);
}

}  // namespace
