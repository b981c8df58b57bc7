#include "tests/fault/disk/SystemCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <fstream>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace lumivard::platform::stores::disk {
namespace {

using tKind = Call::tKind;
using tAnswer = Answer::tKind;

struct Opened {
    std::string path;
    ino_t file = 0;
    bool folder = false;
    bool synchronous = false;
};

struct State {
    std::mutex mutex;
    Tap* tap = nullptr;
    std::string folder;
    std::map<int, Opened> opened;
};

// Never destroyed: files are closed after everything that is.
State& state() {
    static auto* const all = new State;
    return *all;
}

std::atomic<bool> watching{false};
std::atomic<std::uint64_t> writeCalls{0};

/// The function behind ours: the system's, or a sanitizer's that goes on to it.
template <class Function>
Function* behind(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

bool below(const char* path) {
    const std::string& folder = state().folder;
    const std::string name = path;
    return name.compare(0, folder.size(), folder) == 0 && (name.size() == folder.size() || name[folder.size()] == '/');
}

bool watched(const char* path) {
    if (!watching) return false;
    const std::lock_guard held(state().mutex);
    return state().tap && below(path);
}

/// A call on a descriptor; false when the descriptor is none of ours.
bool watched(int descriptor, Call& call) {
    if (!watching) return false;
    const std::lock_guard held(state().mutex);
    const auto found = state().opened.find(descriptor);
    if (!state().tap || found == state().opened.end()) return false;
    call.path = found->second.path;
    call.file = found->second.file;
    call.folder = found->second.folder;
    call.synchronous = found->second.synchronous;
    return true;
}

Answer ask(const Call& call) {
    const std::lock_guard held(state().mutex);
    return state().tap ? state().tap->ask(call) : Answer{};
}

void tellDone(const Call& call) {
    const int error = errno;
    {
        const std::lock_guard held(state().mutex);
        if (state().tap) state().tap->done(call);
    }
    errno = error;
}

int failWith(int error) {
    errno = error;
    return -1;
}

/// A call without bytes, which is done as a whole or not at all.
template <class Work>
int whole(const Call& call, Work work) {
    const Answer answer = ask(call);
    if (answer.kind == tAnswer::kFail) return failWith(answer.error);
    if (answer.kind == (call.kind == tKind::kLock ? tAnswer::kGrant : tAnswer::kPretend)) return 0;
    const int result = work();
    if (result == 0) tellDone(call);
    return answer.kind == tAnswer::kReport ? failWith(answer.error) : result;
}

std::uint64_t placeOf(int descriptor) {
    return static_cast<std::uint64_t>(::lseek(descriptor, 0, SEEK_CUR));
}

template <class Work>
ssize_t someBytes(int descriptor, const char* data, std::size_t size, off_t at, Work work) {
    ++writeCalls;
    Call call(tKind::kWrite);
    if (!watched(descriptor, call)) return work(size);
    const bool moves = at < 0;
    call.position = moves ? placeOf(descriptor) : static_cast<std::uint64_t>(at);
    call.bytes.assign(data, size);
    const Answer answer = ask(call);
    if (answer.kind == tAnswer::kFail) return failWith(answer.error);
    if (answer.kind == tAnswer::kPretend) {
        if (moves) ::lseek(descriptor, static_cast<off_t>(size), SEEK_CUR);
        return static_cast<ssize_t>(size);
    }
    const ssize_t written = work(answer.kind == tAnswer::kShorten ? size / 2 : size);
    if (written < 0) return written;
    call.bytes.resize(static_cast<std::size_t>(written));
    tellDone(call);
    return answer.kind == tAnswer::kReport ? failWith(answer.error) : written;
}

std::string joined(const iovec* parts, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all.append(static_cast<const char*>(parts[i].iov_base), parts[i].iov_len);
    return all;
}

template <class Work>
int opening(const char* path, int flags, Work work) {
    if (!watched(path)) return work();
    Call call(tKind::kOpen);
    call.path = path;
    struct stat status = {};
    call.existed = ::stat(path, &status) == 0;
    call.writable = (flags & O_ACCMODE) != O_RDONLY;
    if (const Answer answer = ask(call); answer.kind == tAnswer::kFail) return failWith(answer.error);
    const int descriptor = work();
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0) return descriptor;
    call.file = status.st_ino;
    call.folder = S_ISDIR(status.st_mode);
    {
        const std::lock_guard held(state().mutex);
        state().opened[descriptor] = {path, call.file, call.folder, (flags & (O_SYNC | O_DSYNC)) != 0};
    }
    tellDone(call);
    return descriptor;
}

mode_t modeIn(int flags, va_list& arguments) {
    return (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned int)) : 0;
}

template <class Work>
int syncing(int descriptor, Work work) {
    Call call(tKind::kSync);
    return watched(descriptor, call) ? whole(call, work) : work();
}

template <class Work>
int naming(tKind kind, const char* from, const char* to, bool exclusive, Work work) {
    if (!watched(from)) return work();
    Call call(kind);
    call.exclusive = exclusive;
    call.path = from;
    call.other = to;
    return whole(call, work);
}

template <class Work>
int locking(int descriptor, bool takes, Work work) {
    Call call(tKind::kLock);
    return takes && watched(descriptor, call) ? whole(call, work) : work();
}

bool takesLock(int command, const void* argument) {
    if (command != F_SETLK && command != F_SETLKW && command != F_OFD_SETLK && command != F_OFD_SETLKW) return false;
    return static_cast<const struct flock*>(argument)->l_type != F_UNLCK;
}

}  // namespace

Watch::Watch(const std::filesystem::path& folder, Tap& tap) {
    State& all = state();
    const std::lock_guard held(all.mutex);
    if (all.tap) throw std::logic_error("a folder is watched already");
    all.tap = &tap;
    all.folder = folder.string();
    writeCalls = 0;
    watching = true;
}

Watch::~Watch() {
    State& all = state();
    const std::lock_guard held(all.mutex);
    watching = false;
    all.tap = nullptr;
    all.opened.clear();
}

std::uint64_t Watch::writes() const {
    return writeCalls;
}

std::uint64_t writesCountedBySystem() {
    std::ifstream counts("/proc/self/io");
    for (std::string line; std::getline(counts, line);) {
        if (line.rfind("syscw: ", 0) == 0) return std::stoull(line.substr(7));
    }
    return 0;
}

}  // namespace lumivard::platform::stores::disk

// --- What the library and the database call. A shared library finds these first, since they are the program's.

namespace shim = lumivard::platform::stores::disk;
#define LVP_INTERPOSED extern "C" __attribute__((visibility("default")))

LVP_INTERPOSED int open(const char* path, int flags, ...) {
    static const auto next = shim::behind<int(const char*, int, ...)>("open");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = shim::modeIn(flags, arguments);
    va_end(arguments);
    return shim::opening(path, flags, [&] { return next(path, flags, mode); });
}

LVP_INTERPOSED int close(int descriptor) {
    static const auto next = shim::behind<int(int)>("close");
    if (shim::watching) {
        const std::lock_guard held(shim::state().mutex);
        shim::state().opened.erase(descriptor);
    }
    return next(descriptor);
}

LVP_INTERPOSED ssize_t pread(int descriptor, void* data, size_t size, off_t at) {
    static const auto next = shim::behind<ssize_t(int, void*, size_t, off_t)>("pread");
    shim::Call call(shim::Call::tKind::kRead);
    if (!shim::watched(descriptor, call)) return next(descriptor, data, size, at);
    call.position = static_cast<std::uint64_t>(at);
    call.length = size;
    const shim::Answer answer = shim::ask(call);
    if (answer.kind == shim::Answer::tKind::kFail) return shim::failWith(answer.error);
    const ssize_t read = next(descriptor, data, answer.kind == shim::Answer::tKind::kShorten ? size / 2 : size, at);
    if (read >= 0) shim::tellDone(call);
    return read;
}

LVP_INTERPOSED ssize_t write(int descriptor, const void* data, size_t size) {
    static const auto next = shim::behind<ssize_t(int, const void*, size_t)>("write");
    return shim::someBytes(descriptor, static_cast<const char*>(data), size, -1,
                           [&](size_t part) { return next(descriptor, data, part); });
}

LVP_INTERPOSED ssize_t pwrite(int descriptor, const void* data, size_t size, off_t at) {
    static const auto next = shim::behind<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    return shim::someBytes(descriptor, static_cast<const char*>(data), size, at,
                           [&](size_t part) { return next(descriptor, data, part, at); });
}

LVP_INTERPOSED ssize_t writev(int descriptor, const iovec* parts, int count) {
    const std::string all = shim::joined(parts, count);
    static const auto next = shim::behind<ssize_t(int, const void*, size_t)>("write");
    return shim::someBytes(descriptor, all.data(), all.size(), -1,
                           [&](size_t part) { return next(descriptor, all.data(), part); });
}

LVP_INTERPOSED ssize_t pwritev(int descriptor, const iovec* parts, int count, off_t at) {
    const std::string all = shim::joined(parts, count);
    static const auto next = shim::behind<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    return shim::someBytes(descriptor, all.data(), all.size(), at,
                           [&](size_t part) { return next(descriptor, all.data(), part, at); });
}

LVP_INTERPOSED int ftruncate(int descriptor, off_t length) noexcept {
    static const auto next = shim::behind<int(int, off_t)>("ftruncate");
    shim::Call call(shim::Call::tKind::kTruncate);
    if (!shim::watched(descriptor, call)) return next(descriptor, length);
    call.length = static_cast<std::uint64_t>(length);
    return shim::whole(call, [&] { return next(descriptor, length); });
}

LVP_INTERPOSED int fallocate(int descriptor, int mode, off_t from, off_t length) {
    static const auto next = shim::behind<int(int, int, off_t, off_t)>("fallocate");
    shim::Call call(shim::Call::tKind::kAllocate);
    if (!shim::watched(descriptor, call)) return next(descriptor, mode, from, length);
    call.length = static_cast<std::uint64_t>(from + length);
    return shim::whole(call, [&] { return next(descriptor, mode, from, length); });
}

LVP_INTERPOSED int fsync(int descriptor) {
    static const auto next = shim::behind<int(int)>("fsync");
    return shim::syncing(descriptor, [&] { return next(descriptor); });
}

LVP_INTERPOSED int fdatasync(int descriptor) {
    static const auto next = shim::behind<int(int)>("fdatasync");
    return shim::syncing(descriptor, [&] { return next(descriptor); });
}

LVP_INTERPOSED int flock(int descriptor, int operation) noexcept {
    static const auto next = shim::behind<int(int, int)>("flock");
    return shim::locking(descriptor, (operation & LOCK_UN) == 0, [&] { return next(descriptor, operation); });
}

LVP_INTERPOSED int fcntl(int descriptor, int command, ...) {
    static const auto next = shim::behind<int(int, int, ...)>("fcntl");
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return shim::locking(descriptor, shim::takesLock(command, argument),
                         [&] { return next(descriptor, command, argument); });
}

LVP_INTERPOSED int rename(const char* from, const char* to) noexcept {
    static const auto next = shim::behind<int(const char*, const char*)>("rename");
    return shim::naming(shim::Call::tKind::kRename, from, to, false, [&] { return next(from, to); });
}

LVP_INTERPOSED int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                             unsigned int flags) noexcept {
    static const auto next = shim::behind<int(int, const char*, int, const char*, unsigned int)>("renameat2");
    return shim::naming(shim::Call::tKind::kRename, from, to, (flags & RENAME_NOREPLACE) != 0,
                        [&] { return next(fromFolder, from, toFolder, to, flags); });
}

LVP_INTERPOSED int link(const char* from, const char* to) noexcept {
    static const auto next = shim::behind<int(const char*, const char*)>("link");
    return shim::naming(shim::Call::tKind::kLink, from, to, false, [&] { return next(from, to); });
}

LVP_INTERPOSED int unlink(const char* path) noexcept {
    static const auto next = shim::behind<int(const char*)>("unlink");
    return shim::naming(shim::Call::tKind::kUnlink, path, "", false, [&] { return next(path); });
}
