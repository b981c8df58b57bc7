#pragma once

#include <string>

namespace lumivard::platform::data::check {

/// How much a finding matters.
enum class tSeverity : unsigned char {
    kNote,    ///< nothing is wrong: space that could be reclaimed, or something that surprises
    kStale,   ///< left behind by a process that died
    kDamage,  ///< content is wrong, or cannot be read
    kFatal    ///< nothing in the store can be reached
};

/// One thing that the checker found.
struct Finding {
    /// The name of the rule that is broken, as in `rules()`: "set.duplicate-name". A code that has been released keeps
    /// its name and its meaning; later releases may add others.
    const char* code = "";

    /// That of the rule, or less.
    tSeverity severity = tSeverity::kNote;

    /// The record that it was found in.
    unsigned int offset = 0;

    /// The names from the top down to the item, joined by "."; for a list or for localized names, to their owner. Empty
    /// for the top itself and for what is not reached from there. For people, not for finding the item again: a name of
    /// more than 60 characters is cut, with an ellipsis behind it, and of a path of more than 100 levels or about 1,000
    /// characters the lowest levels are told, behind "...".
    std::wstring path;

    /// What was found, in UTF-8. Names from the store stand in it as they are, control characters included.
    std::string found;

    /// What a repair does about it, in the same form; empty where it does nothing.
    std::string repair;
};

/// A rule that stores are checked by.
struct Rule {
    const char* code;     ///< its name, which stays
    tSeverity severity;   ///< of its findings, unless one says less
    const char* meaning;  ///< what was found where it is broken
    const char* repair;   ///< what a repair does about it; empty for nothing
};

}  // namespace lumivard::platform::data::check
