#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <iostream>

#include "tests/fault/calls/DiskTrial.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;
using lumivard::platform::test_support::effort;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using tCall = lumivard::platform::stores::disk::Call::tKind;
using tAnswer = lumivard::platform::stores::disk::Answer::tKind;
using tSpan = lumivard::platform::stores::disk::FaultyTap::tSpan;
using tKinds = lumivard::platform::stores::disk::FaultyTap::tKinds;

const tKinds kCalls = {tCall::kOpen, tCall::kRead,   tCall::kWrite, tCall::kTruncate, tCall::kAllocate,
                       tCall::kSync, tCall::kRename, tCall::kLink,  tCall::kUnlink};
const tKinds kWrites = {tCall::kWrite};

const tDiskWay kWays[] = {
    {"BrokenOnce", {tAnswer::kFail, EIO}, tSpan::kOnce, kCalls},
    {"BrokenForEver", {tAnswer::kFail, EIO}, tSpan::kForEver, kCalls},
    {"FullOnce", {tAnswer::kFail, ENOSPC}, tSpan::kOnce, kCalls},
    {"FullForEver", {tAnswer::kFail, ENOSPC}, tSpan::kForEver, kCalls},
    {"ShortWriteOnce", {tAnswer::kShorten, 0}, tSpan::kOnce, kWrites},
    {"ShortWriteForEver", {tAnswer::kShorten, 0}, tSpan::kForEver, kWrites},
};

const Ground& files() {
    static const Ground ground(tKind::kFile);
    return ground;
}

const tOperation& named(const char* name) {
    const auto& all = operations();
    return *std::find_if(all.begin(), all.end(),
                         [&](const tOperation& each) { return std::string(each.name) == name; });
}

/// The store that an operation changes; `kPlaces` where it changes none.
tPlace placeOf(const tOperation& operation) {
    const std::wstring touched = operation.touches ? operation.touches : L"";
    if (touched.starts_with(L"main:")) return kMain;
    if (touched.starts_with(L"other:")) return kOther;
    return touched.starts_with(L"empty:") ? kEmpty : kPlaces;
}

/// Each public operation that changes a store, where the disk fails below it: behind another that was flushed, and with
/// its own changes in the flush.
class DiskCalls : public testing::TestWithParam<tDiskWay> {};

TEST_P(DiskCalls, ThatFailKeepTheLastFlushAndStaySound) {
    static const auto stride = static_cast<long long>(effort("LVP_DISK_CALLS_STRIDE", kSanitized ? 40 : 2));
    long long first = 0;
    long long failures = 0;
    for (const tOperation& operation : operations()) {
        const tPlace place = placeOf(operation);
        if (place == kPlaces) continue;
        const tOperation& before = place == kMain ? named("SetTarget") : operation;
        DiskTrial trial(before, operation, files(), place, GetParam());
        EXPECT_THAT(trial.run(first++ % stride, stride), IsEmpty());
        failures += trial.failures();
    }
    std::cout << "failed " << failures << " times" << std::endl;
    EXPECT_GT(failures, 0);
}

INSTANTIATE_TEST_SUITE_P(Of, DiskCalls, testing::ValuesIn(kWays),
                         [](const auto& way) { return std::string(way.param.name); });

/// Operations that break one promise each: a trial notices all of them.
class DiskTrialControl : public testing::Test {
protected:
    static std::vector<std::string> findings(tOperation::tRun run) {
        const tOperation operation{"", "Control", L"main:", run};
        return DiskTrial(named("SetTarget"), operation, files(), kMain, kWays[0]).run(0, 1);
    }
    static std::wstring reset(World& w) { return said(asPrimitive(w.number).reset(5)); }
};

TEST_F(DiskTrialControl, ASoundOperationPasses) {
    EXPECT_THAT(findings(&reset), IsEmpty());
}

TEST_F(DiskTrialControl, NoticesAFailureThatIsHidden) {
    const auto hiding = [](World& w) {
        try {
            return reset(w);
        } catch (...) {
            return said(true);
        }
    };
    EXPECT_THAT(findings(hiding), Contains(HasSubstr("hides the failure")));
}

TEST_F(DiskTrialControl, NoticesAnotherException) {
    const auto translating = [](World& w) {
        try {
            return reset(w);
        } catch (...) {
            throw std::runtime_error("something went wrong");
        }
    };
    EXPECT_THAT(findings(translating), Contains(HasSubstr("throws something went wrong in place of Cannot flush")));
}

TEST_F(DiskTrialControl, NoticesWhatIsNoFlush) {
    const auto halving = [](World& w) {
        reset(w);
        w.main()->flush();
        return said(asPrimitive(w.number).reset(7));
    };
    EXPECT_THAT(findings(halving), Contains(HasSubstr("the file holds neither of two flushes")));
}

TEST_F(DiskTrialControl, NoticesDamage) {
    const auto misleading = [](World& w) {
        const unsigned int last = stored::children(w.main(), 0).back();
        stored::putWord(w.main(), stored::children(w.main(), last).front(), stored::kParent, 0);
        return std::wstring();
    };
    EXPECT_THAT(findings(misleading), Contains(HasSubstr("the checker finds damage: graph.parent-differs")));
}

}  // namespace
