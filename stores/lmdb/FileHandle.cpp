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

namespace lumivard::platform::stores {
namespace {

FileDescriptor openDescriptor(const std::filesystem::path& path, tMode mode) {
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

}  // namespace

FileHandle::FileHandle(const std::filesystem::path& path, tMode mode, std::optional<long> fileSystem)
    : _descriptor(openDescriptor(path, mode)), _status(statusOf(_descriptor.get())) {
    refuseKind(_status);
    refuseForeign(_descriptor.get());
    refuseNetwork(_descriptor.get(), fileSystem);
    if (!FileRegistry::enter(_status)) throw EngineError("this process has it open already");
    try {
        if (mode == tMode::kWrite) takeWriterLock(_descriptor.get());
    } catch (...) {
        FileRegistry::leave(_status);
        throw;
    }
}

FileHandle::~FileHandle() {
    _descriptor = FileDescriptor();  // and with it the lock: who finds the file free in the registry can have that too
    FileRegistry::leave(_status);
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
