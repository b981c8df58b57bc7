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

void printJson(IDataStore& store, const tOptions& options) {
    if (!options.path.empty() && itemAt(store, options.path) == tItem::kNothing) {
        refusePath(store, options.store, options.path);
    }
    JsonWriter json(std::cout);
    json.beginObject();
    json.key("store").value(options.store);
    json.key("path").value(options.path);
    json.key("items").beginArray();
    ItemJson items(json, {.hidden = options.hidden});
    visit(store, options.path, items);
    items.finish();
    json.endArray();
    json.endObject();
    std::cout << '\n';
}

tExitStatus printTree(const tOptions& options) {
    Schemas schemas(options.schemas);
    IDataStore& store = schemas.storeToRead(options.store);
    if (options.json) {
        printJson(store, options);
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
