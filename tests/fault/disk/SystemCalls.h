#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>

// Between the store and the system: the test program defines the system's functions on files itself, so that every call
// of the library and of the database below it comes past here first.
namespace lumivard::platform::stores::disk {

/// One call on a file below the watched folder.
struct Call {
    enum class tKind { kOpen, kRead, kWrite, kTruncate, kAllocate, kSync, kLock, kRename, kLink, kUnlink };

    explicit Call(tKind what) : kind(what) {}

    tKind kind;
    std::string path;            ///< as the file was opened, or its first name
    std::string other;           ///< the second name of a rename or link
    ino_t file = 0;              ///< the file behind the descriptor; of an `open` known only when it is done
    bool folder = false;         ///< the descriptor stands for a folder
    bool writable = false;       ///< of `open`
    bool existed = false;        ///< of `open`: the file was there before
    bool exclusive = false;      ///< of a rename: not over another file
    bool synchronous = false;    ///< of a write: durable when it returns (O_SYNC, O_DSYNC)
    std::uint64_t position = 0;  ///< in bytes, of a read or write
    std::uint64_t length = 0;    ///< in bytes, of a read, or the new one of a `ftruncate`, the least of a `fallocate`
    std::string bytes;           ///< of a write; when it is done: those that were written
};

/// What becomes of a call.
struct Answer {
    enum class tKind {
        kPass,     ///< the system does it
        kFail,     ///< it is not done, and fails with `error`
        kReport,   ///< the system does it, and `error` is told all the same
        kShorten,  ///< the system does the first half of it; other calls than reads and writes pass
        kPretend,  ///< it is not done and succeeds; reads, locks and what gives a descriptor pass
        kGrant     ///< of a lock: it is not taken and succeeds; other calls pass
    };
    tKind kind = tKind::kPass;
    int error = 0;
};

/// Who is asked about each call. Calls of several threads come one at a time.
class Tap {
public:
    virtual ~Tap() = default;

    /// Before the call.
    virtual Answer ask(const Call&) { return {}; }

    /// After a call that the system has done, at least in part; not after one that failed.
    virtual void done(const Call&) {}
};

/// Shows a tap the calls on files that are opened or named below a folder, as long as the object lives. One at a time.
///
/// Seen are open, pread, write, writev, pwrite, pwritev, ftruncate, fallocate, fsync, fdatasync, flock, locking by
/// fcntl, rename, renameat2, link and unlink. What else would change a file goes unnoticed here, and shows as a
/// difference between the calls and the file (see `Disk`).
class Watch {
public:
    Watch(const std::filesystem::path& folder, Tap& tap);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// How many calls that write came past, on whatever descriptor, since this object was made.
    std::uint64_t writes() const;
};

/// How many calls that write the system has counted for this process; 0 where it does not count.
std::uint64_t writesCountedBySystem();

}  // namespace lumivard::platform::stores::disk
