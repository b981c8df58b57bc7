#include <iostream>
#include <memory>

#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/documents/Document.h"
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

tExitStatus printTree(const tOptions& options) {
    Schemas schemas(options.schemas);
    IDataStore& store = schemas.storeToRead(options.store);
    if (options.json) {
        if (!options.path.empty() && itemAt(store, options.path) == tItem::kNothing) {
            refusePath(store, options.store, options.path);
        }
        printItems(store, options.store, options.path, {.hidden = options.hidden});
    } else {
        TreePrinter printer;
        readItem(store, options.store, options.path, schemas.locator(), printer);
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
        .flag("--hidden", options->hidden, "Show what schemas have given and nobody has changed, too", "--json");
}

}  // namespace lvp::tool
