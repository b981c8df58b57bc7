#pragma once

#include <cstdint>

namespace lumivard::platform::stores::disk {

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

/// How often a campaign tries with every run of the tests. Deaths and power cuts need no sanitizer, under which a
/// process takes ten times as long: a tenth is tried there.
constexpr std::uint64_t usually(std::uint64_t times) {
    return kSanitized ? times / 10 : times;
}

}  // namespace lumivard::platform::stores::disk
