#include <cerrno>
#include <memory>
#include <system_error>

#include "lumivard/platform/core/io/FileWriter.h"
#include "lumivard/platform/core/io/MemoryReader.h"
#include "lumivard/platform/core/io/MemoryWriter.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/core/xml/XMLParser.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "tools/Commands.h"
#include "tools/Document.h"
#include "tools/Files.h"
#include "tools/Schemas.h"

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

/// A document does not take the place of what it is made from.
void refuseOutput(const std::string& input, const std::string& output) {
    if (output.empty() || !isSameFile(input, output)) return;
    throw Failure(kCannotOpen, "the document " + output + " would replace " + input + ", which it is made from");
}

}  // namespace

tExitStatus exportDocument(const std::string& storeName, const std::string& path, const std::string& output,
                           const std::vector<std::string>& sources) {
    for (const std::string& input : sources) refuseOutput(input, output);
    refuseOutput(storeName, output);
    Schemas schemas(sources);
    IDataStore& store = schemas.storeToRead(storeName);

    core::io::MemoryWriter subtree;
    if (!path.empty()) {
        core::LVPUUID id;
        core::xml::XMLSerializer serializer(id);
        serializer.attach(&subtree);
        serializer.emitXMLHeader();
        Rewriter rewriter(serializer);
        readItem(store, storeName, path, schemas.locator(), rewriter);
        serializer.detach();
    }

    std::unique_ptr<core::io::IDataWriter> writer;
    if (output.empty()) {
        writer = std::make_unique<StandardOutput>();
    } else {
        writer = std::make_unique<core::io::FileWriter>(output);
    }
    errno = 0;
    if (!writer->open()) {
        throw Failure(kCannotOpen,
                      "cannot write the document " + output + ": " + std::generic_category().message(errno));
    }
    if (path.empty()) {
        lumivard::platform::data::format::xml::IXMLFrontEnd::serialize(&store, writer.get(), schemas.locator(), 0);
    } else {
        writer->write(subtree.bytes().data(), subtree.bytes().size());
        writer->close();
    }
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace lvp::tool
