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
    bool next(std::string_view& token) {
        if (_done) return false;
        std::size_t start = 0;
        while (start < _rest.size() && isSeparator(_rest[start])) ++start;
        std::size_t end = start;
        while (end < _rest.size() && !isSeparator(_rest[end])) ++end;
        token = _rest.substr(start, end - start);
        _rest.remove_prefix(end);
        _done = _rest.empty();
        return true;
    }

    /// The number of pieces in a text.
    static std::size_t count(std::string_view text);

private:
    static bool isSeparator(char character) {
        return character == ' ' || character == '\t' || character == '\n' || character == '\r';
    }

    std::string_view _rest;
    bool _done = false;
};

}  // namespace lumivard::platform::data
