#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>

namespace lumivard::platform::test_support {

/// A thirty-second of what a thread has as a rule, in bytes.
inline constexpr std::size_t kSmallStack = 256 * 1024;

/// Runs something to its end on a thread with a small stack.
inline void onASmallStack(std::function<void()> run, std::size_t stack = kSmallStack) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, stack), 0);
    pthread_t thread;
    const auto call = [](void* function) -> void* {
        (*static_cast<std::function<void()>*>(function))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, call, &run), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace lumivard::platform::test_support
