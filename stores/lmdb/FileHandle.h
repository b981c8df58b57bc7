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
/// Of what is in the file it looks at the mark of LMDB alone. The writer's right is a lock on the file itself, and so
/// is the presence of everybody who has it open, which keeps the file from being replaced; the system gives both back
/// when the process is gone, however it went.
class FileHandle {
public:
    /// Opens the file; `path` must have no symbolic link at its end. `fileSystem` stands for what `statfs` would say.
    /// Waits while the file is being replaced. Throws `EngineError` where the file is refused; nothing is held then.
    FileHandle(const std::filesystem::path& path, tMode mode, std::optional<long> fileSystem = std::nullopt);
    ~FileHandle();
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    /// The open file, for plain reads.
    int descriptor() const noexcept { return _descriptor.get(); }

    /// What the system says of the file.
    const struct stat& status() const noexcept { return _status; }

    /// Takes the file for this handle alone; opened for writing only. Throws `EngineError` while others have it open.
    void takeAlone();

    /// Lets others open it again.
    void share() noexcept;

    /// Whether a descriptor stands for the same file.
    bool same(int descriptor) const;

private:
    void _open(const std::filesystem::path& path, tMode mode, std::optional<long> fileSystem);
    void _close() noexcept;

    FileDescriptor _descriptor;
    struct stat _status = {};
    pid_t _process = 0;  // that opened the file: a child made by fork() has no right to it
};

/// The name of a file without symbolic links and relative parts; the file itself need not exist. The name matters,
/// since the lock file is found by it. Throws `EngineError` when the folder is missing or a link leads nowhere.
std::filesystem::path realPath(const std::filesystem::path& path);

/// Throws `EngineError` if a descriptor's file lies on a network file system. `fileSystem` as above.
void refuseNetwork(int descriptor, std::optional<long> fileSystem);

}  // namespace lumivard::platform::stores
