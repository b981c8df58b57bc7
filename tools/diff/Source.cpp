#include "tools/diff/Source.h"

#include <filesystem>

#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "lumivard/platform/stores.h"
#include "tools/base/ExitStatus.h"
#include "tools/base/Files.h"
#include "tools/documents/DocumentReader.h"
#include "tools/documents/Faults.h"
#include "tools/documents/WatchedStreams.h"

namespace lvp::tool {

Source::Source(const std::string& name, Schemas& schemas) : _name(name) {
    if (name != "/dev/null" && !isDocument(name)) {
        _store = &schemas.storeToRead(name);
        return;
    }
    _own = lumivard::platform::stores::memory();
    _store = _own.get();
    if (name != "/dev/null") readDocument(schemas);
}

void Source::readDocument(const Schemas& schemas) {
    requireReadable(_name);
    std::error_code error;
    const auto size = std::filesystem::file_size(_name, error);
    Watch watch("diff", "bytes", error ? 0 : size);
    DocumentReader file(_name);
    WatchedReader reader(file, watch);
    // An interrupt shows here as a document that breaks off.
    Faults faults([&](const Faults::tFault& fault) {
        if (!watch.interrupted()) printFault(_name, fault);
    });
    lumivard::platform::data::format::xml::IXMLFrontEnd::parse(_store, &reader, schemas.locator(), nullptr, &faults);
    watch.reached(watch.done());
    if (faults.brokeOff()) throw Failure(kCannotOpen, "the document " + _name + " breaks off and cannot be compared");
    _faults = faults.count();
}

}  // namespace lvp::tool
