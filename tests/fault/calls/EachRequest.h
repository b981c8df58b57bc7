#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/fault/calls/AllocationFault.h"
#include "tests/support/Campaign.h"

namespace lumivard::platform::test_support::fault {

/// Calls something while memory runs out at the first request, at the second and so on, or in the mean at every
/// `stride`-th of them, chosen at random, until one call does without the one that fails. What `prepare` gives is
/// handed to `act`, in which memory runs out, and to `judge`, in which it does not, together with what `act` threw:
/// nothing but that memory ran out. No block may be left of a try.
template <class Prepare, class Act, class Judge>
void atEachRequest(bool once, long long stride, Prepare prepare, Act act, Judge judge) {
    std::mt19937_64 random(stride == 1 ? 0 : seed());
    const auto step = [&] {
        return 1 + static_cast<long long>(random() % static_cast<unsigned long long>(2 * stride - 1));
    };
    // What is made once in a process is there after a first try.
    for (long long passing = -1, more = 0; more == 0 && !testing::Test::HasFailure();
         passing += passing < 0 ? 1 : step()) {
        SCOPED_TRACE("failing after " + std::to_string(passing));
        const long long blocks = allocations::blocks();
        bool failed = false;
        {
            auto subject = prepare();
            std::exception_ptr thrown;
            allocations::failAfter(passing < 0 ? 0 : passing, !once);
            try {
                act(subject);
            } catch (...) {
                thrown = std::current_exception();
            }
            failed = allocations::goOn() != 0;
            if (thrown) {
                EXPECT_TRUE(failed && saysMemoryRanOut(thrown));
            }
            judge(subject, thrown);
        }
        if (passing < 0) continue;
        more = failed ? 0 : 1;
        EXPECT_EQ(allocations::blocks(), blocks);
    }
}

/// Something that does harm where it fails: for tests of the tests.
template <class Act, class Harm>
auto harming(Act act, Harm harm) {
    return [=](auto& subject) {
        try {
            act(subject);
        } catch (...) {
            allocations::goOn();
            harm(subject);
            throw;
        }
    };
}

/// Something that does not tell that it failed.
template <class Act>
auto hiding(Act act) {
    return [=](auto& subject) {
        try {
            act(subject);
        } catch (...) {
            // nobody learns of it
        }
    };
}

/// Where something fails, takes a block of memory that nobody gives back before this object goes.
class Leaks {
public:
    Leaks() { _blocks.reserve(kMost); }

    template <class Act>
    auto in(Act act) {
        return harming(act, [this](auto&) { _blocks.push_back(std::make_unique<int>(1)); });
    }

private:
    static constexpr std::size_t kMost = 100'000;
    std::vector<std::unique_ptr<int>> _blocks;
};

}  // namespace lumivard::platform::test_support::fault
