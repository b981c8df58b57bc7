#include <iostream>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data.h"
#include "tools/Commands.h"
#include "tools/Conformance.h"
#include "tools/Files.h"
#include "tools/Items.h"
#include "tools/Schemas.h"
#include "tools/Text.h"

namespace lvp::tool {

using lumivard::platform::core::string::StringAlgorithm;
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
        throw Failure(kCannotOpen, "the store " + storeName + " holds no container, and no table in one, at the path " +
                                       printable(path));
    }

    bool validates(metadata::ISchema* schema) const {
        return _container ? _container->validates(schema, false) : _table->validates(schema);
    }
    std::string difference(metadata::ISchema* schema) const {
        return _container ? firstDifference(*_container, schema) : firstDifference(*_table, schema);
    }

private:
    SharedPtr<structure::IContainer> _container;
    SharedPtr<metadata::IProperty> _property;
    metadata::ITable* _table = nullptr;
};

}  // namespace

tExitStatus validate(const std::string& storeName, const std::string& path, const std::string& uris,
                     const std::vector<std::string>& sources) {
    const Schemas schemas(sources);
    const auto store = openToRead(storeName);
    requireSetUp(*store, storeName);
    const Subject subject(*store, storeName, path);

    const std::vector<tNamedSchema> all = schemas.resolve(uris);
    const auto together = schemas.locator()->resolve(StringAlgorithm::UTF8Decode(uris.c_str()).c_str());
    const bool conforms = subject.validates(together.get());
    std::cout << printable(path) << (conforms ? " conforms to " : " does not conform to ");
    if (conforms) {
        std::cout << printable(uris) << '\n';
        return schemas.faulty() ? kFaults : kDone;
    }
    for (const tNamedSchema& named : all) {
        const std::string cause = subject.difference(named.schema.get());
        if (cause.empty()) continue;
        std::cout << printable(named.uri) << ": " << cause << '\n';
        return kFaults;
    }
    std::cout << printable(uris) << ": there are no items in it, and it is not named in a class\n";
    return kFaults;
}

}  // namespace lvp::tool
