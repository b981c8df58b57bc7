#include "lumivard/platform/core/io/FileWriter.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumivard::platform::core::io {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(int cause, const char* what, const fs::path& path) {
    throw std::system_error(cause, std::generic_category(), std::string(what) + " " + path.string());
}

/// The file that a path means when its symbolic links are followed, also where nothing is there yet. Nothing, with
/// `errno` set, when the links go in a circle or the working directory is gone.
std::optional<fs::path> behindLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code error;
    for (int links = 0; links <= kMostLinks; ++links) {
        const fs::path target = fs::read_symlink(path, error);
        if (error) {
            // Absolute, for the working directory may be another one at the time of the renaming.
            path = fs::absolute(path, error);
            if (!error) return path;
            errno = error.value();
            return std::nullopt;
        }
        path = path.parent_path() / target;
    }
    errno = ELOOP;
    return std::nullopt;
}

/// A name in the folder of `target` that no other writer of this process makes, and short, so that it fits wherever
/// the target's own name does.
fs::path nameBeside(const fs::path& target) {
    static std::atomic<unsigned long> made{0};
    return target.parent_path() / (".lvp-" + std::to_string(::getpid()) + "-" + std::to_string(made++));
}

/// Waits until a file is on the disk; 0, or why that failed.
int syncFile(int file) noexcept {
    while (::fsync(file) != 0) {
        if (errno != EINTR) return errno;
    }
    return 0;
}

/// Makes the name of a file in a folder survive a loss of power, as far as the file system can do that: the file is in
/// its place by then, so there is nothing to undo.
void syncFolder(const fs::path& folder) noexcept {
    const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) return;
    syncFile(file);
    ::close(file);
}

}  // namespace

FileWriter::FileWriter(std::filesystem::path path) : _path(std::move(path)) {}

FileWriter::~FileWriter() {
    discard();
}

bool FileWriter::open() {
    discard();
    const bool opened = openBeside();
    _cause = opened ? 0 : errno;
    return opened;
}

bool FileWriter::openBeside() {
    const auto target = behindLinks(_path);
    if (!target) return false;
    struct stat old {};
    const bool exists = ::stat(target->c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) {
        errno = S_ISDIR(old.st_mode) ? EISDIR : ENOTSUP;
        return false;
    }
    _target = *target;
    // The mode is never wider than the final one, not even for a moment: who may not read the old file shall not hold
    // the new one open.
    const mode_t mode = exists ? old.st_mode & 0777 : 0666;
    do {
        _beside = nameBeside(_target);
        _file = ::open(_beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    } while (_file < 0 && (errno == EINTR || errno == EEXIST));
    if (_file < 0) return false;
    if (!exists || ::fchmod(_file, old.st_mode & 07777) == 0) return true;
    const int cause = errno;
    discard();
    errno = cause;
    return false;
}

void FileWriter::write(const void* data, unsigned long size) {
    if (_file < 0 && _cause != 0) fail(_cause, "cannot write", _path);  // for who did not look at what `open` gave
    const auto* bytes = static_cast<const char*>(data);
    while (size != 0) {
        const ssize_t count = ::write(_file, bytes, std::min<unsigned long>(size, SSIZE_MAX));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            _failed = true;
            fail(errno, "cannot write", _path);
        }
        bytes += count;
        size -= static_cast<unsigned long>(count);
    }
}

void FileWriter::close() {
    if (_file < 0) return;
    if (_failed) {
        discard();
        return;
    }
    int cause = syncFile(_file);
    ::close(std::exchange(_file, -1));
    if (cause == 0 && ::rename(_beside.c_str(), _target.c_str()) != 0) cause = errno;
    if (cause != 0) {
        ::unlink(_beside.c_str());
        fail(cause, "cannot replace", _path);
    }
    syncFolder(_target.parent_path());
}

void FileWriter::discard() noexcept {
    _failed = false;
    if (_file < 0) return;
    ::close(std::exchange(_file, -1));
    ::unlink(_beside.c_str());
}

}  // namespace lumivard::platform::core::io
