#pragma once

#include <string>
#include <string_view>

namespace lvp::tool {

/// A character that may not reach a terminal: how many bytes it has in UTF-8, and which one it is. No bytes for none.
struct tUnsafe {
    std::size_t bytes = 0;
    unsigned int character = 0;
};

/// What a text begins with, if it is a control character, with which hostile text could take hold of a terminal, or one
/// that ends a line or turns the direction of text (U+061C, U+200E, U+200F, U+2028 to U+202E, U+2066 to U+2069).
tUnsafe unsafeAt(std::string_view text);

/// Text in UTF-8 as it may stand on a terminal: such characters become escapes (`\n`, `\x1b`, `\u202e`).
std::string printable(std::string_view text);

/// The same, cut to about `columns` characters, with an ellipsis in place of what is left out.
std::string shortened(std::string_view text, std::size_t columns);

}  // namespace lvp::tool
