#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <vector>

#include "tests/fault/calls/AllocationFault.h"
#include "tests/fault/calls/Trial.h"

namespace {

using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::size_t kLong = 1000;

/// The checks of the tests beside this one can fail.
class AllocationControl : public testing::Test {
protected:
    static std::vector<std::string> findings(const tOperation& operation) {
        const Ground ground(tKind::kMemory);
        const Expected expected(operation, ground);
        AllocationFault fault(true);
        return Trial(operation, ground, expected, kMain, fault).run(1);
    }
};

TEST_F(AllocationControl, ARequestCountsOnce) {
    allocations::failAfter(1000, false);
    const long long before = allocations::blocks();
    auto text = std::make_unique<std::string>(kLong, 'x');
    EXPECT_EQ(allocations::requests(), 2);
    EXPECT_EQ(allocations::blocks() - before, 2);
    text.reset();
    EXPECT_EQ(allocations::requests(), 2);
    EXPECT_EQ(allocations::blocks(), before);
    EXPECT_EQ(allocations::goOn(), 0);
}

TEST_F(AllocationControl, OneRequestFailsOrAllFromThereOn) {
    std::string text;
    for (const bool forEver : {false, true}) {
        allocations::failAfter(1, forEver);
        EXPECT_NO_THROW(text = std::string(kLong, 'x'));
        EXPECT_THROW(text = std::string(kLong, 'x'), std::bad_alloc);
        if (forEver) {
            EXPECT_THROW(text = std::string(kLong, 'x'), std::bad_alloc);
        } else {
            EXPECT_NO_THROW(text = std::string(kLong, 'x'));
        }
        EXPECT_GT(allocations::goOn(), 0);
        EXPECT_NO_THROW(text = std::string(kLong, 'x'));
    }
}

TEST_F(AllocationControl, NoticesALeak) {
    static std::vector<std::unique_ptr<int>> leaked;
    leaked.reserve(kLong);
    const auto leaking = [](World& w) {
        try {
            return text(w.group->path());
        } catch (...) {
            allocations::goOn();
            leaked.push_back(std::make_unique<int>(1));
            throw std::bad_alloc();
        }
    };
    EXPECT_THAT(findings({"", "Leaking", nullptr, leaking}), Contains(HasSubstr("blocks of memory are left")));
    leaked.clear();
}

TEST_F(AllocationControl, NoticesATextThatIsCutShort) {
    const auto cutting = [](World& w) {
        try {
            return text(w.group->path());
        } catch (const std::bad_alloc&) {
            return std::wstring();
        }
    };
    EXPECT_THAT(findings({"", "Cutting", nullptr, cutting}), Contains(HasSubstr("hides the failure")));
}

std::size_t promises() noexcept {
    return std::string(kLong, 'x').size();
}

/// Whatever lets `std::bad_alloc` out where nothing may come out ends the test program.
TEST_F(AllocationControl, NoticesAFunctionThatCannotKeepItsPromise) {
    EXPECT_EXIT(
        {
            allocations::failAfter(0, true);
            promises();
            ::_exit(0);
        },
        testing::KilledBySignal(SIGABRT), "");
}

}  // namespace
