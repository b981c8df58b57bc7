#include "stores/lmdb/LockFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <string>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/Environment.h"
#include "stores/lmdb/FileRegistry.h"
#include "stores/lmdb/PageFormat.h"
#include "stores/lmdb/PageReader.h"
#include "stores/lmdb/RangeLock.h"

namespace lumivard::platform::stores {
namespace {

namespace page = lmdb::page;

constexpr char kSuffix[] = "-lock";
constexpr char kServesAnother[] = "another file that had its name before is still open somewhere";
constexpr char kServedByAnother[] =
    "others have it open by another name, or where its lock file was another one, and would not know of this use";

// Where a file tells which other it goes with: far behind its end, and behind the numbers of processes, which LMDB
// locks in its own.
constexpr off_t kFirstPlace = off_t{1} << 40;
constexpr off_t kPlaces = off_t{1} << 60;
constexpr off_t kNoLockFile = kFirstPlace - 1 + kPlaces;

constexpr char kNotLocked[] = "it could not be marked as in use: ";

// One lock file is looked up, opened and entered at a time.
std::mutex& opening() {
    static auto* const mutex = new std::mutex;  // never destroyed: stores may be static objects
    return *mutex;
}

off_t placeOf(const struct stat& file) {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
    const std::uint64_t number = std::uint64_t{file.st_ino} ^ std::uint64_t{file.st_dev} * kSpread;
    return kFirstPlace + static_cast<off_t>(number % (kPlaces - 1));
}

// Whether others hold places from `first` on, `count` of them.
bool held(int descriptor, off_t first, off_t count) {
    if (count == 0) return false;
    RangeLock range{F_WRLCK, first, count};
    if (const int error = range.call(descriptor, F_OFD_GETLK)) throw EngineError(kNotLocked + systemReason(error));
    return range.type != F_UNLCK;
}

// Declares that a file goes with the one that has this place; false where somebody has declared another. Locks belong
// to the descriptor, so that they end with it and with the process. Two who come at the same moment, for two files, see
// each other: both are refused.
bool goesWith(int descriptor, off_t place) {
    RangeLock range{F_RDLCK, place, 1};
    if (const int error = range.call(descriptor, F_OFD_SETLK)) throw EngineError(kNotLocked + systemReason(error));
    const off_t behind = place + 1;
    return !held(descriptor, kFirstPlace, place - kFirstPlace) &&
           !held(descriptor, behind, kFirstPlace + kPlaces - behind);
}

// Whether a file that has the name of a lock file is a store. What else it may hold is what a lock file may hold after
// the machine has died.
bool isStoreFile(int descriptor) {
    std::array<std::byte, page::kMetaEnd> bytes{};
    if (!lmdb::PageReader(descriptor).read(0, bytes)) return false;
    const page::Meta meta = page::meta(bytes);
    return meta.page == 0 && meta.flags == page::kMeta && meta.magic == page::kMagic;
}

// A new lock file is for everybody whom the store is for, whoever comes first.
void giveRights(int descriptor, const struct stat& store) {
    constexpr mode_t kRights = 0666;
    constexpr mode_t kOwners = 0600;  // who may read a store that nobody writes to enters himself here
    static_cast<void>(!::fchown(descriptor, store.st_uid, store.st_gid));  // as far as the process may
    static_cast<void>(!::fchmod(descriptor, (store.st_mode & kRights) | kOwners));
}

}  // namespace

LockFile::LockFile(const std::filesystem::path& path, const FileHandle& store) : _process(::getpid()) {
    const std::filesystem::path name = nameFor(path);
    const std::lock_guard alone(opening());
    if (::stat(name.c_str(), &_status) == 0 && FileRegistry::has(_status)) throw EngineError(kServesAnother);
    _open(name, store.status());
    if (!_descriptor) {
        if (!goesWith(store.descriptor(), kNoLockFile)) throw EngineError(kServedByAnother);
        return;
    }
    if (isStoreFile(_descriptor.get())) {
        throw EngineError("its lock file would be \"" + name.filename().string() + "\", which is a store");
    }
    _reserve();
    if (::fstat(_descriptor.get(), &_status) != 0) throw EngineError(systemReason(errno));
    if (!goesWith(_descriptor.get(), placeOf(store.status()))) throw EngineError(kServesAnother);
    if (!goesWith(store.descriptor(), placeOf(_status))) throw EngineError(kServedByAnother);
    if (!FileRegistry::enter(_status)) throw EngineError(kServesAnother);
}

LockFile::~LockFile() {
    if (!_descriptor) return;
    const std::lock_guard alone(opening());
    const bool mine = ::getpid() == _process;
    if (mine) RangeLock{F_UNLCK}.call(_descriptor.get(), F_OFD_SETLK);  // a child made by fork() may have it still
    _descriptor = FileDescriptor();
    if (mine) FileRegistry::leave(_status);
}

void LockFile::_open(const std::filesystem::path& name, const struct stat& store) {
    constexpr int kMostTries = 10;
    constexpr int kFlags = O_RDWR | O_CLOEXEC | O_NOFOLLOW;
    for (int tries = 0; tries < kMostTries; ++tries) {
        _descriptor = FileDescriptor(::open(name.c_str(), kFlags));
        if (!_descriptor && errno == ENOENT) {
            _descriptor = FileDescriptor(::open(name.c_str(), kFlags | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR));
            if (_descriptor) giveRights(_descriptor.get(), store);
        }
        if (_descriptor || errno == EROFS) return;
        if (errno != EEXIST) break;
    }
    throw EngineError("its lock file \"" + name.filename().string() +
                      "\" cannot be opened for writing: " + systemReason(errno));
}

// LMDB maps the file into memory and lets it grow without: on a disk that is full, writing there would end the process.
void LockFile::_reserve() const {
    // Not posix_fallocate(): where the system cannot do it, that one writes, and others may be at work in the file.
    int error = 0;
    do {
        error = ::fallocate(_descriptor.get(), 0, 0, lmdb::kLockFileLength) == 0 ? 0 : errno;
    } while (error == EINTR);
    if (error != EOPNOTSUPP && error != ENOSYS) lmdb::check(error);
}

void LockFile::requireRoomForName(const std::filesystem::path& path) {
    constexpr std::size_t kLongest = NAME_MAX - (sizeof(kSuffix) - 1);
    if (path.filename().string().size() <= kLongest) return;
    throw EngineError("its name has more than " + std::to_string(kLongest) +
                      " bytes, and there must be room for that of its lock file");
}

std::filesystem::path LockFile::nameFor(const std::filesystem::path& path) {
    return path.string() + kSuffix;
}

}  // namespace lumivard::platform::stores
