#pragma once

#include <cstdint>

namespace lumivard::platform::test_support {

/// Whether a sanitizer is at work that watches memory or threads: everything takes some ten times as long then, and
/// memory is not limited as it is otherwise.
inline constexpr bool kSanitized =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    true;
#else
    false;
#endif
#else
    false;
#endif

/// How often a campaign tries with every run of the tests, or a tenth of that under a sanitizer.
constexpr std::uint64_t usually(std::uint64_t times) {
    return kSanitized ? times / 10 : times;
}

}  // namespace lumivard::platform::test_support
