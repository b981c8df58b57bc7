#pragma once

#include <functional>

namespace lumivard::platform::stores {

/// Hears how far long work is: so many steps of so many. False ends the work, like a failure.
using tProgress = std::function<bool(unsigned long long done, unsigned long long total)>;

/// What is asked for when the file of a store is opened, examined or made smaller.
struct FileOptions {
    /// Measures every page before anything is read from one, at a cost in proportion to the length of the file (some
    /// 0.2 seconds for a million records). For files that may have been damaged, or were made by somebody who is not
    /// trusted. The file must not be changed by others meanwhile, but by a writer through this library.
    bool verify = false;

    /// Opens files on network file systems too. Only one process, of one machine, may then have the file open, and
    /// nobody sees to it: two writers destroy the file.
    bool network = false;

    /// Is called on the same thread while pages are measured, once for each page in use, and while `compact` copies,
    /// once for each record, where it begins anew. What it throws passes through; either end leaves the file as it was.
    tProgress progress = {};
};

}  // namespace lumivard::platform::stores
