#include "tests/postgres/load/Notes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <locale>
#include <sstream>
#include <system_error>

namespace lumivard::platform::stores::load {
namespace {

std::uint64_t now() {
    const auto time = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(time).count());
}

}  // namespace

Notes::Notes(const std::filesystem::path& path)
    : _file(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644)) {
    if (_file < 0) throw std::system_error(errno, std::generic_category(), path.string());
}

Notes::~Notes() {
    ::close(_file);
}

// In one piece: the process may be killed at any time.
void Notes::add(tOutcome outcome, std::uint64_t step, std::string_view words) const {
    std::string line(1, static_cast<char>(outcome));
    line += " " + std::to_string(step) + " " + std::to_string(now()) + " ";
    line += words;
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    if (::write(_file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        throw std::system_error(errno, std::generic_category(), "the notes could not be written");
    }
}

std::vector<tNote> Notes::read(const std::filesystem::path& path) {
    std::vector<tNote> notes;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (file.eof()) break;  // without its end
        std::istringstream fields(line);
        fields.imbue(std::locale::classic());
        char outcome = 0;
        tNote note{};
        fields >> outcome >> note.step >> note.time >> std::ws;
        note.outcome = static_cast<tOutcome>(outcome);
        std::getline(fields, note.words);
        notes.push_back(std::move(note));
    }
    return notes;
}

}  // namespace lumivard::platform::stores::load
