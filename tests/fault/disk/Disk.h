#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/fault/disk/DiskLog.h"

namespace lumivard::platform::stores::disk {

/// A folder on a simulated disk behind a cache, which can lose its power at any moment.
///
/// What was flushed is there after a power cut. Of what was not, each sector may be as it was when it was last flushed,
/// as it is in the cache, or as it was there at some moment between: a disk writes in an order of its own, and at any
/// time. A file that has become longer may have its new length or one that its sectors explain; what was never written
/// there is zeros. Names of files come and go in the order in which they did, as far as they were not made durable:
/// flushing a file does not flush its name.
class Disk {
public:
    using tNames = std::map<std::string, unsigned int>;

    /// What is in a folder: names, and the bytes of the files that have them. A file may have several names.
    struct Folder {
        tNames names;
        std::map<unsigned int, std::string> files;
    };

    void take(const Event& event);

    /// Without a power cut.
    Folder contents() const;

    /// After a power cut now. What is not durable is there with `chance`, in units of `unit` bytes, a multiple of 512
    /// that are written as a whole.
    Folder afterPowerCut(std::mt19937_64& random, double chance, std::uint64_t unit) const;

    static constexpr std::uint64_t kSector = 512;

private:
    struct File {
        std::string cached;
        std::string durable;
        std::map<std::uint64_t, std::vector<std::string>> pending;  // by sector: what the cache has held since
    };

    void write(File& file, const Event& event);
    static void settle(File& file, std::uint64_t sector);
    static void rename(tNames& names, const Event& event);
    std::string bytesAfterPowerCut(const File& file, std::mt19937_64& random, double chance, std::uint64_t unit) const;

    std::map<unsigned int, File> _files;
    tNames _names;
    tNames _durableNames;
    std::vector<Event> _pendingNames;
};

}  // namespace lumivard::platform::stores::disk
