#pragma once

#include <cstddef>

namespace lumivard::platform::fuzz {

/// Counts the bytes that are allocated and not freed, in this process, by whatever allocates: operator new, malloc, the
/// libraries. What an allocator keeps for itself is not counted, so the figure is the same in every build, sanitizers
/// included.
///
/// Nothing is counted before `start`. Threads: any may allocate; the rest is for one.
class AllocationMeter {
public:
    /// Begins to count from here on, and ends the process with the status `kOver` as soon as more than `most` bytes are
    /// in use, before they are touched.
    static void start(std::size_t most);

    /// The most that was in use since `start`.
    static std::size_t peak();

    static constexpr int kOver = 77;
};

}  // namespace lumivard::platform::fuzz
