#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <utility>

#include "tests/fault/calls/AllocationFault.h"
#include "tests/fault/calls/Trial.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"

namespace {

using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;
using lumivard::platform::test_support::effort;
using testing::IsEmpty;

/// Each public operation, where the first request for memory fails, the second, and so on.
class Allocations : public testing::TestWithParam<const tOperation*> {
protected:
    void failAtEach(const Ground& ground, bool once, long long stride) {
        const Expected expected(*GetParam(), ground);
        AllocationFault fault(once);
        Trial trial(*GetParam(), ground, expected, kMain, fault);
        EXPECT_THAT(trial.run(stride), IsEmpty());
        _failures += trial.failures();
    }

    /// Behind the first ten requests every third is tried, unless the environment says otherwise; in memory each, where
    /// only one fails. A sanitizer takes few of them.
    static long long stride() {
        static const auto told = static_cast<long long>(effort("LVP_ALLOCATIONS_STRIDE", kSanitized ? 100 : 3));
        return told;
    }
    static constexpr long long kFirstStride = kSanitized ? 40 : 1;

    ~Allocations() override { RecordProperty("failures", std::to_string(_failures)); }

private:
    long long _failures = 0;
};

TEST_P(Allocations, ThatFailAreAnExceptionAndLeaveAllSound) {
    static const Ground ground(tKind::kMemory);
    failAtEach(ground, true, kFirstStride);
    failAtEach(ground, false, stride());
}

TEST_P(Allocations, ThatFailOverAFileAreAnExceptionAndLeaveAllSound) {
    static const Ground ground(tKind::kFile);
    failAtEach(ground, true, stride());
}

std::vector<const tOperation*> all() {
    std::vector<const tOperation*> all;
    for (const tOperation& operation : operations()) all.push_back(&operation);
    return all;
}

INSTANTIATE_TEST_SUITE_P(Of, Allocations, testing::ValuesIn(all()),
                         [](const auto& which) { return std::string(which.param->name); });

}  // namespace
