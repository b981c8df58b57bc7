// In which order records come into a file and out of it.
#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/stores/FileFixture.h"
#include "tests/stores/Records.h"

namespace lumivard::platform::stores {
namespace {

class FileOrder : public FileFixture {
protected:
    /// Closes the store, has its file examined in whole, and compares it with what it should hold.
    void expectFile(const std::map<unsigned int, std::string>& records, unsigned int extent) {
        close();
        const FileReport report = verify(path(), true);
        EXPECT_TRUE(report.faults.empty()) << report.faults.front().text;
        auto& store = open(tMode::kRead);
        EXPECT_EQ(store.extent(), extent);
        for (unsigned int offset = 0; offset < extent; ++offset) {
            const auto record = records.find(offset);
            ASSERT_EQ(contents(store, offset), record == records.end() ? "" : record->second) << offset;
        }
    }

    static std::string numbered(unsigned int number) { return "record " + std::to_string(number); }
};

// A page of 4,096 bytes takes 27 records of 120 bytes, with what the file adds to them.
constexpr unsigned int kMany = 27000;
constexpr std::uintmax_t kFull = kMany / 27 * 4096;

TEST_F(FileOrder, NewRecordsFillTheirPages) {
    auto& store = open();
    for (unsigned int i = 0; i < kMany; ++i) create(store, std::string(120, 'x'));
    store.flush();
    EXPECT_LT(std::filesystem::file_size(path()), kFull * 11 / 10);
}

TEST_F(FileOrder, NewRecordsOfManyFlushesFillTheirPagesToo) {
    auto& store = open();
    for (unsigned int i = 0; i < kMany; ++i) {
        create(store, std::string(120, 'x'));
        if (i % 1000 == 0) store.flush();
    }
    store.flush();
    EXPECT_LT(std::filesystem::file_size(path()), kFull * 12 / 10);
}

TEST_F(FileOrder, OneFlushTakesNewChangedAndErasedRecords) {
    std::map<unsigned int, std::string> records;
    auto& store = open();
    for (unsigned int i = 0; i < 500; ++i) create(store, records[i] = numbered(i));
    store.flush();
    for (unsigned int i = 0; i < 500; i += 3) update(store, i, records[i] = numbered(i) + std::string(i % 90, '+'));
    for (unsigned int i = 1; i < 500; i += 7) {
        store.erase(i);
        records.erase(i);
    }
    for (unsigned int i = 500; i < 900; ++i) create(store, records[i] = numbered(i));
    for (unsigned int i = 499; i < 900; i += 5) {
        store.erase(i);
        records.erase(i);
    }
    store.flush();
    expectFile(records, 900);
}

TEST_F(FileOrder, RecordsThatWereErasedBeforeTheirFirstFlushLeaveNothing) {
    auto& store = open();
    for (unsigned int i = 0; i < 100; ++i) create(store, "x");
    for (unsigned int i = 0; i < 100; ++i) store.erase(i);
    store.flush();
    expectFile({}, 100);
    auto& again = open();
    create(again, "after them");
    expectFile({{100, "after them"}}, 101);
}

TEST_F(FileOrder, TheLastRecordsMayBeErasedAndOthersComeBehindThem) {
    std::map<unsigned int, std::string> records;
    auto& store = open();
    for (unsigned int i = 0; i < 2000; ++i) create(store, records[i] = numbered(i));
    store.flush();
    for (unsigned int i = 1000; i < 2000; ++i) {
        store.erase(i);
        records.erase(i);
    }
    for (unsigned int i = 2000; i < 3000; ++i) create(store, records[i] = numbered(i));
    store.flush();
    for (unsigned int i = 0; i < 3000; ++i) {
        if (records.erase(i) != 0) store.erase(i);
    }
    store.flush();
    create(store, records[3000] = numbered(3000));
    expectFile(records, 3001);
}

TEST_F(FileOrder, ABatchThatOutgrowsTheMapIsWrittenWholeInAnotherTry) {
    std::map<unsigned int, std::string> records;
    auto& store = openWithMap(32768);
    for (unsigned int round = 0; round < 5; ++round) {
        for (unsigned int i = 0; i < 1000; ++i) {
            const auto offset = static_cast<unsigned int>(store.extent());
            create(store, records[offset] = numbered(offset) + std::string(100, '.'));
        }
        for (unsigned int i = round; i < records.size(); i += 11) update(store, i, records[i] = numbered(i) + "!");
        store.flush();
    }
    expectFile(records, 5000);
}

TEST_F(FileOrder, RecordsComeInInAnyOrder) {
    constexpr unsigned int kCount = 3000;
    auto& store = open();
    for (unsigned int i = 0; i < kCount; ++i) create(store, numbered(i));
    for (unsigned int i = 0; i < kCount; i += 10) store.erase(i);
    std::vector<unsigned int> order(kCount);
    std::iota(order.begin(), order.end(), 0);
    const auto expectAll = [&] {
        auto& reader = open(tMode::kRead);
        for (const unsigned int i : order) ASSERT_EQ(contents(reader, i), i % 10 == 0 ? "" : numbered(i)) << i;
    };
    expectAll();
    std::reverse(order.begin(), order.end());
    expectAll();
    std::shuffle(order.begin(), order.end(), std::mt19937(3));
    expectAll();
}

TEST_F(FileOrder, AWalkGoesOnWhereItWasWhenAFlushCameBetween) {
    auto& store = open();
    for (unsigned int i = 0; i < 1000; ++i) create(store, numbered(i));
    auto& again = open();
    for (unsigned int i = 0; i < 1000; ++i) {
        ASSERT_EQ(contents(again, i), numbered(i));
        if (i % 50 != 0) continue;
        update(again, i, "changed");
        create(again, "new");
        again.flush();
    }
    for (unsigned int i = 0; i < 1000; i += 50) ASSERT_EQ(contents(again, i), "changed");
}

}  // namespace
}  // namespace lumivard::platform::stores
