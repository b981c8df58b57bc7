#include <iostream>
#include <memory>

#include "lumivard/platform/data.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Location.h"
#include "tools/base/Text.h"
#include "tools/items/Items.h"
#include "tools/schemas/Conformance.h"
#include "tools/schemas/Schemas.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

/// A container or table that is compared with schemas.
class Subject {
public:
    Subject(IDataStore& store, const std::string& storeName, const std::string& path) {
        _container = containerAt(store, path);
        if (_container) return;
        _property = propertyAt(store, path);
        _table = metadata::ITable::to(_property.get());
        if (_table) return;
        if (itemAt(store, path) == tItem::kNothing) refusePath(store, storeName, path);
        throw Failure(kCannotOpen,
                      "the store " + storeName + " holds no container, and no table in one, at the path " + path);
    }

    bool validates(metadata::ISchema* schema) const {
        return _container ? _container->validates(schema, false) : _table->validates(schema);
    }
    /// The first difference from one of the schemas, behind its name.
    std::string difference(const std::vector<tNamedSchema>& schemas) const {
        bool empty = true;
        for (const tNamedSchema& named : schemas) {
            const std::string cause = _container ? firstDifference(*_container, named.schema.get())
                                                 : firstDifference(*_table, named.schema.get());
            if (!cause.empty()) return printable(named.uri) + ": " + cause;
            if (named.schema->layout()->fields() != 0) empty = false;
        }
        return printable(schemas.front().uri) + (empty ? ": there are no items in it, and it is not named in a class"
                                                       : ": items of one name stand in the way of each other");
    }

private:
    SharedPtr<structure::IContainer> _container;
    SharedPtr<metadata::IProperty> _property;
    metadata::ITable* _table = nullptr;
};

struct tOptions {
    std::string store;
    std::string path;
    std::string uris;
    std::vector<std::string> schemas;
    bool json = false;
};

void printJson(const tOptions& options, const std::string& difference) {
    JsonWriter json(std::cout);
    json.beginObject();
    json.key("store").value(shown(options.store));
    json.key("path").value(options.path);
    json.key("schemas").value(options.uris);
    json.key("conforms").value(difference.empty());
    json.key("difference").value(difference);
    json.endObject();
    std::cout << '\n';
}

tExitStatus validate(const tOptions& options) {
    Schemas schemas(options.schemas);
    const Subject subject(schemas.storeToRead(options.store), options.store, options.path);
    const std::vector<tNamedSchema> all = schemas.resolve(options.uris);
    const bool conforms = subject.validates(schemas.locator()->resolve(wide(options.uris)).get());
    const std::string difference = conforms ? std::string() : subject.difference(all);
    if (options.json) {
        printJson(options, difference);
    } else {
        std::cout << printable(options.path) << (conforms ? " conforms to " : " does not conform to ")
                  << (conforms ? printable(options.uris) : difference) << '\n';
    }
    flushOutput();
    return conforms && !schemas.faulty() ? kDone : kFaults;
}

}  // namespace

void declareValidate(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("validate", "Tell whether a container or table conforms to schemas, and why not",
             "validate materials.lvp Carbon.Graphite \"Mechanical;Thermal\" --schemas schemas.xml",
             [options] { return validate(*options); })
        .store(options->store)
        .item(options->path)
        .argument("URI", options->uris, "The schemas, joined by ;")
        .needSchemas(options->schemas)
        .json(options->json);
}

}  // namespace lvp::tool
