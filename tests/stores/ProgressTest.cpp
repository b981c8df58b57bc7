// How far long work with a file is, and its end before its time.
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "tests/stores/Records.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;
using tSteps = std::vector<std::pair<unsigned long long, unsigned long long>>;

/// What may be asked of a file that takes long.
struct tWork {
    const char* name;
    std::function<void(const fs::path&, const FileOptions&)> todo;
    const char* attempt;  // in the message
};

const tWork kWorks[] = {
    {"Opening",
     [](const fs::path& path, FileOptions options) { options.verify = true, file(path, tMode::kRead, options); },
     "open"},
    {"OpeningToWrite",
     [](const fs::path& path, FileOptions options) { options.verify = true, file(path, tMode::kWrite, options); },
     "open"},
    {"Verify", [](const fs::path& path, const FileOptions& options) { verify(path, false, options); }, "examine"},
    {"VerifyWithValues", [](const fs::path& path, const FileOptions& options) { verify(path, true, options); },
     "examine"},
    {"Compact", [](const fs::path& path, const FileOptions& options) { compact(path, options); }, "compact"},
};

class Progress : public testing::TestWithParam<tWork> {
protected:
    static constexpr unsigned int kRecords = 1000;

    Progress() {
        const auto store = file(path(), tMode::kWrite);
        for (unsigned int record = 0; record < kRecords; ++record) create(*store, std::string(500, 'r'));
        create(*store, std::string(std::size_t{5} << 20, 'l'));
    }

    fs::path path() const { return folder / "a.lvp"; }

    TemporaryFolder folder;
};

TEST_P(Progress, IsToldStepByStepOfATotalThatItDoesNotPass) {
    tSteps steps;
    GetParam().todo(path(), {.progress = [&](unsigned long long done, unsigned long long total) {
                        steps.emplace_back(done, total);
                        return true;
                    }});
    ASSERT_GT(steps.size(), 100U);
    for (std::size_t step = 1; step < steps.size(); ++step) {
        const bool begins = steps[step].second != steps[step - 1].second;  // of pages to records
        EXPECT_TRUE(begins || steps[step].first >= steps[step - 1].first) << step;
        EXPECT_LE(steps[step].first, steps[step].second);
    }
    EXPECT_GT(steps.back().first, steps.back().second - steps.back().second / 10);
}

TEST_P(Progress, EndsTheWorkAtAnyStepAndLeavesTheFileAsItWas) {
    const auto before = fs::file_size(path());
    for (const int last : {1, 2, 100}) {
        int step = 0;
        const std::string message = messageOf<StoreError>([&] {
            GetParam().todo(path(),
                            {.progress = [&](unsigned long long, unsigned long long) { return ++step < last; }});
        });
        EXPECT_EQ(message, std::string("Cannot ") + GetParam().attempt + " the store \"" + path().string() +
                               "\": it was told to stop.");
        EXPECT_EQ(step, last);
    }
    EXPECT_EQ(fs::file_size(path()), before);
    const auto store = file(path(), tMode::kWrite, {.verify = true});
    EXPECT_EQ(contents(*store, kRecords), std::string(std::size_t{5} << 20, 'l'));
}

TEST_P(Progress, LetsThroughWhatItThrows) {
    struct tMine {};
    EXPECT_THROW(
        GetParam().todo(path(), {.progress = [](unsigned long long, unsigned long long) -> bool { throw tMine(); }}),
        tMine);
    EXPECT_NO_THROW(file(path(), tMode::kWrite)) << "nothing holds the file";
}

INSTANTIATE_TEST_SUITE_P(Of, Progress, testing::ValuesIn(kWorks),
                         [](const testing::TestParamInfo<tWork>& work) { return std::string(work.param.name); });

TEST(ProgressOfCompact, ComesToTheLastRecord) {
    const TemporaryFolder folder;
    {
        const auto store = file(folder / "a.lvp", tMode::kWrite);
        for (int record = 0; record < 10; ++record) create(*store, "r");
    }
    std::pair<unsigned long long, unsigned long long> last;
    compact(folder / "a.lvp", {.progress = [&](unsigned long long done, unsigned long long total) {
                last = {done, total};
                return true;
            }});
    EXPECT_EQ(last, std::pair(10ULL, 10ULL));
}

// A value of many pages is one step, but the reading of it can be ended.
TEST(ProgressOfVerify, EndsTheReadingOfALongValue) {
    const TemporaryFolder folder;
    {
        const auto store = file(folder / "a.lvp", tMode::kWrite);
        create(*store, std::string(std::size_t{5} << 20, 'l'));
    }
    const auto steps = [&](bool values) {
        int count = 0;
        verify(folder / "a.lvp", values,
               {.progress = [&](unsigned long long, unsigned long long) { return ++count != 0; }});
        return count;
    };
    EXPECT_GE(steps(true), steps(false) + 5);
}

}  // namespace
}  // namespace lumivard::platform::stores
