#include "tools/diff/TextReport.h"

#include "tools/diff/Excerpt.h"

namespace lvp::tool {

namespace {

std::string changeLine(const tDifference& difference) {
    const tExcerpt shown = excerpt(difference);
    const std::string aspect = shownAspect(difference);
    std::string line = "~ " + shownPath(difference.path) + ":" + (aspect.empty() ? "" : " " + aspect) + " " + shown.a +
                       " -> " + shown.b;
    if (!difference.unit.empty()) line += " " + difference.unit;
    if (!shown.note.empty()) line += " (" + shown.note + ")";
    return line;
}

std::string presenceLine(const char* sign, const tDifference& difference, const tSide& side) {
    std::string line = sign + shownPath(difference.path);
    if (!difference.isSet) line += " = " + contentLine(side, difference.unit);
    return line + " " + shownKind(difference);
}

std::string lineOf(const tDifference& difference) {
    switch (difference.what) {
        case tWhat::kAdded:
            return presenceLine("+ ", difference, difference.b);
        case tWhat::kRemoved:
            return presenceLine("- ", difference, difference.a);
        case tWhat::kMoved:
            return "> " + shownPath(difference.from) + " -> " + shownPath(difference.path) + " " +
                   shownKind(difference);
        default:
            return changeLine(difference);
    }
}

}  // namespace

void TextReport::tell(const tDifference& difference) {
    static constexpr std::array kpColours{"\x1b[32m", "\x1b[31m", "\x1b[33m", "\x1b[36m"};
    if (_colours) _out << kpColours[static_cast<std::size_t>(difference.what)];
    _out << lineOf(difference);
    if (_colours) _out << "\x1b[0m";
    _out << '\n';
}

}  // namespace lvp::tool
