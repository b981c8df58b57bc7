#include <iostream>

#include "tools/Commands.h"
#include "tools/Document.h"
#include "tools/Files.h"
#include "tools/Schemas.h"
#include "tools/TreePrinter.h"

namespace lvp::tool {

tExitStatus printTree(const std::string& storeName, const std::string& path, const std::vector<std::string>& sources) {
    const Schemas schemas(sources);
    const auto store = openToRead(storeName);
    requireSetUp(*store, storeName);
    TreePrinter printer;
    readItem(*store, storeName, path, schemas.locator(), printer);
    printer.print(std::cout);
    if (!std::cout.flush()) throw Failure(kCannotFinish, "cannot write to standard output");
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace lvp::tool
