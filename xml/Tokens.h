#pragma once

#include <cstddef>
#include <string_view>

namespace lumivard::platform::data {

/// Takes a list of numbers apart: pieces of text between runs of space, tab, line feed and carriage return. Other
/// control characters belong to a piece.
///
/// There is always a last piece at the end of the text, an empty one where the text is empty or ends in a separator.
/// The pieces are views of the text that was given.
class Tokens {
public:
    explicit Tokens(std::string_view text) : _rest(text) {}

    /// Gives the next piece; false, with `token` as it was, after the last one.
    bool next(std::string_view& token);

    /// The number of pieces in a text.
    static std::size_t count(std::string_view text);

private:
    std::string_view _rest;
    bool _done = false;
};

}  // namespace lumivard::platform::data
