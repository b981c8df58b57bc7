#pragma once

#include <random>
#include <thread>

#include "tests/fault/disk/SystemCalls.h"

namespace lumivard::platform::stores::disk {

/// Lets other processes go first before and after each call, now and then: what lies between two calls becomes as long
/// as it is for somebody who is interrupted there.
class DawdlingTap final : public Tap {
public:
    explicit DawdlingTap(std::uint64_t seed) : _random(seed) {}

    Answer ask(const Call&) override { return dawdle(), Answer{}; }
    void done(const Call&) override { dawdle(); }

private:
    void dawdle() {
        if (_random() % 8 != 0) return;
        for (std::uint64_t turns = _random() % 50; turns != 0; --turns) std::this_thread::yield();
    }

    std::mt19937_64 _random;
};

}  // namespace lumivard::platform::stores::disk
