#include <algorithm>
#include <iostream>
#include <memory>

#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/Kinds.h"
#include "tools/base/Text.h"
#include "tools/items/ItemJson.h"
#include "tools/items/Items.h"
#include "tools/items/Line.h"

namespace lvp::tool {

namespace {

constexpr std::size_t kColumns = 60;  // of a value on its line

struct tOptions {
    std::string store;
    std::string path;
    bool with = false;
    bool hidden = false;
    bool json = false;
};

/// Gathers a line for each item that a set holds.
class Lines : public IVisitor {
public:
    Lines(const tOptions& options, bool inSet) : _options(options), _within(!inSet) {}

    void primitive(const tPrimitive& item) override {
        if (!shows(item.flags)) return;
        add(nameOf(item.valuetype), item.name);
        if (_options.with) _lines.back().value = valueLine(item, kColumns);
    }
    bool table(const tTable& item) override { return set("table", item.name, item.flags); }
    bool container(const tContainer& item) override {
        const std::size_t before = _lines.size();
        const bool enters = set(nameOf(item.type), item.name, item.flags);
        if (_lines.size() > before && !item.target.empty()) _lines.back().target = printable(utf8(item.target));
        return enters;
    }

    void print() const {
        std::size_t widest = 0;
        for (const tLine& line : _lines) widest = std::max(widest, line.kind.size());
        for (const tLine& line : _lines) {
            if (_options.with) std::cout << line.kind << std::string(widest + 2 - line.kind.size(), ' ');
            std::cout << line.name;
            if (!line.value.empty()) std::cout << " = " << line.value;
            if (_options.with && !line.target.empty()) std::cout << " to " << line.target;
            std::cout << '\n';
        }
    }

private:
    struct tLine {
        std::string kind;
        std::string name;
        std::string value;
        std::string target;  ///< of a link
    };

    bool shows(unsigned char flags) const { return _options.hidden || (flags & kHidden) == 0; }
    bool set(const char* kind, std::wstring_view name, unsigned char flags) {
        if (!_within) return _within = true;
        if (shows(flags)) add(kind, name);
        return false;
    }
    void add(const char* kind, std::wstring_view name) { _lines.push_back({kind, printable(utf8(name)), {}, {}}); }

    const tOptions& _options;
    bool _within;  ///< what is shown is held by the set
    std::vector<tLine> _lines;
};

tExitStatus list(const tOptions& options) {
    const auto store = openToRead(options.store);
    requireSetUp(*store, options.store);
    const tItem kind = options.path.empty() ? tItem::kContainer : itemAt(*store, options.path);
    if (kind == tItem::kNothing) refusePath(*store, options.store, options.path);
    if (options.json) {
        printItems(*store, options.store, options.path,
                   {.levels = options.path.empty() ? std::size_t{1} : 2, .hidden = options.hidden});
    } else {
        Lines lines(options, !options.path.empty() && kind != tItem::kPrimitive);
        visit(*store, options.path, lines);
        lines.print();
    }
    flushOutput();
    return kDone;
}

}  // namespace

void declareList(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("ls", "List what a container or table holds, one name a line", "ls -l materials.lvp Carbon.Graphite",
             [options] { return list(*options); })
        .store(options->store)
        .part(options->path)
        .flag("-l,--long", options->with, "With kinds, values and units")
        .flag("--hidden", options->hidden, "With what schemas have given and nobody has changed")
        .json(options->json);
}

}  // namespace lvp::tool
