#pragma once

#include <string>
#include <string_view>

namespace lvp::tool {

/// Text in UTF-8 as it may stand on a terminal: control characters, with which hostile text could take hold of it,
/// become escapes (`\n`, `\x1b`), and so do those that turn the direction of text (`\u202e`).
std::string printable(std::string_view text);

/// The same, cut to about `columns` characters, with an ellipsis in place of what is left out.
std::string shortened(std::string_view text, std::size_t columns);

}  // namespace lvp::tool
