#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <optional>

#include "lumivard/platform/stores/tMode.h"
#include "stores/lmdb/FileDescriptor.h"

namespace lumivard::platform::stores {

/// The right of this process to use a file as a store, held as long as the object lives: it is the only handle on the
/// file in this process, and with `tMode::kWrite` the only writer on this machine.
///
/// It looks at the kind of file, not into it. The writer's right is a lock on the file itself, which the system gives
/// back when the process is gone, however it went.
class FileHandle {
public:
    /// Opens the file; `path` must have no symbolic link at its end. `fileSystem` stands for what `statfs` would say.
    /// Throws `EngineError` where the file is refused; nothing is held then.
    FileHandle(const std::filesystem::path& path, tMode mode, std::optional<long> fileSystem = std::nullopt);
    ~FileHandle();
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    /// The file's length in bytes when it was opened.
    unsigned long long size() const noexcept { return static_cast<unsigned long long>(_status.st_size); }

    /// Whether a descriptor stands for the same file.
    bool same(int descriptor) const;

private:
    FileDescriptor _descriptor;
    struct stat _status = {};
};

/// The name of a file without symbolic links and relative parts; the file itself need not exist. The name matters,
/// since the lock file is found by it. Throws `EngineError` when the folder is missing or a link leads nowhere.
std::filesystem::path realPath(const std::filesystem::path& path);

/// Throws `EngineError` if a descriptor's file lies on a network file system. `fileSystem` as above.
void refuseNetwork(int descriptor, std::optional<long> fileSystem);

}  // namespace lumivard::platform::stores
