#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// A new folder for one test, removed with all that is in it at the end.
class TemporaryFolder {
public:
    /// On a disk; or in memory where the system offers that, for tests that make many files and do not need them to be
    /// durable.
    enum tPlace { kOnDisk, kInMemory };

    explicit TemporaryFolder(tPlace place = kOnDisk) {
        const std::filesystem::path memory = "/dev/shm";
        const bool inMemory = place == kInMemory && std::filesystem::is_directory(memory);
        std::string name = ((inMemory ? memory : std::filesystem::temp_directory_path()) / "lvp-test-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::runtime_error("cannot make " + name);
        _path = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return _path / name; }

    /// Makes a file of these bytes and returns its path.
    std::filesystem::path file(const std::string& name, const std::string& bytes) const {
        std::ofstream(_path / name, std::ios::binary) << bytes;
        return _path / name;
    }

    /// How many files and folders are in it.
    long entries() const {
        return std::distance(std::filesystem::directory_iterator(_path), std::filesystem::directory_iterator());
    }

private:
    std::filesystem::path _path;
};

/// All bytes of a file.
inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
