#include "tests/fuzz/Confined.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <stdexcept>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/fuzz/AllocationMeter.h"

namespace lumivard::platform::fuzz {

namespace {

void limitTo(decltype(RLIMIT_CPU) resource, rlim_t most) {
    const rlimit bound{most, most};
    ::setrlimit(resource, &bound);
}

/// The child's whole life. What it has to tell is the peak and the words.
[[noreturn]] void run(const std::function<std::string()>& work, std::size_t memory, unsigned int seconds, int out) {
    limitTo(RLIMIT_CORE, 0);
    limitTo(RLIMIT_CPU, seconds);
    AllocationMeter::start(memory);
    std::string words;
    try {
        words = work();
    } catch (const std::exception& thrown) {
        words = std::string("threw: ") + thrown.what();
    }
    const std::size_t peak = AllocationMeter::peak();
    const bool told = ::write(out, &peak, sizeof(peak)) == sizeof(peak) &&
                      ::write(out, words.data(), words.size()) == static_cast<ssize_t>(words.size());
    ::_exit(told ? 0 : 1);
}

std::string readAll(int in) {
    std::string all;
    char buffer[4096];
    for (;;) {
        const ssize_t count = ::read(in, buffer, sizeof(buffer));
        if (count > 0) all.append(buffer, static_cast<std::size_t>(count));
        if (count == 0 || (count < 0 && errno != EINTR)) return all;
    }
}

Outcome::tEnd endOf(int status) {
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return Outcome::kEnded;
    if (WIFEXITED(status) && WEXITSTATUS(status) == AllocationMeter::kOver) return Outcome::kOverMemory;
    // Where the hard limit is the soft one the kernel kills at once.
    if (WIFSIGNALED(status) && (WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGKILL)) return Outcome::kOverTime;
    return Outcome::kDied;
}

}  // namespace

Outcome confined(const std::function<std::string()>& work, std::size_t memory, unsigned int seconds) {
    int line[2];
    if (::pipe(line) != 0) throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("no child process");
    if (child == 0) run(work, memory, seconds, line[1]);
    ::close(line[1]);
    const std::string told = readAll(line[0]);
    ::close(line[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    Outcome outcome;
    outcome.end = endOf(status);
    if (told.size() < sizeof(outcome.peak)) return outcome;
    std::memcpy(&outcome.peak, told.data(), sizeof(outcome.peak));
    outcome.words = told.substr(sizeof(outcome.peak));
    return outcome;
}

}  // namespace lumivard::platform::fuzz
