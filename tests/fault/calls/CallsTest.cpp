#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <utility>

#include "tests/fault/calls/CallFault.h"
#include "tests/fault/calls/Trial.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"

namespace {

using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::test_support::effort;
using testing::IsEmpty;

struct tCase {
    const tOperation* operation;
    tKind kind;
};

void PrintTo(const tCase& which, std::ostream* out) {
    *out << which.operation->member;
}

std::vector<tCase> cases() {
    std::vector<tCase> all;
    for (const tKind kind : {tKind::kMemory, tKind::kFile, tKind::kOdd}) {
        for (const tOperation& operation : operations()) all.push_back({&operation, kind});
    }
    return all;
}

const Ground& groundOf(tKind kind) {
    static const Ground memory(tKind::kMemory);
    static const Ground file(tKind::kFile);
    static const Ground odd(tKind::kOdd);
    return kind == tKind::kMemory ? memory : kind == tKind::kFile ? file : odd;
}

const Expected& expectedOf(const tCase& which) {
    static std::map<std::pair<const tOperation*, tKind>, Expected> known;
    const auto place = known.find({which.operation, which.kind});
    if (place != known.end()) return place->second;
    const Expected expected(*which.operation, groundOf(which.kind));
    return known.emplace(std::pair(which.operation, which.kind), expected).first->second;
}

/// Each public operation, on stores of which one fails at its first call, its second, and so on.
class Calls : public testing::TestWithParam<tCase> {
protected:
    void failAtEach(FailingStore::tCalls kinds, FailingStore::tTimes times, FailingStore::tAccess access,
                    long long stride) {
        for (unsigned int place = 0; place < kPlaces; ++place) {
            CallFault fault(kinds, times, access);
            const tCase& which = GetParam();
            Trial trial(*which.operation, groundOf(which.kind), expectedOf(which), tPlace(place), fault);
            EXPECT_THAT(trial.run(stride), IsEmpty());
            _failures += trial.failures();
        }
    }

    long long failures() const { return _failures; }

private:
    long long _failures = 0;
};

/// One call that fails is tried at each place in memory. For the rest every third place behind the first ten is,
/// unless the environment says otherwise. A sanitizer takes few of them.
TEST_P(Calls, PassOnWhatTheStoreThrowsAndStaySound) {
    static const auto stride = static_cast<long long>(effort("LVP_CALLS_STRIDE", kSanitized ? 150 : 3));
    constexpr long long first = kSanitized ? 75 : 1;
    const bool inMemory = GetParam().kind == tKind::kMemory;
    using tTimes = FailingStore::tTimes;
    using tAccess = FailingStore::tAccess;
    // That one change fails and all others pass is among the cases of the first.
    failAtEach(FailingStore::kAllCalls, tTimes::kOnce, tAccess::kHidden, inMemory ? first : stride);
    failAtEach(FailingStore::kAllCalls, tTimes::kForEver, tAccess::kHidden, stride);
    failAtEach(FailingStore::kChanges, tTimes::kForEver, tAccess::kHidden, stride);
    if (inMemory) failAtEach(FailingStore::kView, tTimes::kOnce, tAccess::kOffered, first);
    RecordProperty("failures", std::to_string(failures()));
}

INSTANTIATE_TEST_SUITE_P(Of, Calls, testing::ValuesIn(cases()), [](const auto& which) {
    return std::string(which.param.operation->name) + "On" + nameOf(which.param.kind);
});

}  // namespace
