#include "xml/Tokens.h"

namespace lumivard::platform::data {

std::size_t Tokens::count(std::string_view text) {
    std::size_t count = 0;
    std::string_view token;
    for (Tokens tokens(text); tokens.next(token);) ++count;
    return count;
}

}  // namespace lumivard::platform::data
