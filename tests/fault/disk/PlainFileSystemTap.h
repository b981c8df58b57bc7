#pragma once

#include <cerrno>

#include "tests/fault/disk/SystemCalls.h"

namespace lumivard::platform::stores::disk {

/// Makes the file system one that cannot rename without replacing, as some cannot; another tap is asked for the rest.
class PlainFileSystemTap final : public Tap {
public:
    explicit PlainFileSystemTap(Tap& other) : _other(other) {}

    Answer ask(const Call& call) override {
        return call.exclusive ? Answer{Answer::tKind::kFail, EINVAL} : _other.ask(call);
    }
    void done(const Call& call) override { _other.done(call); }

private:
    Tap& _other;
};

}  // namespace lumivard::platform::stores::disk
