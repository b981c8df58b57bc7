#include "stores/lmdb/FileHandle.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <system_error>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/FileRegistry.h"
#include "stores/lmdb/NetworkFileSystem.h"
#include "stores/lmdb/RangeLock.h"

namespace lumivard::platform::stores {
namespace {

constexpr char kOpenAlready[] = "this process has it open already";

FileDescriptor openDescriptor(const std::filesystem::path& path, tMode mode) {
    // Lock files are in the registry too: to open and close one would give back what this process has locked in it.
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0 && FileRegistry::has(status)) throw EngineError(kOpenAlready);
    const int access = mode == tMode::kWrite ? O_RDWR : O_RDONLY;
    FileDescriptor descriptor(::open(path.c_str(), access | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (descriptor) return descriptor;
    if (errno == ENOENT) throw EngineError("there is no such file");
    if (errno == EISDIR) throw EngineError("it is not a regular file");
    throw EngineError(systemReason(errno));
}

struct stat statusOf(int descriptor) {
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0) throw EngineError(systemReason(errno));
    return status;
}

bool isNameOf(const std::filesystem::path& path, const struct stat& file) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && status.st_dev == file.st_dev && status.st_ino == file.st_ino;
}

/// Removes the first name of a file that its maker had no time to remove: where a file system cannot rename without
/// replacing, a new store has both names for a moment.
void removeFirstName(const std::filesystem::path& path, const struct stat& file) {
    std::error_code error;
    std::filesystem::directory_iterator entry(path.parent_path(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const bool first = name.starts_with(".lvp-store-") && name.ends_with(".new");
        if (first && entry->path() != path && isNameOf(entry->path(), file)) {
            ::unlink(entry->path().c_str());
        }
    }
}

void refuseKind(const struct stat& status) {
    if (!S_ISREG(status.st_mode)) throw EngineError("it is not a regular file");
    if (status.st_size == 0) throw EngineError("the file is empty, which no store file is");
    if (status.st_nlink > 1) {
        throw EngineError(
            "the file has several names (hard links), and those who open it by different ones would not see "
            "each other's locks");
    }
}

/// LMDB looks at a file only after it has made its lock file beside it: strangers' files get none.
void refuseForeign(int descriptor) {
    constexpr off_t kMagicAt = 16;  // behind the header of the first page
    constexpr std::uint32_t kMagic = 0xBEEFC0DE;
    std::uint32_t magic = 0;
    const ssize_t read = ::pread(descriptor, &magic, sizeof(magic), kMagicAt);
    if (read < 0) throw EngineError(systemReason(errno));
    if (read != sizeof(magic) || magic != kMagic) throw EngineError("it is not a store file, or it is damaged");
}

void takeWriterLock(int descriptor) {
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return;
    if (errno == EWOULDBLOCK) throw EngineError("another process has it open for writing");
    throw EngineError("it could not be locked: " + systemReason(errno));
}

// The presence of everybody who has the file open: a lock on its first byte, held by the descriptor and not, as the
// older kind would be, by the process.
int setPresence(int descriptor, short type, int command) {
    return RangeLock{type, 0, 1}.call(descriptor, command);
}

void takePresence(int descriptor) {
    if (const int error = setPresence(descriptor, F_RDLCK, F_OFD_SETLKW)) {
        throw EngineError("it could not be locked: " + systemReason(error));
    }
}

}  // namespace

FileHandle::FileHandle(const std::filesystem::path& path, tMode mode, std::optional<long> fileSystem) {
    constexpr int kMostTries = 10;
    for (int tries = 0; tries < kMostTries; ++tries) {
        _open(path, mode, fileSystem);
        if (isNameOf(path, _status)) return;
        _close();
    }
    throw EngineError("another file was put in its place at this moment");
}

FileHandle::~FileHandle() {
    _close();
}

void FileHandle::_open(const std::filesystem::path& path, tMode mode, std::optional<long> fileSystem) {
    FileDescriptor descriptor = openDescriptor(path, mode);
    _status = statusOf(descriptor.get());
    if (S_ISREG(_status.st_mode) && _status.st_nlink > 1) {
        refuseForeign(descriptor.get());
        removeFirstName(path, _status);
        _status = statusOf(descriptor.get());
    }
    refuseKind(_status);
    refuseForeign(descriptor.get());
    refuseNetwork(descriptor.get(), fileSystem);
    if (!FileRegistry::enter(_status)) throw EngineError(kOpenAlready);
    try {
        if (mode == tMode::kWrite) takeWriterLock(descriptor.get());
        takePresence(descriptor.get());
    } catch (...) {
        descriptor = FileDescriptor();
        FileRegistry::leave(_status);
        throw;
    }
    _process = ::getpid();
    _descriptor = std::move(descriptor);
}

// The locks go before the registry is left, so that who finds the file free there can have them. They would go with the
// descriptor, were there no child made by fork() that has it still.
void FileHandle::_close() noexcept {
    if (!_descriptor) return;
    const bool mine = ::getpid() == _process;
    if (mine) {
        ::flock(_descriptor.get(), LOCK_UN);
        RangeLock{F_UNLCK}.call(_descriptor.get(), F_OFD_SETLK);
    }
    _descriptor = FileDescriptor();
    if (mine) FileRegistry::leave(_status);
}

void FileHandle::takeAlone() {
    const int error = setPresence(_descriptor.get(), F_WRLCK, F_OFD_SETLK);
    if (error == EAGAIN || error == EACCES) throw EngineError("others have it open for reading");
    if (error != 0) throw EngineError("it could not be locked: " + systemReason(error));
}

void FileHandle::share() noexcept {
    setPresence(_descriptor.get(), F_RDLCK, F_OFD_SETLK);
}

bool FileHandle::same(int descriptor) const {
    const struct stat status = statusOf(descriptor);
    return status.st_dev == _status.st_dev && status.st_ino == _status.st_ino;
}

std::filesystem::path realPath(const std::filesystem::path& path) {
    if (!path.has_filename()) throw EngineError("that is not the name of a file");
    std::error_code error;
    const auto existing = std::filesystem::canonical(path, error);
    if (!error) return existing;
    if (error != std::errc::no_such_file_or_directory) throw EngineError(error.message());
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(path, error))) {
        throw EngineError("it is a symbolic link that leads nowhere");
    }
    const auto folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
    const auto existingFolder = std::filesystem::canonical(folder, error);
    if (error) throw EngineError("its folder cannot be entered: " + error.message());
    return existingFolder / path.filename();
}

void refuseNetwork(int descriptor, std::optional<long> fileSystem) {
    if (!fileSystem) {
        struct statfs status = {};
        if (::fstatfs(descriptor, &status) != 0) throw EngineError(systemReason(errno));
        fileSystem = static_cast<long>(status.f_type);
    }
    if (const char* name = networkFileSystem(*fileSystem)) {
        throw EngineError(std::string("it lies on a network file system (") + name +
                          "), where locks and mapped files cannot be relied upon");
    }
}

}  // namespace lumivard::platform::stores
