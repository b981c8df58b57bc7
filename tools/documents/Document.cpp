#include "tools/documents/Document.h"

#include "lumivard/platform/core/io/MemoryReader.h"
#include "lumivard/platform/core/io/MemoryWriter.h"
#include "lumivard/platform/core/xml/XMLParser.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "tools/base/ExitStatus.h"
#include "tools/items/Items.h"

namespace lvp::tool {

namespace core = lumivard::platform::core;

void readItem(core::storage::datastore::IDataStore& store, const std::string& storeName, const std::string& path,
              lumivard::platform::data::metadata::ISchemaLocator* locator, XMLCallback& callback) {
    core::io::MemoryWriter document;
    lumivard::platform::data::format::xml::IXMLFrontEnd::serialize(&store, &document, locator, 0);
    core::io::MemoryReader reader(document.bytes());
    reader.open();
    SubtreeFilter filter(path, callback);
    core::xml::XMLParser(&filter, nullptr).parseDocument(&reader);
    reader.close();
    if (filter.found()) return;
    if (itemAt(store, path) == tItem::kNothing) refusePath(store, storeName, path);
    throw Failure(kCannotOpen, path + " in the store " + storeName +
                                   " does not show in documents: it is hidden, as it came from a schema, or its name "
                                   "holds what XML cannot carry; lvp-data get and ls show it");
}

}  // namespace lvp::tool
