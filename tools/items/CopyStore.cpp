#include "tools/items/CopyStore.h"

#include <string>

#include "tools/base/ChangedStore.h"
#include "tools/base/ExitStatus.h"
#include "tools/base/Files.h"
#include "tools/base/Watch.h"
#include "tools/base/WatchedStore.h"

namespace lvp::tool {

namespace {

/// The bytes of a record; none where there is no such record.
std::string bytesAt(IDataStore& store, unsigned int offset) {
    std::string bytes(store.size(offset), '\0');
    store.read(offset, bytes.data(), static_cast<unsigned int>(bytes.size()));
    return bytes;
}

// Offsets are handed out one after the other: one that names no record takes its place, and leaves it.
void copyRecords(IDataStore& from, IDataStore& to) {
    const auto extent = from.extent();
    for (unsigned int offset = 0; offset < extent; ++offset) {
        const std::string bytes = bytesAt(from, offset);
        const unsigned int copied = to.create(bytes.data(), static_cast<unsigned int>(bytes.size()));
        if (bytes.empty()) to.erase(copied);
    }
    to.version(from.version());
}

bool isSame(IDataStore& a, IDataStore& b) {
    if (a.extent() != b.extent() || a.version() != b.version()) return false;
    const auto extent = a.extent();
    for (unsigned int offset = 0; offset < extent; ++offset) {
        if (bytesAt(a, offset) != bytesAt(b, offset)) return false;
    }
    return true;
}

}  // namespace

void copyStore(const std::string& from, const std::string& to) {
    const HeldStore source = openToRead(from);
    requireSetUp(*source, from);
    Watch watch("cp", "steps");
    WatchedStore watchedSource(*source, watch);
    {
        ChangedStore target(to, true);
        if (target->extent() != 0) {
            throw Failure(kCannotOpen, "the store " + to + " is not empty: a whole store is copied into an empty one");
        }
        WatchedStore watchedTarget(*target, watch);
        copyRecords(watchedSource, watchedTarget);
        target.keep();
    }
    const HeldStore copy = openToRead(to);
    WatchedStore watchedCopy(*copy, watch);
    if (isSame(watchedSource, watchedCopy)) return;
    throw Failure(kCannotFinish, "the store " + to + " is not what " + from +
                                     " was: it may be that somebody else has changed it as soon as it was there");
}

}  // namespace lvp::tool
