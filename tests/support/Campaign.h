#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

namespace lumivard::platform::test_support {

/// The number in the environment variable `name`, or `otherwise` where it is not set.
inline std::uint64_t fromEnvironment(const char* name, std::uint64_t otherwise) {
    const char* const text = std::getenv(name);
    return text && *text ? std::stoull(text) : otherwise;
}

/// How often a campaign tries: `usual` times with every run of the tests, as often as the environment variable `name`
/// says in a long one. Printed, so that a log tells what its result is worth.
inline std::uint64_t effort(const char* name, std::uint64_t usual) {
    const std::uint64_t times = fromEnvironment(name, usual);
    std::cout << name << '=' << times << std::endl;
    return times;
}

/// The seed of a random test: `LVP_SEED`, or another one each time. Printed: with it the run can be repeated.
inline std::uint64_t seed() {
    const std::uint64_t chosen = fromEnvironment("LVP_SEED", std::random_device()());
    std::cout << "LVP_SEED=" << chosen << std::endl;
    return chosen;
}

}  // namespace lumivard::platform::test_support
