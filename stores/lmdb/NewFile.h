#pragma once

#include <sys/types.h>

#include <filesystem>

#include "stores/lmdb/FileDescriptor.h"

namespace lumivard::platform::stores {

/// A file that comes into being under a name of its own, ".lvp-store-*.new", and gets its real one when it is complete:
/// nobody ever sees half of it. Without that it is removed again; where the process dies before, it is left behind.
///
/// Throws `EngineError`.
class NewFile {
public:
    /// Makes an empty file in a folder, with the rights of `mode` less what the process's umask takes away.
    NewFile(const std::filesystem::path& folder, mode_t mode);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    const std::filesystem::path& path() const { return _path; }
    int descriptor() const { return _descriptor.get(); }

    /// Lets what was written outlast the death of the machine.
    void makeDurable();

    /// Gives the file its name. False, and nothing done, when that is taken.
    bool rename(const std::filesystem::path& name);

    /// Puts the file in the place of the one of that name.
    void replace(const std::filesystem::path& name);

    /// Lets the names in a folder outlast the death of the machine.
    static void makeNamesDurable(const std::filesystem::path& folder);

private:
    std::filesystem::path _path;
    FileDescriptor _descriptor;
};

}  // namespace lumivard::platform::stores
