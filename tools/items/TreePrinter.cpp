#include "tools/items/TreePrinter.h"

#include <algorithm>

#include "tools/base/Kinds.h"
#include "tools/base/Text.h"
#include "tools/base/Units.h"
#include "tools/items/Items.h"
#include "tools/items/Line.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

constexpr std::size_t kColumns = 60;    // of a value, and of each text, on its line
constexpr std::size_t kBranches = 100;  // before a line

}  // namespace

void TreePrinter::root(const tRoot& item) {
    static constexpr const char* kpKinds[] = {"root", "table", "node", "group", "link"};
    add(item.name, {}, kpKinds[item.kind]);
    note("class ", item.base);
    note("to ", item.target);
    enter();
}

void TreePrinter::primitive(const tPrimitive& item) {
    if (passesOver(item.flags)) return;
    add(item.name, valueLine(item, kColumns, _layouts.of(item)), nameOf(item.valuetype));
    note("type ", item.schema);
    note("locale ", item.valuelocale);
}

bool TreePrinter::table(const tTable& item) {
    if (passesOver(item.flags)) return false;
    add(item.name, {}, "table");
    note("class ", item.base);
    return enter();
}

bool TreePrinter::container(const tContainer& item) {
    if (passesOver(item.flags)) return false;
    add(item.name, {}, nameOf(item.type));
    note("class ", item.base);
    note("to ", item.target);
    return enter();
}

void TreePrinter::text(std::wstring_view locale, std::wstring_view text) {
    if (_passed) return;
    _lines.back().text += "  " + printable(utf8(locale)) + " \"" + shortened(utf8(text), kColumns) + "\"";
}

void TreePrinter::unitDefault(units::tUnit units, metadata::tValue valuetype) {
    _lines.back().text += "  default " + printable(unitName(units)) + " " + nameOf(valuetype);
}

bool TreePrinter::passesOver(unsigned char flags) {
    return _passed = (flags & kHidden) && !_hidden && !(_byPath && _depth == 0);
}

void TreePrinter::add(std::wstring_view name, const std::string& value, const char* kind) {
    std::string text = printable(utf8(name));
    if (!value.empty()) text += " = " + value;
    _lines.push_back({_depth, text + "  [" + kind + "]"});
}

void TreePrinter::note(const char* label, std::wstring_view text) {
    if (!text.empty()) _lines.back().text.append("  ").append(label).append(shortened(utf8(text), kColumns));
}

bool TreePrinter::enter() {
    ++_depth;
    return true;
}

void TreePrinter::print(std::ostream& out) const {
    // Whether a line is the last of its siblings shows only behind it.
    std::vector<bool> last(_lines.size());
    std::vector<bool> more;  // by depth: whether a sibling follows
    for (std::size_t i = _lines.size(); i-- > 0;) {
        more.resize(_lines[i].depth + 1, false);
        last[i] = !more.back();
        more.back() = true;
    }
    for (std::size_t i = 0; i < _lines.size(); ++i) {
        const std::size_t depth = _lines[i].depth;
        more.resize(depth + 1);
        more[depth] = !last[i];
        const std::size_t first = depth - std::min(depth, kBranches);
        if (first > 0) out << "(" << first << " levels) ";
        for (std::size_t level = first + 1; level < depth; ++level) out << (more[level] ? "│  " : "   ");
        if (depth > 0) out << (last[i] ? "└─ " : "├─ ");
        out << _lines[i].text << '\n';
    }
}

}  // namespace lvp::tool
