#include "tools/documents/DocumentReader.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>
#include <utility>

#include "tools/base/Watch.h"

namespace lvp::tool {

bool DocumentReader::open() {
    close();
    // A pipe that nobody writes to yet would be waited for here, where no interrupt is heard.
    _file = _name == "-" ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                         : ::open(_name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (_file < 0) return false;
    struct stat status {};
    const int cause = ::fstat(_file, &status) != 0 ? errno : S_ISDIR(status.st_mode) ? EISDIR : 0;
    if (cause != 0) {
        close();
        errno = cause;
        return false;
    }
    _waits = !S_ISREG(status.st_mode);
    return true;
}

void DocumentReader::close() {
    if (_file >= 0) ::close(std::exchange(_file, -1));
}

/// A signal that comes right before the waiting begins does not end it, so it is looked for again and again.
void DocumentReader::wait() const {
    constexpr int kBetweenLooks = 100;  // milliseconds
    pollfd file{_file, POLLIN, 0};
    for (;;) {
        if (Watch::interrupted()) throw std::system_error(EINTR, std::generic_category(), "cannot read " + _name);
        const int ready = ::poll(&file, 1, kBetweenLooks);
        if (ready > 0) return;
        if (ready < 0 && errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "cannot read " + _name);
    }
}

unsigned long DocumentReader::read(void* buffer, unsigned long size) {
    ssize_t count = 0;
    do {
        if (_waits) wait();
        count = ::read(_file, buffer, std::min<unsigned long>(size, SSIZE_MAX));
    } while (count < 0 && (errno == EINTR || errno == EAGAIN));
    if (count < 0) throw std::system_error(errno, std::generic_category(), "cannot read " + _name);
    return static_cast<unsigned long>(count);
}

}  // namespace lvp::tool
