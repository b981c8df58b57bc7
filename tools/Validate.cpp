#include <iostream>

#include "lumivard/platform/data.h"
#include "tools/Commands.h"
#include "tools/Conformance.h"
#include "tools/Files.h"
#include "tools/Items.h"
#include "tools/Schemas.h"
#include "tools/Text.h"

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

}  // namespace

tExitStatus validate(const std::string& storeName, const std::string& path, const std::string& uris,
                     const std::vector<std::string>& sources) {
    Schemas schemas(sources);
    const Subject subject(schemas.storeToRead(storeName), storeName, path);
    const std::vector<tNamedSchema> all = schemas.resolve(uris);
    const bool conforms = subject.validates(schemas.locator()->resolve(wide(uris)).get());
    std::cout << printable(path) << (conforms ? " conforms to " : " does not conform to ");
    std::cout << (conforms ? printable(uris) : subject.difference(all)) << '\n';
    flushOutput();
    return conforms && !schemas.faulty() ? kDone : kFaults;
}

}  // namespace lvp::tool
