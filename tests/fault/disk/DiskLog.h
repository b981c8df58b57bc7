#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/fault/disk/SystemCalls.h"

namespace lumivard::platform::stores::disk {

/// What reaches a disk, in order, with what its user was told in between.
struct Event {
    enum class tKind {
        kCreate,      ///< `file` comes into being as `name`
        kWrite,       ///< of `bytes` at `position`
        kTruncate,    ///< to `length` bytes, or up to it
        kAllocate,    ///< as long as that, if it was shorter
        kSync,        ///< the whole file is durable
        kSyncRange,   ///< `length` bytes at `position` are, as a descriptor opened with O_DSYNC promises
        kSyncFolder,  ///< names are
        kRename,      ///< `name` to `other`
        kLink,
        kUnlink,
        kAcknowledged  ///< a flush has returned, the `number`-th
    };
    tKind kind = tKind::kCreate;
    unsigned int file = 0;  ///< numbered in the order of their coming
    std::string name;       ///< within the folder
    std::string other;
    std::uint64_t position = 0;
    std::uint64_t length = 0;
    std::string bytes;
    unsigned int number = 0;
};

/// Keeps the log of a folder that is empty at first.
class Recorder final : public Tap {
public:
    void done(const Call& call) override;

    /// Notes that a flush has returned.
    void acknowledge(unsigned int number);

    const std::vector<Event>& log() const { return _log; }

private:
    Event& add(Event::tKind kind);
    void open(const Call& call);
    void write(const Call& call);

    std::vector<Event> _log;
    std::map<ino_t, unsigned int> _files;
    unsigned int _made = 0;
};

}  // namespace lumivard::platform::stores::disk
