#include "tools/schemas/Schemas.h"

#include <algorithm>

#include "lumivard/platform/core/io/FileReader.h"
#include "lumivard/platform/stores.h"
#include "tools/base/ExitStatus.h"
#include "tools/base/Files.h"
#include "tools/documents/Faults.h"
#include "tools/items/Items.h"

namespace lvp::tool {

using lumivard::platform::data::format::xml::IXMLFrontEnd;

Schemas::Schemas(const std::vector<std::string>& sources) : _sources(sources) {
    for (const std::string& source : sources) {
        if (isDocument(source)) {
            readDocument(source);
        } else {
            _locator->push(&storeToRead(source));
        }
    }
}

Schemas::IDataStore& Schemas::storeToRead(const std::string& store) {
    for (const tStore& open : _stores) {
        if (!open.file.empty() && isSameFile(open.file, store)) return *open.store;
    }
    _stores.push_back({store, openToRead(store)});
    requireSetUp(*_stores.back().store, store);
    return *_stores.back().store;
}

void Schemas::readDocument(const std::string& document) {
    requireReadable(document);
    _stores.push_back({"", lumivard::platform::stores::memory()});
    IDataStore* store = _stores.back().store.get();
    // A locator of its own: what one finds in a document that is half read, it keeps.
    const auto above = ISchemaLocator::make(nullptr);
    for (const tStore& open : _stores) above->push(open.store.get());
    lumivard::platform::core::io::FileReader reader(document);
    Faults faults([&](const Faults::tFault& fault) { printFault(document, fault); });
    IXMLFrontEnd::parse(store, &reader, above.get(), nullptr, &faults);
    if (faults.brokeOff()) throw Failure(kCannotOpen, "the schemas in " + document + " cannot be used");
    if (faults.count() != 0) _faulty = true;
    _locator->push(store);
}

std::vector<tNamedSchema> Schemas::resolve(const std::string& uris) const {
    std::vector<tNamedSchema> found;
    for (std::size_t begin = 0; begin <= uris.size();) {
        const std::size_t end = std::min(uris.find(';', begin), uris.size());
        tNamedSchema named{uris.substr(begin, end - begin), {}};
        begin = end + 1;
        named.schema = _locator->resolve(wide(named.uri));
        if (!named.schema) {
            std::string sources;
            for (const std::string& source : _sources) sources += (sources.empty() ? "" : ", ") + source;
            throw Failure(kCannotOpen, "no schema \"" + named.uri + "\" in " + sources);
        }
        found.push_back(std::move(named));
    }
    return found;
}

}  // namespace lvp::tool
