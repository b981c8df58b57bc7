#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace lumivard::platform::stores::load {

/// What became of a step.
enum class tOutcome : char {
    kAcknowledged = 'a',
    kUnknown = 'u',  ///< the store has said that it is not known whether it was stored
    kGivenUp = 'g',  ///< not stored, since somebody else had got in between
    kRefused = 'r',  ///< not stored, for another reason
    kFailed = 'e',   ///< the store could not be reached, or its guard not be had: nothing was to be stored
    kLooked = 'l'    ///< of a reader: how often it has looked
};

/// A line of the notes.
struct tNote {
    tOutcome outcome;
    std::uint64_t step;
    std::uint64_t time;  ///< in microseconds since 1970, to be compared between processes
    std::string words;   ///< of the error
};

/// What a process has seen of a store, in a file that outlasts it: a line a step, written at once.
class Notes {
public:
    explicit Notes(const std::filesystem::path& path);
    ~Notes();
    Notes(const Notes&) = delete;
    Notes& operator=(const Notes&) = delete;

    void add(tOutcome outcome, std::uint64_t step, std::string_view words = {}) const;

    /// All whole lines; none where there is no file.
    static std::vector<tNote> read(const std::filesystem::path& path);

private:
    int _file;
};

}  // namespace lumivard::platform::stores::load
