#pragma once

#include "tests/fault/disk/SystemCalls.h"

namespace lumivard::platform::stores::disk {

/// Grants every lock on a store's file to whoever asks. Those on the lock file beside it, by which the database keeps
/// its readers and writers apart, are the system's.
class GrantingTap final : public Tap {
public:
    Answer ask(const Call& call) override {
        const bool granted = call.kind == Call::tKind::kLock && !call.path.ends_with("-lock");
        return {granted ? Answer::tKind::kGrant : Answer::tKind::kPass, 0};
    }
};

}  // namespace lumivard::platform::stores::disk
