#include "tools/diff/HtmlReport.h"

#include "tools/base/Text.h"
#include "tools/diff/Excerpt.h"

namespace lvp::tool {

namespace {

constexpr const char* kStyle = R"(
:root { color-scheme: light dark; --text: #1f2328; --back: #fff; --line: #d0d7de; --soft: #656d76; --head: #f6f8fa;
  --added: #dafbe1; --removed: #ffebe9; --changed: #fff8c5; --moved: #ddf4ff; }
@media (prefers-color-scheme: dark) { :root { --text: #e6edf3; --back: #0d1117; --line: #30363d; --soft: #8d96a0;
  --head: #161b22; --added: #12361f; --removed: #45181b; --changed: #3a2f0c; --moved: #0f2f4d; } }
body { margin: 2rem auto; max-width: 80rem; padding: 0 1rem; font: 14px/1.5 system-ui, sans-serif;
  color: var(--text); background: var(--back); }
h1 { font-size: 1.3rem; } h2 { font-size: 1rem; margin: 1.5rem 0 .3rem; }
h2, td, th.side { overflow-wrap: anywhere; }
table { width: 100%; border-collapse: collapse; table-layout: fixed; border: 1px solid var(--line); }
th { text-align: left; background: var(--head); font-weight: 600; }
th, td { padding: .25rem .5rem; border-top: 1px solid var(--line); vertical-align: top; }
col.what { width: 5rem; } col.name { width: 22%; }
td.side { font-family: ui-monospace, monospace; white-space: pre-wrap; }
small { display: block; color: var(--soft); font-family: system-ui, sans-serif; }
tr.added td.b, tr.added td.what { background: var(--added); }
tr.removed td.a, tr.removed td.what { background: var(--removed); }
tr.changed td.side, tr.changed td.what { background: var(--changed); }
tr.moved td.side, tr.moved td.what { background: var(--moved); }
)";

/// A text as it may stand anywhere on a page.
std::string escaped(const std::string& text) {
    std::string out;
    for (const char character : text) {
        switch (character) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += character;
        }
    }
    return out;
}

std::string ownName(const tDifference& difference) {
    const std::string& path = difference.what == tWhat::kMoved ? difference.from : difference.path;
    return difference.owner.empty() ? path : path.substr(difference.owner.size() + 1);
}

/// The three cells that tell of a difference: what the row is about, and what each side has.
struct tCells {
    std::string note;
    std::string a;
    std::string b;
};

tCells cellsOf(const tDifference& difference) {
    const auto there = [&](const tSide& side) {
        return difference.isSet ? shownKind(difference)
                                : contentLine(side, difference.unit) + " " + shownKind(difference);
    };
    switch (difference.what) {
        case tWhat::kAdded:
            return {"", "", there(difference.b)};
        case tWhat::kRemoved:
            return {"", there(difference.a), ""};
        case tWhat::kMoved:
            return {shownKind(difference), shownPath(difference.from), shownPath(difference.path)};
        default:
            break;
    }
    const tExcerpt shown = excerpt(difference);
    std::string note = shownAspect(difference);
    if (!difference.unit.empty()) note += (note.empty() ? "" : ", ") + printable(difference.unit);
    if (!shown.note.empty()) note += (note.empty() ? "" : ", ") + shown.note;
    return {note, shown.a, shown.b};
}

}  // namespace

HtmlReport::HtmlReport(std::ostream& out, const std::string& a, const std::string& b) : _out(out) {
    const std::string left = escaped(printable(a));
    const std::string right = escaped(printable(b));
    _out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<meta name=\"viewport\" content=\"width=device-width\">\n<title>"
         << left << " and " << right << "</title>\n<style>" << kStyle << "</style>\n</head>\n<body>\n<h1>" << left
         << " and " << right << "</h1>\n";
    _head =
        "<colgroup><col class=\"what\"><col class=\"name\"><col><col></colgroup>\n<tr><th></th><th>Item</th>"
        "<th class=\"side\">" +
        left + "</th><th class=\"side\">" + right + "</th></tr>\n";
}

void HtmlReport::tell(const tDifference& difference) {
    if (!_open || _owner != difference.owner) beginSection(difference.owner);
    const char* const what = nameOf(difference.what);
    const tCells cells = cellsOf(difference);
    _out << "<tr class=\"" << what << "\"><td class=\"what\">" << what << "</td><td>"
         << escaped(shownPath(ownName(difference)));
    if (!cells.note.empty()) _out << "<small>" << escaped(cells.note) << "</small>";
    _out << "</td><td class=\"side a\">" << escaped(cells.a) << "</td><td class=\"side b\">" << escaped(cells.b)
         << "</td></tr>\n";
}

void HtmlReport::beginSection(const std::string& owner) {
    endSection();
    _owner = owner;
    _open = true;
    _out << "<h2>" << (owner.empty() ? "Top" : escaped(printable(owner))) << "</h2>\n<table>\n" << _head;
}

void HtmlReport::endSection() {
    if (_open) _out << "</table>\n";
    _open = false;
}

void HtmlReport::finish(const tCounts& counts, unsigned long faults) {
    endSection();
    std::string line;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] == 0) continue;
        line += (line.empty() ? "" : ", ") + std::to_string(counts[i]) + " " + nameOf(static_cast<tWhat>(i));
    }
    if (line.empty()) line = "No differences";
    if (faults != 0) line += "; " + std::to_string(faults) + (faults == 1 ? " fault" : " faults") + " in what was read";
    _out << "<p>" << line << ".</p>\n</body>\n</html>\n";
}

}  // namespace lvp::tool
