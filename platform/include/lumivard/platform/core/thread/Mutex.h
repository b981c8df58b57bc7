#pragma once

#include <mutex>

/// Exclusion between threads.
namespace lumivard::platform::core::thread {

/// A plain mutual exclusion; not re-entrant.
class Mutex {
public:
    /// Holds a mutex from its making to its destruction.
    class ScopedLock {
    public:
        /// Waits until no other thread holds `mutex`, which outlives this object, and takes it.
        explicit ScopedLock(Mutex& mutex) : _lock(mutex._mutex) {}
        ~ScopedLock() = default;
        ScopedLock(const ScopedLock&) = delete;
        ScopedLock& operator=(const ScopedLock&) = delete;

    private:
        std::lock_guard<std::mutex> _lock;
    };

    Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

private:
    std::mutex _mutex;
};

}  // namespace lumivard::platform::core::thread
