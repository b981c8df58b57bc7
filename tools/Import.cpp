#include <iostream>

#include "lumivard/platform/core/io/FileReader.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "tools/Commands.h"
#include "tools/FaultPrinter.h"
#include "tools/Files.h"
#include "tools/Schemas.h"

namespace lvp::tool {

tExitStatus importDocument(const std::string& document, const std::string& storeName,
                           const std::vector<std::string>& sources) {
    requireReadable(document);
    const Schemas schemas(sources);
    const auto store = openToWrite(storeName);
    if (store->extent() != 0) {
        throw Failure(kCannotOpen, "the store " + storeName + " already holds data: give a new file to import into");
    }
    lumivard::platform::core::io::FileReader reader(document);
    FaultPrinter faults(document);
    lumivard::platform::data::format::xml::IXMLFrontEnd::parse(store.get(), &reader, schemas.locator(), nullptr,
                                                               &faults);
    if (faults.brokeOff()) std::cerr << "lvp-data: the store holds what came before the document broke off\n";
    return faults.count() == 0 && !schemas.faulty() ? kDone : kFaults;
}

}  // namespace lvp::tool
