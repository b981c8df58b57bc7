#include <iostream>
#include <memory>

#include "lumivard/platform/core/io/MemoryReader.h"
#include "lumivard/platform/core/io/MemoryWriter.h"
#include "lumivard/platform/core/xml/XMLParser.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/Kinds.h"
#include "tools/base/WatchedStore.h"
#include "tools/documents/CanonicalDocument.h"
#include "tools/documents/TerminalWriter.h"
#include "tools/documents/WatchedStreams.h"
#include "tools/items/Items.h"
#include "tools/schemas/Layouts.h"
#include "tools/schemas/Schemas.h"

namespace lvp::tool {

namespace core = lumivard::platform::core;
using lumivard::platform::data::format::xml::IXMLFrontEnd;

namespace {

struct tOptions {
    std::string store;
    std::string path;
    std::string output;
    std::vector<std::string> schemas;
    bool canonical = false;
};

/// Looks over what is written: finds the record of the item at the path, and counts the structs that go out without a
/// value, since nothing tells how they are laid out.
class Survey : public IVisitor {
public:
    explicit Survey(ISchemaLocator* locator) : _layouts(locator) {}

    void primitive(const tPrimitive& item) override {
        see(item.offset, item.flags);
        if (item.valuetype != lumivard::platform::data::metadata::kStruct || item.dimension == 0) return;
        if ((item.flags & kHidden) == 0 && !_layouts.of(item)) ++structs;
    }
    bool table(const tTable& item) override { return see(item.offset, item.flags); }
    bool container(const tContainer& item) override { return see(item.offset, item.flags); }

    unsigned int offset = 0;  ///< of the item that was shown first
    bool hidden = false;      ///< and whether it is
    std::size_t structs = 0;

private:
    bool see(unsigned int record, unsigned char flags) {
        if (!_seen) {
            offset = record;
            hidden = (flags & kHidden) != 0;
        }
        _seen = true;
        return (flags & kHidden) == 0;
    }

    Layouts _layouts;
    bool _seen = false;
};

/// Looks at the item at the path, or at the whole store.
Survey survey(IDataStore& store, const tOptions& options, ISchemaLocator* locator) {
    if (!options.path.empty() && itemAt(store, options.path) == tItem::kNothing) {
        refusePath(store, options.store, options.path);
    }
    Survey survey(locator);
    visit(store, options.path, survey);
    if (options.path.empty()) survey.offset = 0;
    if (!options.path.empty() && survey.hidden) {
        throw Failure(kCannotOpen,
                      options.path + " in the store " + options.store +
                          " is hidden, as it came from a schema, and documents leave that out; lvp-data get "
                          "and tree show it");
    }
    return survey;
}

void writeCanonical(IDataStore& store, unsigned int offset, ISchemaLocator* locator, core::io::IDataWriter& writer) {
    core::io::MemoryWriter plain;
    IXMLFrontEnd::serialize(&store, &plain, locator, offset);
    CanonicalDocument document;
    core::io::MemoryReader reader(plain.bytes());
    reader.open();
    core::xml::XMLParser(&document, nullptr).parseDocument(&reader);
    core::LVPUUID id;
    core::xml::XMLSerializer serializer(id);
    serializer.attach(&writer);
    serializer.emitXMLHeader();
    document.write(serializer);
    serializer.detach();
}

tExitStatus exportDocument(const tOptions& options) {
    refuseOutput("the document", options.output, options.store, options.schemas);
    Schemas schemas(options.schemas);
    IDataStore& under = schemas.storeToRead(options.store);
    Watch watch("export", "bytes");
    WatchedStore store(under, watch, false);
    const Survey found = survey(store, options, schemas.locator());
    const auto output = openOutput("the document", options.output);
    const bool terminal = options.output.empty() && isTerminalOutput();
    TerminalWriter shown(*output, terminal);
    WatchedWriter writer(shown, watch);
    if (options.canonical) {
        writeCanonical(store, found.offset, schemas.locator(), writer);
    } else {
        IXMLFrontEnd::serialize(&store, &writer, schemas.locator(), found.offset);
    }
    if (options.canonical || terminal) writer.write("\n", 1);
    shown.close();
    if (found.structs != 0) {
        std::cerr << "lvp-data: " << found.structs << (found.structs == 1 ? " struct" : " structs")
                  << " went out without a value: give the --schemas that tell how it is laid out\n";
    }
    return schemas.faulty() || found.structs != 0 ? kFaults : kDone;
}

}  // namespace

void declareExport(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("export", "Write a store, or one item of it, as an XML document",
             "export materials.lvp Carbon.Graphite -o graphite.xml", [options] { return exportDocument(*options); })
        .store(options->store)
        .part(options->path)
        .output(options->output, "The document; standard output when left out")
        .flag("--canonical", options->canonical,
              "Items sorted by name and one value a line, so that a comparison by lines shows what changed")
        .schemas(options->schemas);
}

}  // namespace lvp::tool
