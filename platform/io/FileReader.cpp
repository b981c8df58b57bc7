#include "lumivard/platform/core/io/FileReader.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumivard::platform::core::io {

FileReader::FileReader(std::filesystem::path path) : _path(std::move(path)) {}

FileReader::~FileReader() {
    close();
}

bool FileReader::open() {
    close();
    do {
        _file = ::open(_path.c_str(), O_RDONLY | O_CLOEXEC);
    } while (_file < 0 && errno == EINTR);
    if (_file < 0) return false;
    // A directory can be opened, and would fail only when it is read.
    struct stat status {};
    const int cause = ::fstat(_file, &status) != 0 ? errno : S_ISDIR(status.st_mode) ? EISDIR : 0;
    if (cause == 0) return true;
    close();
    errno = cause;
    return false;
}

void FileReader::close() {
    if (_file >= 0) ::close(std::exchange(_file, -1));
}

unsigned long FileReader::read(void* buffer, unsigned long size) {
    ssize_t count = 0;
    do {
        count = ::read(_file, buffer, std::min<unsigned long>(size, SSIZE_MAX));
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw std::system_error(errno, std::generic_category(), "cannot read " + _path.string());
    return static_cast<unsigned long>(count);
}

}  // namespace lumivard::platform::core::io
