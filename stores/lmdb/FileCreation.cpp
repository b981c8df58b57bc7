#include "stores/lmdb/FileCreation.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <string>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/Environment.h"
#include "stores/lmdb/FileDescriptor.h"
#include "stores/lmdb/FileHandle.h"
#include "stores/lmdb/HeaderFormat.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMapSize = 1 << 20;  // for the header alone
constexpr mode_t kFileMode = 0666;

[[noreturn]] void fail(int error) {
    throw EngineError("it could not be created: " + systemReason(error));
}

/// A new, empty file in a folder, which is removed again unless it got another name.
class NewFile {
public:
    explicit NewFile(const fs::path& folder) {
        static std::atomic<unsigned int> number{0};
        do {
            const std::string name =
                ".lvp-store-" + std::to_string(::getpid()) + "-" + std::to_string(++number) + ".new";
            _path = folder / name;
            _descriptor = FileDescriptor(::open(_path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode));
        } while (!_descriptor && errno == EEXIST);
        if (!_descriptor) fail(errno);
    }
    ~NewFile() {
        if (!_path.empty()) ::unlink(_path.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    const fs::path& path() const { return _path; }
    int descriptor() const { return _descriptor.get(); }

    /// Gives the file its name; false when that is taken.
    bool rename(const fs::path& name) {
        if (::renameat2(AT_FDCWD, _path.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0) {
            _path.clear();
            return true;
        }
        // Some file systems cannot rename without replacing. A second name, with the first removed after, does the
        // same.
        if (errno == EINVAL && ::link(_path.c_str(), name.c_str()) == 0) return true;
        if (errno == EEXIST) return false;
        fail(errno);
    }

private:
    fs::path _path;
    FileDescriptor _descriptor;
};

void makeDurable(int descriptor) {
    if (::fsync(descriptor) != 0) fail(errno);
}

// The database is created in a transaction of its own: flags set in one that is then undone would be lost without a
// word.
void layOut(const fs::path& path) {
    using namespace lmdb;
    const Environment environment = openEnvironment(path, MDB_NOLOCK, kMapSize);  // nobody else knows the file
    MDB_dbi records = 0;
    Transaction first = begin(environment, 0);
    check(mdb_dbi_open(first.get(), nullptr, MDB_INTEGERKEY, &records));
    check(commit(std::move(first)));

    Transaction second = begin(environment, 0);
    std::uint64_t key = header::kKey;
    auto value = header::encode({});
    MDB_val keyBytes{sizeof key, &key};
    MDB_val valueBytes{value.size(), value.data()};
    check(mdb_put(second.get(), records, &keyBytes, &valueBytes, 0));
    check(commit(std::move(second)));
}

}  // namespace

void createStoreFile(const fs::path& path, std::optional<long> fileSystem) {
    const fs::path folder = path.parent_path();
    NewFile file(folder);
    refuseNetwork(file.descriptor(), fileSystem);
    layOut(file.path());
    makeDurable(file.descriptor());
    if (!file.rename(path)) return;
    const FileDescriptor folderDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folderDescriptor) fail(errno);
    makeDurable(folderDescriptor.get());
}

}  // namespace lumivard::platform::stores
