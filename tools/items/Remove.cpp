#include <memory>

#include "tools/Verbs.h"
#include "tools/base/ChangedStore.h"
#include "tools/base/Files.h"
#include "tools/base/Kinds.h"
#include "tools/items/Items.h"

namespace lvp::tool {

namespace {

struct tOptions {
    std::string store;
    std::vector<std::string> paths;
    bool recursive = false;
};

/// Sees an item, and whether it holds anything.
class Contents : public IVisitor {
public:
    void primitive(const tPrimitive& item) override { see(item.flags); }
    bool table(const tTable& item) override { return see(item.flags); }
    bool container(const tContainer& item) override { return see(item.flags); }

    unsigned char flags = 0;
    bool any = false;

private:
    bool see(unsigned char bits) {
        if (!_seen) flags = bits;
        any = any || _seen;
        const bool enters = !_seen;
        _seen = true;
        return enters;
    }

    bool _seen = false;
};

void remove(IDataStore& store, const tOptions& options, const tItemPath& path) {
    if (itemAt(store, path.whole) == tItem::kNothing) refusePath(store, options.store, path.whole);
    const std::string item = path.whole + " in the store " + options.store;
    if (path.owner.empty()) throw Failure(kCannotOpen, item + " stands at the top, which nothing can leave");
    Contents contents;
    visit(store, path.whole, contents);
    if (contents.flags & kInherited) {
        throw Failure(kCannotOpen, item + " came from a schema and stays: only the item that has the schema can go");
    }
    if (contents.any && !options.recursive) {
        throw Failure(kWrongUsage, item + " holds other items: -r removes it with all of them");
    }
    if (!containerAt(store, path.owner) && !propertyAt(store, path.owner)) {
        throw Failure(kCannotOpen, item + " stands in a table at the top, which nothing can leave");
    }
    if (!destroyItem(store, path)) {
        throw Failure(kCannotFinish, item +
                                         " is in use and stays: a program that ended early left it open; lvp-data "
                                         "check --repair mends that");
    }
}

tExitStatus removeItems(const tOptions& options) {
    ChangedStore store(options.store, false);
    requireSetUp(*store, options.store);
    for (const std::string& path : options.paths) remove(*store, options, tItemPath(path));
    store.keep();
    return kDone;
}

}  // namespace

void declareRemove(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("rm", "Remove items; all of them, or none", "rm -r materials.lvp Other.MyGraphite",
             [options] { return removeItems(*options); })
        .store(options->store)
        .arguments("PATH", options->paths, "Names from the top down, joined by dots")
        .flag("-r,--recursive", options->recursive, "With all that they hold");
}

}  // namespace lvp::tool
