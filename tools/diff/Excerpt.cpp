#include "tools/diff/Excerpt.h"

#include <algorithm>

#include "tools/base/Text.h"

namespace lvp::tool {

namespace {

constexpr std::size_t kColumns = 60;  // of each side on its line
constexpr std::size_t kBefore = 20;   // characters that are shown before the first one that differs
constexpr std::uint64_t kValuesBefore = 2;
constexpr const char* kNothing = "(none)";

bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u;
}

std::size_t columnsOf(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !continues(byte); }));
}

/// Where two texts begin to differ, at the begin of a character.
std::size_t parting(const std::string& a, const std::string& b) {
    const std::size_t common = std::min(a.size(), b.size());
    const auto parted = std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(common), b.begin()).first;
    auto at = static_cast<std::size_t>(parted - a.begin());
    while (at > 0 && at < a.size() && continues(a[at])) --at;
    return at;
}

/// A part of a text about a place in it, with an ellipsis for what is left out.
std::string cutAround(const std::string& text, std::size_t at) {
    std::size_t begin = std::min(at, text.size());
    for (std::size_t i = 0; begin > 0 && i < kBefore; ++i) {
        do --begin;
        while (begin > 0 && continues(text[begin]));
    }
    std::size_t end = begin;
    for (std::size_t i = 0; end < text.size(); ++end) {
        if (!continues(text[end]) && ++i > kColumns) break;
    }
    return (begin > 0 ? "…" : "") + printable(std::string_view(text).substr(begin, end - begin)) +
           (end < text.size() ? "…" : "");
}

/// How a single value is written: texts in quotes.
struct tStyle {
    bool quotes;
    const char* between;

    std::string marked(const std::string& text) const { return quotes ? '"' + text + '"' : text; }
};

tStyle styleOf(const tDifference& difference, const tSide& side) {
    if (difference.aspect == tAspect::kOrder) return {false, ", "};
    const bool named = difference.aspect == tAspect::kText || difference.aspect == tAspect::kName;
    return {side.sort == tSide::tSort::kValues ? side.form == tForm::kTexts : side.sort == tSide::tSort::kText && named,
            " "};
}

/// All of a side on one line, if it is there and not too long.
bool wholeLine(const tSide& side, const tStyle& style, std::string& line) {
    if (!side.whole) return false;
    line.clear();
    for (const std::string& value : side.values) {
        line += (line.empty() ? "" : style.between) + style.marked(value);
        if (line.size() > kColumns * 4) return false;
    }
    if (columnsOf(line) > kColumns) return false;
    line = printable(line);
    if (line.empty() || side.sort == tSide::tSort::kNothing) line = kNothing;
    if (side.sort == tSide::tSort::kUri) line = "at " + line;
    return true;
}

/// Values beginning with that at an index, as many as there is room for.
std::string valuesFrom(const tSide& side, const tStyle& style, std::uint64_t index) {
    if (index >= side.count) return kNothing;
    index = std::max(index, side.start);
    std::string line;
    std::size_t columns = 0;
    for (; index - side.start < side.values.size() && columns < kColumns; ++index) {
        const std::string value = style.marked(shortened(side.values[index - side.start], kColumns));
        columns += columnsOf(value) + 1;
        line += (line.empty() ? "" : style.between) + value;
    }
    return line + (index < side.count ? " …" : "");
}

const std::string& firstText(const tSide& side, std::uint64_t first) {
    static const std::string kNone;
    const std::uint64_t at = side.sort == tSide::tSort::kValues && side.form != tForm::kBytes ? first - side.start : 0;
    return at < side.values.size() ? side.values[at] : kNone;
}

std::string cutText(const tSide& side, const tStyle& style, std::uint64_t first, std::size_t at) {
    if (side.sort == tSide::tSort::kNothing || (side.sort == tSide::tSort::kValues && first >= side.count)) {
        return kNothing;
    }
    return (side.sort == tSide::tSort::kUri ? "at " : "") + style.marked(cutAround(firstText(side, first), at));
}

std::string countNote(const tDifference& difference, const char* each) {
    const std::uint64_t most = std::max(difference.a.count, difference.b.count);
    std::string note = std::string("first at ") + each + std::to_string(difference.first) + ", " +
                       std::to_string(difference.differing) + " of " + std::to_string(most) + " differ";
    if (difference.a.count != difference.b.count) {
        note += ", " + std::to_string(difference.a.count) + " -> " + std::to_string(difference.b.count) + " in all";
    }
    return note;
}

bool areNumbers(const tSide& side) {
    return side.sort == tSide::tSort::kValues && side.form != tForm::kTexts && side.form != tForm::kBytes;
}

bool isList(const tDifference& difference) {
    return difference.aspect == tAspect::kOrder || (areNumbers(difference.a) && areNumbers(difference.b));
}

}  // namespace

tExcerpt excerpt(const tDifference& difference) {
    const tSide& a = difference.a;
    const tSide& b = difference.b;
    const tStyle left = styleOf(difference, a);
    const tStyle right = styleOf(difference, b);
    tExcerpt shown;
    if (wholeLine(a, left, shown.a) && wholeLine(b, right, shown.b)) return shown;
    const std::uint64_t first = difference.first;
    if (isList(difference)) {
        const std::uint64_t from = first - std::min(first, kValuesBefore);
        const std::string before = from > 0 ? "… " : "";
        shown.a = before + valuesFrom(a, left, from);
        shown.b = before + valuesFrom(b, right, from);
        shown.note = countNote(difference, "");
        return shown;
    }
    const std::size_t at = parting(firstText(a, first), firstText(b, first));
    shown.a = cutText(a, left, first, at);
    shown.b = cutText(b, right, first, at);
    if (difference.aspect == tAspect::kValue && std::max(a.count, b.count) > 1) {
        shown.note = countNote(difference, a.form == tForm::kBytes && b.form == tForm::kBytes ? "byte " : "");
    } else {
        shown.note = "first at character " + std::to_string(columnsOf(firstText(a, first).substr(0, at)));
    }
    return shown;
}

std::string contentLine(const tSide& side, const std::string& unit) {
    const tStyle style{side.sort == tSide::tSort::kValues && side.form == tForm::kTexts, " "};
    std::string line;
    if (!wholeLine(side, style, line)) {
        line =
            side.sort == tSide::tSort::kUri ? "at " + shortened(side.values[0], kColumns) : valuesFrom(side, style, 0);
    }
    return unit.empty() ? line : line + " " + printable(unit);
}

std::string shownPath(const std::string& path) {
    return path.empty() ? "(root)" : printable(path);
}

std::string shownAspect(const tDifference& difference) {
    if (difference.aspect == tAspect::kValue || difference.aspect == tAspect::kUri) return {};
    std::string aspect = nameOf(difference.aspect);
    if (difference.aspect == tAspect::kText) aspect.append(" ").append(shortened(difference.key, kColumns));
    return aspect;
}

std::string shownKind(const tDifference& difference) {
    std::string kind = "[" + difference.kind;
    if (difference.held != 0)
        kind += ", " + std::to_string(difference.held) + (difference.held == 1 ? " item" : " items");
    return kind + "]";
}

}  // namespace lvp::tool
