#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lvp::tool {

/// Those of some names that are nearest to a text, at most `most` of them, the nearest first: those that hold it, and
/// those that become it by few changes. Large and small letters are the same.
std::vector<std::string> nearest(std::string_view text, const std::vector<std::string>& names, std::size_t most);

/// A text in small letters; other characters than ASCII stay.
std::string lower(std::string_view text);

/// Texts with ", " between them.
std::string listed(const std::vector<std::string>& texts);

}  // namespace lvp::tool
