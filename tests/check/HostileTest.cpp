// Records of any bytes: the checker ends, and so does its repair.
#include <gtest/gtest.h>

#include <random>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/stores.h"
#include "tests/check/RepairFault.h"
#include "tests/check/Walks.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
namespace check = lumivard::platform::data::check;
namespace stores = lumivard::platform::stores;

/// A record of a random kind whose fields are small numbers, so that they often name something.
std::string record(std::mt19937_64& random, unsigned int records) {
    std::string bytes(random() % 80, '\0');
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        bytes[at] = random() % 3 == 0 ? static_cast<char>(random() % records) : '\0';
        if (random() % 40 == 0) bytes[at] = static_cast<char>(random());
    }
    if (!bytes.empty()) bytes[0] = static_cast<char>(random() % 7);
    // Fields that are none are all ones.
    for (std::size_t at = 1; at + 4 < bytes.size(); at += 4) {
        if (random() % 4 == 0) bytes.replace(at, 4, 4, '\xFF');
    }
    return bytes;
}

TEST(HostileStore, IsExaminedAndRepairedToAnEnd) {
    std::mt19937_64 random(seed());
    for (std::uint64_t i = effort("LVP_HOSTILE", usually(1500)); i > 0; --i) {
        const auto store = stores::memory();
        const auto records = static_cast<unsigned int>(random() % 60 + 1);
        for (unsigned int k = 0; k < records; ++k) {
            const std::string bytes = record(random, records);
            store->create(bytes.data(), static_cast<unsigned int>(bytes.size()));
        }
        ASSERT_EQ(faultOfRepair(*store, {.whole = true, .reclaim = i % 2 == 0, .keep = 100'000}), "") << i;
        std::set<std::wstring> lost;
        walks::askEverything(*store, lost, 2000);
    }
}

TEST(HostileStore, MayListOneItemTenThousandTimes) {
    const auto store = stores::memory();
    const std::string root = std::string(1, '\0') + std::string(8, '\0') + std::string(4, '\xFF') + '\0';
    store->create((root + std::string("\1\0\0\0\4\0\0\0\0\0\0\0\0\0", 14)).data(), 28);
    std::string list("\3\0\0\0", 4);
    for (int i = 0; i < 10'000; ++i) list += std::string("\2\0\0\0", 4);
    store->create(list.data(), static_cast<unsigned int>(list.size()));
    const std::string item = "\4" + std::string(31, '\0');
    store->create(item.data(), 32);
    const auto plan = check::plan(*store);
    EXPECT_EQ(plan.before.byCode.at("graph.listed-twice"), 9999u);
    EXPECT_TRUE(check::apply(*store, plan));
    EXPECT_EQ(stored::children(store.get(), 0), std::vector{2u});
}

}  // namespace
