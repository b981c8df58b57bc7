#pragma once

#include <string_view>
#include <vector>

namespace lvp::tool {

/// The page (tools/view/page), put together when the tool is built, up to the place of the data and behind it. In
/// pieces.
extern const std::vector<std::string_view> kPageBeforeData;
extern const std::vector<std::string_view> kPageAfterData;

}  // namespace lvp::tool
