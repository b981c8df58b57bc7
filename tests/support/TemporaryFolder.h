#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

/// A new folder for one test, removed with all that is in it at the end.
class TemporaryFolder {
public:
    TemporaryFolder() : TemporaryFolder(std::filesystem::temp_directory_path()) {}

    /// Makes it below `parent`.
    explicit TemporaryFolder(const std::filesystem::path& parent) {
        std::string name = (std::filesystem::canonical(parent) / "lvp-test-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::runtime_error("cannot make " + name);
        _path = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The folder itself, by a name without symbolic links.
    const std::filesystem::path& path() const { return _path; }
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

    /// Removes all that is in it.
    void clear() const {
        for (const auto& entry : std::filesystem::directory_iterator(_path)) std::filesystem::remove_all(entry.path());
    }

private:
    std::filesystem::path _path;
};

/// The same in memory, where the system offers that: for tests that make thousands of files and prove nothing of what a
/// disk does.
class FastFolder : public TemporaryFolder {
public:
    FastFolder() : TemporaryFolder(parent()) {}

private:
    static std::filesystem::path parent() {
        const std::filesystem::path memory = "/dev/shm";
        return ::access(memory.c_str(), W_OK | X_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    }
};

/// All bytes of a file.
inline std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}
