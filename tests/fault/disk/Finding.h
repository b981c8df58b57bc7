#pragma once

#include <filesystem>
#include <iosfwd>
#include <map>
#include <string>

#include "lumivard/platform/stores/tMode.h"
#include "tests/fault/disk/Workload.h"

namespace lumivard::platform::stores::disk {

/// What is found in a file after its writer met with something.
enum class tFound {
    kLast,        ///< the last flush that was acknowledged
    kNext,        ///< the one after it, which was under way
    kAbsent,      ///< no file; right as long as none had come into being
    kOlder,       ///< an earlier flush: an acknowledged one is lost
    kMixed,       ///< the content of no flush
    kUnreadable,  ///< a file that is refused
    kCrashed      ///< a file on which the reading process dies
};

struct Finding {
    tFound found = tFound::kAbsent;
    std::string message;  ///< of an unreadable file
};

/// Looks at the file after batch `acknowledged` of the model, which knows the batch after it too.
Finding lookAt(const std::filesystem::path& path, tMode mode, const Workload& model, unsigned int acknowledged);

/// The same in a process of its own, which may die of what it finds.
Finding lookFromAfar(const std::filesystem::path& path, tMode mode, const Workload& model, unsigned int acknowledged);

/// How often each was found.
class Tally {
public:
    void add(tFound found) { ++_counts[found]; }
    unsigned int operator[](tFound found) const;
    unsigned int all() const;

    /// Findings that break the promise; `kAbsent` is left to the caller.
    unsigned int broken() const;

private:
    std::map<tFound, unsigned int> _counts;
    friend std::ostream& operator<<(std::ostream& out, const Tally& tally);
};

std::ostream& operator<<(std::ostream& out, tFound found);
std::ostream& operator<<(std::ostream& out, const Tally& tally);

}  // namespace lumivard::platform::stores::disk
