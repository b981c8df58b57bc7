#pragma once

#include <chrono>
#include <filesystem>

namespace lvp::bench {

/// The one way in which time and memory are taken.
struct Measure {
    double seconds = 0;  // of the steady clock
    long peak = 0;       // the most memory that the process ever had resident until the end, in bytes (VmHWM)
    long grown = 0;      // by how much its resident memory grew meanwhile, in bytes
};

/// The memory that the process has resident now, and the most that it ever had, in bytes.
struct Resident {
    long now;
    long peak;
};
Resident resident();

class Stopwatch {
public:
    double seconds() const { return std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count(); }

private:
    std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
};

/// Measures what `work` does once.
template <class Work>
Measure measured(Work work) {
    Measure measure;
    const long before = resident().now;
    const Stopwatch watch;
    work();
    measure.seconds = watch.seconds();
    const Resident after = resident();
    measure.peak = after.peak;
    measure.grown = after.now - before;
    return measure;
}

/// How long a loop may go on that might take minutes, in seconds.
constexpr double kPatience = 2.0;

/// Calls `step` with 0, 1, 2, ... up to `count`, but stops when `kPatience` is over; returns how many were done. The
/// clock is read every `stride` steps: 1 where a step is long, more where reading it would count.
template <class Step>
unsigned int repeat(unsigned int count, unsigned int stride, Step step) {
    const Stopwatch watch;
    for (unsigned int i = 0; i < count; ++i) {
        if (i % stride == 0 && i != 0 && watch.seconds() > kPatience) return i;
        step(i);
    }
    return count;
}

/// The length of a file, 0 where there is none.
std::uintmax_t bytesOf(const std::filesystem::path& file);

/// Makes what was written into a file durable (fsync).
void makeDurable(const std::filesystem::path& file);

/// Puts a durable copy of a file in the place of another one, so that what is changed in it is on the disk before.
void copyFile(const std::filesystem::path& from, const std::filesystem::path& to);

/// Makes the compiler believe that the bytes at `data` are looked at, so that copying them is not left out.
inline void keep(const void* data) {
    asm volatile("" : : "r"(data) : "memory");
}

}  // namespace lvp::bench
