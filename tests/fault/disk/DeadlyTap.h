#pragma once

#include <csignal>

#include "tests/fault/disk/SystemCalls.h"

namespace lumivard::platform::stores::disk {

/// Kills its own process at one of the calls: before it, when it is half done (if it reads or writes), or after it.
class DeadlyTap final : public Tap {
public:
    enum class tMoment { kBefore, kHalfway, kAfter };

    /// Which calls count: all, or those by which a flush becomes the last one.
    enum class tCalls { kAll, kCommits };

    /// Lets `calls` calls pass before that one.
    DeadlyTap(std::uint64_t calls, tMoment moment, tCalls counted = tCalls::kAll)
        : _left(calls), _moment(moment), _counted(counted) {}

    Answer ask(const Call& call) override {
        if (_counted == tCalls::kCommits && !call.synchronous) return {};
        _now = _left == 0;  // and stays so: what fails by itself is never done, and then the next call is meant
        if (!_now) {
            --_left;
            return {};
        }
        if (_moment == tMoment::kBefore) ::raise(SIGKILL);
        return {_moment == tMoment::kHalfway ? Answer::tKind::kShorten : Answer::tKind::kPass, 0};
    }
    void done(const Call&) override {
        if (_now) ::raise(SIGKILL);
    }

private:
    std::uint64_t _left;
    const tMoment _moment;
    const tCalls _counted;
    bool _now = false;
};

}  // namespace lumivard::platform::stores::disk
