#include "bench/workloads/Measure.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

namespace lvp::bench {

Resident resident() {
    // The peak that getrusage tells is handed on through exec and may be that of another program.
    Resident resident{0, 0};
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") status >> resident.peak;
        if (word == "VmRSS:") status >> resident.now;
    }
    return {resident.now * 1024, resident.peak * 1024};
}

std::uintmax_t bytesOf(const std::filesystem::path& file) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    return error ? 0 : size;
}

void makeDurable(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    const bool done = descriptor >= 0 && ::fsync(descriptor) == 0;
    const int cause = errno;
    if (descriptor >= 0) ::close(descriptor);
    if (!done) throw std::system_error(cause, std::generic_category(), "cannot flush " + file.string());
}

void copyFile(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::filesystem::remove(to);
    std::filesystem::copy_file(from, to);
    makeDurable(to);
}

}  // namespace lvp::bench
