#pragma once

#include <string>

#include "tools/diff/Difference.h"

namespace lvp::tool {

/// What both sides have, short enough to be read: of long values what stands about the first difference. Hostile text
/// is harmless in it.
struct tExcerpt {
    std::string a;
    std::string b;
    std::string note;  ///< where the first difference is, and how many there are; empty where all is shown
};
tExcerpt excerpt(const tDifference& difference);

/// What one side has, cut to some 60 characters, with the unit; empty for a set.
std::string contentLine(const tSide& side, const std::string& unit);

/// The path of a difference, or "(root)", and what of the item differs where that does not show by itself.
std::string shownPath(const std::string& path);
std::string shownAspect(const tDifference& difference);

/// What an item is, and how many a set holds: "[node, 12 items]".
std::string shownKind(const tDifference& difference);

}  // namespace lvp::tool
