#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/fault/disk/SystemCalls.h"

namespace lumivard::platform::stores::disk {

/// Answers one of the calls, or all from there on, in another way than the system would; counts them all.
class FaultyTap final : public Tap {
public:
    using tKinds = std::vector<Call::tKind>;

    enum class tSpan { kOnce, kForEver };

    /// Lets `calls` calls of these kinds pass before that one; others always pass.
    FaultyTap(std::uint64_t calls, Answer answer, tSpan span, tKinds kinds)
        : _first(calls), _answer(answer), _span(span), _kinds(std::move(kinds)) {}

    Answer ask(const Call& call) override {
        if (std::find(_kinds.begin(), _kinds.end(), call.kind) == _kinds.end()) return {};
        const std::uint64_t number = _calls++;
        const bool now = _span == tSpan::kOnce ? number == _first : number >= _first;
        if (!now) return {};
        if (_hits++ == 0) _hit = call.kind;
        return _answer;
    }

    /// How many calls of its kinds there were, answered or not.
    std::uint64_t calls() const { return _calls; }

    /// How many were answered, and what the first of them was.
    std::uint64_t hits() const { return _hits; }
    Call::tKind hit() const { return _hit; }

private:
    const std::uint64_t _first;
    const Answer _answer;
    const tSpan _span;
    const tKinds _kinds;
    std::uint64_t _calls = 0;
    std::uint64_t _hits = 0;
    Call::tKind _hit = Call::tKind::kOpen;
};

}  // namespace lumivard::platform::stores::disk
