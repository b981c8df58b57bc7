#include "tools/items/TreePrinter.h"

#include "tools/base/Text.h"
#include "tools/documents/SubtreeFilter.h"

namespace lvp::tool {

namespace {

constexpr std::size_t kColumns = 60;  // of a value on its line

bool isSubElement(const std::string& name) {
    return name == "name" || name == "val" || name == "default";
}

bool isStructure(const std::string& kind) {
    return kind == "root" || kind == "table" || kind == "node" || kind == "group" || kind == "link";
}

void note(std::string& notes, const char* label, const char* value) {
    if (value && *value) notes.append("  ").append(label).append(shortened(value, kColumns));
}

}  // namespace

void TreePrinter::notifyStartElement(const char* name, const char** attributes) {
    _text.clear();
    const std::string kind = name;
    if (!isSubElement(kind)) {
        startItem(kind, attributes);
        return;
    }
    _sub = kind;
    if (const char* locale = attribute(attributes, "locale")) _locale = locale;
    if (kind == "default") note(_lines[_open.back()].notes, "default ", attribute(attributes, "unit"));
}

void TreePrinter::startItem(const std::string& kind, const char** attributes) {
    tLine line;
    line.depth = _open.size();
    line.isValue = !isStructure(kind);
    line.kind = kind;
    if (const char* name = attribute(attributes, "name")) line.name = printable(name);
    if (const char* units = attribute(attributes, "units")) line.units = printable(units);
    note(line.notes, "class ", attribute(attributes, "class"));
    note(line.notes, "type ", attribute(attributes, "type"));
    note(line.notes, "to ", attribute(attributes, "to"));
    note(line.notes, "at ", attribute(attributes, "uri"));
    _open.push_back(_lines.size());
    _lines.push_back(std::move(line));
}

void TreePrinter::notifyEndElement(const char*) {
    tLine& line = _lines[_open.back()];
    if (_sub == "name") {
        line.notes.append("  ")
            .append(printable(_locale))
            .append(" \"")
            .append(shortened(_text, kColumns))
            .append("\"");
    } else if (_sub == "val" || (_sub.empty() && line.isValue && !_text.empty())) {
        line.values.push_back(_text);
    }
    _text.clear();
    if (!_sub.empty()) {
        _sub.clear();
        return;
    }
    _open.pop_back();
}

void TreePrinter::notifyCharacterData(const char* data, int length) {
    _text.append(data, static_cast<std::size_t>(length));
}

void TreePrinter::print(std::ostream& out) const {
    // Whether a line is the last of its siblings shows only behind it, so the branches are drawn from the end.
    std::vector<std::string> branches(_lines.size());
    std::vector<bool> more;  // by depth: whether a sibling follows below
    for (std::size_t i = _lines.size(); i-- > 0;) {
        const std::size_t depth = _lines[i].depth;
        more.resize(depth + 1, false);
        for (std::size_t level = 1; level < depth; ++level) branches[i] += more[level] ? "│  " : "   ";
        if (depth > 0) branches[i] += more[depth] ? "├─ " : "└─ ";
        more[depth] = true;
    }
    for (std::size_t i = 0; i < _lines.size(); ++i) out << branches[i] << describe(_lines[i]) << '\n';
}

std::string TreePrinter::describe(const tLine& line) {
    std::string text = line.name;
    if (!line.values.empty()) {
        text += " = ";
        std::string joined;
        for (const std::string& value : line.values) joined += (joined.empty() ? "" : " | ") + value;
        text += shortened(joined, kColumns);
    }
    if (!line.units.empty()) text += " " + line.units;
    return text + "  [" + line.kind + "]" + line.notes;
}

}  // namespace lvp::tool
