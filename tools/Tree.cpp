#include <iostream>

#include "tools/Commands.h"
#include "tools/Document.h"
#include "tools/Files.h"
#include "tools/Schemas.h"
#include "tools/TreePrinter.h"

namespace lvp::tool {

tExitStatus printTree(const std::string& storeName, const std::string& path, const std::vector<std::string>& sources) {
    Schemas schemas(sources);
    IDataStore& store = schemas.storeToRead(storeName);
    TreePrinter printer;
    readItem(store, storeName, path, schemas.locator(), printer);
    printer.print(std::cout);
    flushOutput();
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace lvp::tool
