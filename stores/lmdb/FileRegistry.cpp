#include "stores/lmdb/FileRegistry.h"

#include <unistd.h>

#include <mutex>
#include <set>
#include <tuple>

namespace lumivard::platform::stores {
namespace {

using Entry = std::tuple<pid_t, dev_t, ino_t>;

struct Entries {
    std::mutex mutex;
    std::set<Entry> files;
};

// Never destroyed: stores in static objects may be closed after anything that is.
Entries& entries() {
    static auto* const all = new Entries;
    return *all;
}

Entry entry(const struct stat& file) {
    return {::getpid(), file.st_dev, file.st_ino};
}

}  // namespace

bool FileRegistry::enter(const struct stat& file) {
    Entries& all = entries();
    const std::lock_guard held(all.mutex);
    return all.files.insert(entry(file)).second;
}

bool FileRegistry::has(const struct stat& file) {
    Entries& all = entries();
    const std::lock_guard held(all.mutex);
    return all.files.contains(entry(file));
}

void FileRegistry::leave(const struct stat& file) noexcept {
    Entries& all = entries();
    const std::lock_guard held(all.mutex);
    all.files.erase(entry(file));
}

}  // namespace lumivard::platform::stores
