#include <iostream>
#include <memory>

#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/items/ItemJson.h"
#include "tools/items/Items.h"
#include "tools/items/TreePrinter.h"
#include "tools/schemas/Schemas.h"

namespace lvp::tool {

namespace {

struct tOptions {
    std::string store;
    std::string path;
    std::vector<std::string> schemas;
    bool json = false;
    bool hidden = false;
};

/// There is something, but no way to it.
[[noreturn]] void refuseLoneValue(const std::string& store) {
    throw Failure(kCannotOpen, "at the top of the store " + store +
                                   " there is a value, which no path leads to; lvp-data export shows it");
}

tExitStatus printTree(const tOptions& options) {
    Schemas schemas(options.schemas);
    IDataStore& store = schemas.storeToRead(options.store);
    if (!options.path.empty() && itemAt(store, options.path) == tItem::kNothing) {
        refusePath(store, options.store, options.path);
    }
    if (options.json) {
        printItems(store, options.store, options.path, {.hidden = options.hidden});
    } else {
        TreePrinter printer(schemas.locator(), options.hidden, !options.path.empty());
        if (!visit(store, options.path, printer)) refuseLoneValue(options.store);
        printer.print(std::cout);
    }
    flushOutput();
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace

void declareTree(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("tree", "Show names, kinds, values and units as a tree", "tree materials.lvp Metal",
             [options] { return printTree(*options); })
        .store(options->store)
        .part(options->path)
        .schemas(options->schemas)
        .json(options->json)
        .flag("--hidden", options->hidden, "Show what schemas have given and nobody has changed, too");
}

}  // namespace lvp::tool
