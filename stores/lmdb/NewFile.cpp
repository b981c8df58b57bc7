#include "stores/lmdb/NewFile.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores {
namespace {

[[noreturn]] void fail(int error) {
    throw EngineError("it could not be created: " + systemReason(error));
}

void flush(int descriptor) {
    if (::fsync(descriptor) != 0) fail(errno);
}

}  // namespace

NewFile::NewFile(const std::filesystem::path& folder, mode_t mode) {
    static std::atomic<unsigned int> number{0};
    do {
        const std::string name = ".lvp-store-" + std::to_string(::getpid()) + "-" + std::to_string(++number) + ".new";
        _path = folder / name;
        _descriptor = FileDescriptor(::open(_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    } while (!_descriptor && errno == EEXIST);
    if (!_descriptor) fail(errno);
}

NewFile::~NewFile() {
    if (!_path.empty()) ::unlink(_path.c_str());
}

void NewFile::makeDurable() {
    flush(_descriptor.get());
}

bool NewFile::rename(const std::filesystem::path& name) {
    if (::renameat2(AT_FDCWD, _path.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0) {
        _path.clear();
        return true;
    }
    // Some file systems cannot rename without replacing. A second name, with the first removed after, does the same.
    if ((errno == EINVAL || errno == ENOSYS) && ::link(_path.c_str(), name.c_str()) == 0) return true;
    if (errno == EEXIST) return false;
    fail(errno);
}

void NewFile::replace(const std::filesystem::path& name) {
    if (::rename(_path.c_str(), name.c_str()) != 0) fail(errno);
    _path.clear();
}

void NewFile::makeNamesDurable(const std::filesystem::path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor) fail(errno);
    flush(descriptor.get());
}

}  // namespace lumivard::platform::stores
