#include <iostream>

#include "tools/Commands.h"
#include "tools/Document.h"
#include "tools/Files.h"
#include "tools/TreePrinter.h"

namespace lvp::tool {

tExitStatus printTree(const std::string& storeName, const std::string& path) {
    const auto store = openToRead(storeName);
    requireSetUp(*store, storeName);
    TreePrinter printer;
    readItem(*store, storeName, path, printer);
    printer.print(std::cout);
    if (!std::cout.flush()) throw Failure(kCannotFinish, "cannot write to standard output");
    return kDone;
}

}  // namespace lvp::tool
