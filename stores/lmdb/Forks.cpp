#include "stores/lmdb/Forks.h"

#include <pthread.h>

#include <atomic>
#include <new>

namespace lumivard::platform::stores::forks {
namespace {

std::atomic<unsigned long> forksSoFar{0};

bool registerHandler() {
    if (::pthread_atfork(nullptr, nullptr, [] { forksSoFar.fetch_add(1, std::memory_order_relaxed); }) != 0) {
        throw std::bad_alloc();
    }
    return true;
}

}  // namespace

void watch() {
    [[maybe_unused]] static const bool watched = registerHandler();
}

unsigned long count() noexcept {
    return forksSoFar.load(std::memory_order_relaxed);
}

}  // namespace lumivard::platform::stores::forks
