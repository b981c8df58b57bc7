#include "xml/Tokens.h"

#include <algorithm>

namespace lumivard::platform::data {

namespace {

constexpr const char* kSeparators = " \t\n\r";

}  // namespace

bool Tokens::next(std::string_view& token) {
    if (_done) return false;
    _rest.remove_prefix(std::min(_rest.find_first_not_of(kSeparators), _rest.size()));
    token = _rest.substr(0, _rest.find_first_of(kSeparators));
    _rest.remove_prefix(token.size());
    _done = _rest.empty();
    return true;
}

std::size_t Tokens::count(std::string_view text) {
    std::size_t count = 0;
    std::string_view token;
    for (Tokens tokens(text); tokens.next(token);) ++count;
    return count;
}

}  // namespace lumivard::platform::data
