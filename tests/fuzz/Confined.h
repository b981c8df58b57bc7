#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace lumivard::platform::fuzz {

/// What became of work in a process of its own.
struct Outcome {
    enum tEnd {
        kEnded,       ///< it came to its end within the bounds
        kOverMemory,  ///< it asked for more memory than it may have
        kOverTime,    ///< it took more processor time than it may take
        kDied         ///< it was ended by something else
    };
    tEnd end = kDied;
    std::size_t peak = 0;  ///< the most bytes that it had at one time; where it ended
    std::string words;     ///< what the work returned; where it ended
};

/// Runs work in a child process, which the kernel ends when it has used more than `seconds` of processor time, and
/// which ends itself before it has more than `memory` bytes above what it began with (`AllocationMeter`). Make it while
/// no other thread is running.
Outcome confined(const std::function<std::string()>& work, std::size_t memory, unsigned int seconds);

}  // namespace lumivard::platform::fuzz
