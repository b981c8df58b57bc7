#pragma once

#include <sys/stat.h>

namespace lumivard::platform::stores {

/// Which files this process has open as stores, and their lock files: each at most once, under whatever name.
///
/// The mapping below does not bear a second opening in one process: closing one of two would drop the locks of the
/// other. What a parent process had open when it forked does not count for the child. Threads: any.
class FileRegistry {
public:
    /// Enters a file, by device and inode. False when it is there already.
    static bool enter(const struct stat& file);

    /// Whether a file is there.
    static bool has(const struct stat& file);

    /// Takes a file out.
    static void leave(const struct stat& file) noexcept;
};

}  // namespace lumivard::platform::stores
