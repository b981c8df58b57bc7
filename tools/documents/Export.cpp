#include <memory>

#include "lumivard/platform/core/io/MemoryWriter.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/WatchedStore.h"
#include "tools/documents/CanonicalDocument.h"
#include "tools/documents/Document.h"
#include "tools/documents/WatchedStreams.h"
#include "tools/schemas/Schemas.h"

namespace lvp::tool {

namespace core = lumivard::platform::core;
using core::string::StringAlgorithm;

namespace {

/// Writes the events of a document as a document.
class Rewriter : public XMLCallback {
public:
    explicit Rewriter(core::xml::XMLSerializer& serializer) : _serializer(serializer) {}

    void notifyStartElement(const char* name, const char** attributes) override {
        _serializer.startElement(StringAlgorithm::UTF8Decode(name).c_str(), nullptr);
        for (; *attributes; attributes += 2) {
            _serializer.addAttribute(StringAlgorithm::UTF8Decode(attributes[0]).c_str(),
                                     StringAlgorithm::UTF8Decode(attributes[1]).c_str(), nullptr);
        }
    }
    void notifyEndElement(const char*) override { _serializer.endElement(false); }
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char* data, int length) override {
        const std::string text(data, static_cast<std::size_t>(length));
        _serializer.addCharacterData(StringAlgorithm::UTF8Decode(text.c_str()).c_str());
    }

private:
    core::xml::XMLSerializer& _serializer;
};

struct tOptions {
    std::string store;
    std::string path;
    std::string output;
    std::vector<std::string> schemas;
    bool canonical = false;
};

/// Writes what lies at the path, or all, by way of the events of the document that the library writes.
void writeByEvents(IDataStore& store, const tOptions& options, const Schemas& schemas, core::io::IDataWriter& writer) {
    core::LVPUUID id;
    core::xml::XMLSerializer serializer(id);
    serializer.attach(&writer);
    serializer.emitXMLHeader();
    if (options.canonical) {
        CanonicalDocument document;
        readItem(store, options.store, options.path, schemas.locator(), document);
        document.write(serializer);
    } else {
        Rewriter rewriter(serializer);
        readItem(store, options.store, options.path, schemas.locator(), rewriter);
    }
    serializer.detach();
    if (options.canonical) writer.write("\n", 1);  // the last line is one, too
}

tExitStatus exportDocument(const tOptions& options) {
    refuseOutput("the document", options.output, options.store, options.schemas);
    Schemas schemas(options.schemas);
    Watch watch("export", "bytes");
    WatchedStore store(schemas.storeToRead(options.store), watch, false);

    // What fails before the first byte of the item is there leaves the old document in its place.
    const bool byEvents = !options.path.empty() || options.canonical;
    core::io::MemoryWriter events;
    if (byEvents) writeByEvents(store, options, schemas, events);
    const auto output = openOutput("the document", options.output);
    WatchedWriter writer(*output, watch);
    if (byEvents) {
        writer.write(events.bytes().data(), events.bytes().size());
        writer.close();
    } else {
        lumivard::platform::data::format::xml::IXMLFrontEnd::serialize(&store, &writer, schemas.locator(), 0);
    }
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace

void declareExport(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("export", "Write a store, or one item of it, as an XML document",
             "export materials.lvp Metal.Steel -o steel.xml", [options] { return exportDocument(*options); })
        .store(options->store)
        .part(options->path)
        .option("-o,--output", options->output, "The document; standard output when left out")
        .flag("--canonical", options->canonical,
              "Items sorted by name and one value a line, so that a comparison by lines shows what changed")
        .schemas(options->schemas);
}

}  // namespace lvp::tool
