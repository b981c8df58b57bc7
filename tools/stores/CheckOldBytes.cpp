#include "tools/stores/CheckOldBytes.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tools/base/ExitStatus.h"
#include "tools/base/Location.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

[[noreturn]] void fail(const std::string& file) {
    throw Failure(kCannotFinish, "cannot write the old bytes to " + file + ": " +
                                     std::generic_category().message(errno) + "; nothing was repaired");
}

/// A file that was not there before; it goes again unless it is kept.
class NewFile {
public:
    explicit NewFile(const std::string& base) : _name(base) {
        for (unsigned int number = 2; !create(); ++number) _name = base + "-" + std::to_string(number);
    }
    ~NewFile() {
        if (_descriptor >= 0) ::close(_descriptor);
        if (!_kept) ::unlink(_name.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    void write(const std::string& text) const {
        for (std::size_t done = 0; done < text.size();) {
            const ssize_t count = ::write(_descriptor, text.data() + done, text.size() - done);
            if (count < 0 && errno != EINTR) fail(_name);
            if (count > 0) done += static_cast<std::size_t>(count);
        }
    }

    /// Brings it to the disk, its name too.
    const std::string& keep() {
        if (::fsync(_descriptor) != 0) fail(_name);
        const std::string folder = std::filesystem::absolute(_name).parent_path().string();
        const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0) fail(_name);
        const bool durable = ::fsync(descriptor) == 0;
        ::close(descriptor);
        if (!durable) fail(_name);
        _kept = true;
        return _name;
    }

private:
    /// False where the name is taken.
    bool create() {
        // What the store holds is nobody else's business.
        _descriptor = ::open(_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (_descriptor >= 0) return true;
        if (errno != EEXIST) fail(_name);
        return false;
    }

    std::string _name;
    int _descriptor = -1;
    bool _kept = false;
};

std::string hex(const std::string& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += kDigits[value >> 4];
        text += kDigits[value & 15];
    }
    return text;
}

}  // namespace

std::string keepOldBytes(const std::string& store, const check::Repair& repair) {
    NewFile file(fileBeside(store) + ".before-repair");
    file.write("lvp-data before-repair 1\n");
    for (const check::Step& step : repair.steps) {
        const std::string& bytes = step.before;
        file.write((step.erases ? "erase " : "change ") + std::to_string(step.offset) + " " +
                   std::to_string(bytes.size()) + " " + hex(bytes) + "\n");
    }
    return file.keep();
}

}  // namespace lvp::tool
