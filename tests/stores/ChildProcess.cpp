#include "tests/stores/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

namespace lumivard::platform::stores {
namespace {

bool writeNumber(int descriptor, unsigned int number) {
    return ::write(descriptor, &number, sizeof number) == static_cast<ssize_t>(sizeof number);
}

bool readNumber(int descriptor, unsigned int& number) {
    ssize_t count = -1;
    do {
        count = ::read(descriptor, &number, sizeof number);
    } while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(sizeof number);
}

int run(const std::function<int(const ChildProcess::Line&)>& body, const ChildProcess::Line& line) {
    try {
        return body(line);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "child process: %s\n", error.what());
        return 99;
    }
}

}  // namespace

void ChildProcess::Line::tell(unsigned int number) const {
    if (!writeNumber(_out, number)) ::_exit(98);
}

unsigned int ChildProcess::Line::hear() const {
    unsigned int number = 0;
    if (!readNumber(_in, number)) ::_exit(97);
    return number;
}

ChildProcess::ChildProcess(const std::function<int(const Line&)>& body) {
    int down[2];
    int up[2];
    if (::pipe(down) != 0 || ::pipe(up) != 0) throw std::runtime_error("no pipe");
    _process = ::fork();
    if (_process < 0) throw std::runtime_error("no child process");
    if (_process == 0) {
        ::signal(SIGPIPE, SIG_IGN);
        ::close(down[1]);
        ::close(up[0]);
        ::_exit(run(body, Line(down[0], up[1])));
    }
    ::close(down[0]);
    ::close(up[1]);
    _out = down[1];
    _in = up[0];
}

ChildProcess::~ChildProcess() {
    kill();
    ::close(_in);
    ::close(_out);
}

void ChildProcess::tell(unsigned int number) const {
    if (!writeNumber(_out, number)) throw std::runtime_error("the child process does not listen");
}

unsigned int ChildProcess::hear() const {
    unsigned int number = 0;
    return readNumber(_in, number) ? number : kGone;
}

void ChildProcess::kill() {
    if (_process <= 0) return;
    ::kill(_process, SIGKILL);
    wait();
}

int ChildProcess::wait() {
    int status = 0;
    if (_process <= 0 || ::waitpid(std::exchange(_process, -1), &status, 0) < 0) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace lumivard::platform::stores
