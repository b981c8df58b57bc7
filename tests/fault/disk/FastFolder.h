#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace lumivard::platform::stores::disk {

/// A new folder for one test, removed with all that is in it at the end. It lies in memory where the system offers
/// that: what is simulated here needs no disk, and thousands of files come and go. Its path has no symbolic links.
class FastFolder {
public:
    FastFolder() {
        const std::filesystem::path memory = "/dev/shm";
        const bool usable = ::access(memory.c_str(), W_OK | X_OK) == 0;
        const auto parent = std::filesystem::canonical(usable ? memory : std::filesystem::temp_directory_path());
        std::string name = (parent / "lvp-test-XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::runtime_error("cannot make " + name);
        _path = name;
    }
    ~FastFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    FastFolder(const FastFolder&) = delete;
    FastFolder& operator=(const FastFolder&) = delete;

    const std::filesystem::path& path() const { return _path; }
    std::filesystem::path operator/(const std::string& name) const { return _path / name; }

    /// Removes all that is in it.
    void clear() const {
        for (const auto& entry : std::filesystem::directory_iterator(_path)) std::filesystem::remove_all(entry.path());
    }

private:
    std::filesystem::path _path;
};

}  // namespace lumivard::platform::stores::disk
