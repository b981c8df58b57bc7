#pragma once

#include <string_view>

namespace lvp::tool {

/// The page (tools/view/page), put together when the tool is built, up to the place of the data and behind it.
extern const std::string_view kPageBeforeData;
extern const std::string_view kPageAfterData;

}  // namespace lvp::tool
