#pragma once

#include <sys/stat.h>

#include <filesystem>

#include "stores/lmdb/FileDescriptor.h"
#include "stores/lmdb/FileHandle.h"

namespace lumivard::platform::stores {

/// The lock file beside a store's file, held for that file as long as the object lives.
///
/// LMDB finds it by the file's name, and keeps in it what readers and writers must know of each other. Where a file was
/// put in the place of another that somebody still has open, both would use one lock file; where somebody has a file
/// open by another name, or without a lock file since nothing can be written beside it, one file would be used without
/// knowledge of each other. Either would lose what is flushed: so everybody holds a lock on each of the two files, in a
/// place that tells which the other is.
///
/// It has to be there before LMDB opens the environment, and until that is closed: to close a descriptor of the lock
/// file gives back all that LMDB has locked in it.
class LockFile {
public:
    /// Makes the lock file beside `path`, unless there is one, with the rights of the store's file. Throws
    /// `EngineError` when it cannot be written, when there is no room for it, when the file of its name is a store,
    /// when it serves another file, and when others use the store with another lock file or none. Where nothing can be
    /// written at all, LMDB reads without.
    LockFile(const std::filesystem::path& path, const FileHandle& store);
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    /// Throws `EngineError` for a name so long that there is none for the lock file beside it.
    static void requireRoomForName(const std::filesystem::path& path);

    /// The name of the lock file beside `path`: LMDB's choice.
    static std::filesystem::path nameFor(const std::filesystem::path& path);

private:
    void _open(const std::filesystem::path& name, const struct stat& store);
    void _reserve() const;

    FileDescriptor _descriptor;
    struct stat _status = {};
    const pid_t _process;
};

}  // namespace lumivard::platform::stores
