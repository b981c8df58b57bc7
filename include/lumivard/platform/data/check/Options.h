#pragma once

#include <cstddef>
#include <set>
#include <string>

namespace lumivard::platform::data::check {

/// What an examination looks at, and what a repair may do.
struct Options {
    /// Look at the characters and truth values that primitives hold, too; and look for records below the whole
    /// `extent()` of the store, however large it is.
    bool whole = false;

    /// Let a repair erase the records that nothing reaches. It does so only where it finds no damage to begin with,
    /// since what a damaged record held may be among them: after a repair of damage it takes a second one to erase what
    /// the first has left, and between the two there is time to look at it.
    bool reclaim = false;

    /// How many findings to keep; all are counted.
    std::size_t keep = 1000;

    /// Codes of rules that are not applied. With any of them a repair erases nothing.
    std::set<std::string> without{};
};

}  // namespace lumivard::platform::data::check
