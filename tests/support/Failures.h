#pragma once

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <vector>

namespace lumivard::platform::test_support {

/// What a piece of a test finds wrong, an exception that comes out of it included; none of it counts against the test
/// that asks: for tests of tests. Only what is found on the calling thread.
template <class Work>
std::vector<std::string> failuresOf(Work work) {
    testing::TestPartResultArray results;
    std::vector<std::string> failures;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        try {
            work();
        } catch (const std::exception& thrown) {
            failures.push_back(thrown.what());
        }
    }
    for (int i = 0; i < results.size(); ++i) {
        if (results.GetTestPartResult(i).failed()) failures.push_back(results.GetTestPartResult(i).message());
    }
    return failures;
}

}  // namespace lumivard::platform::test_support
