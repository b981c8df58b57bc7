#include "tools/base/Watch.h"

#include <unistd.h>

#include <iostream>

namespace lvp::tool {

namespace {

constexpr std::array kAsked{SIGINT, SIGTERM, SIGHUP};
constexpr unsigned int kBetweenLooks = 256;  // calls between two looks at the clock
constexpr std::chrono::milliseconds kBetweenLines{100};

volatile sig_atomic_t theEndIsAskedFor = 0;
unsigned int theWatches = 0;

void ask(int) {
    theEndIsAskedFor = 1;
}

/// A number with its thousands apart.
std::string grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, ",");
    return text;
}

}  // namespace

Watch::Watch(std::string doing, std::string unit, std::uint64_t total)
    : _doing(std::move(doing)),
      _unit(std::move(unit)),
      _total(total),
      _terminal(::isatty(STDERR_FILENO) == 1),
      _next(std::chrono::steady_clock::now() + kBetweenLines) {
    if (theWatches++ == 0) theEndIsAskedFor = 0;
    struct sigaction action {};
    action.sa_handler = ask;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < kSignals; ++i) {
        ::sigaction(kAsked[i], nullptr, &_before[i]);
        if (_before[i].sa_handler != SIG_IGN) ::sigaction(kAsked[i], &action, nullptr);  // nohup means it
    }
}

Watch::~Watch() {
    --theWatches;
    for (std::size_t i = 0; i < kSignals; ++i) ::sigaction(kAsked[i], &_before[i], nullptr);
    if (_shown) std::cerr << "\r\x1b[K" << std::flush;
}

bool Watch::interrupted() {
    return theEndIsAskedFor != 0;
}

void Watch::reached(std::uint64_t done) {
    _done = done;
    if (interrupted()) throw Interrupted{_doing};
    if (!_terminal || ++_calls % kBetweenLooks != 0) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < _next) return;
    _next = now + kBetweenLines;
    show();
}

std::function<bool(unsigned long long, unsigned long long)> Watch::listener() {
    return [this](unsigned long long done, unsigned long long all) {
        total(all);
        reached(done);
        return true;
    };
}

void Watch::show() {
    std::string line = _doing + ": " + grouped(_done);
    if (_total != 0) {
        line += " of " + grouped(_total) + " " + _unit + ", " +
                std::to_string(_done >= _total ? 100 : _done / ((_total + 99) / 100)) + " %";
    } else {
        line += " " + _unit;
    }
    std::cerr << '\r' << line << "\x1b[K" << std::flush;
    _shown = true;
}

}  // namespace lvp::tool
