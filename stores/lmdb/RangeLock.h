#pragma once

#include <fcntl.h>

#include <cerrno>

namespace lumivard::platform::stores {

/// A range of a file that is locked, unlocked or asked about. The lock belongs to the open file and not, as the older
/// kind does, to the process: it ends when the last descriptor of that is closed.
struct RangeLock {
    short type = F_RDLCK;
    off_t first = 0;
    off_t count = 0;  ///< 0: all that a file can have from `first` on

    /// Makes a call of `fcntl`, again where a signal broke it off. Gives the system's error, or 0; a question
    /// (`F_OFD_GETLK`) leaves its answer in `type`.
    int call(int descriptor, int command) noexcept {
        struct flock range = {};
        range.l_type = type;
        range.l_whence = SEEK_SET;
        range.l_start = first;
        range.l_len = count;
        int status = 0;
        do {
            status = ::fcntl(descriptor, command, &range);
        } while (status != 0 && errno == EINTR);
        type = range.l_type;
        return status == 0 ? 0 : errno;
    }
};

}  // namespace lumivard::platform::stores
