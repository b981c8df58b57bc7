#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>

#include "lumivard/platform/core/io/FileReader.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "tools/Verbs.h"
#include "tools/base/ChangedStore.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/WatchedStore.h"
#include "tools/documents/Faults.h"
#include "tools/documents/WatchedStreams.h"
#include "tools/items/Items.h"
#include "tools/schemas/Schemas.h"

namespace lvp::tool {

using lumivard::platform::data::format::xml::IXMLFrontEnd;

namespace {

struct tOptions {
    std::string document;
    std::string store;
    std::vector<std::string> schemas;
    bool strict = false;
    bool json = false;
};

/// What came of an import.
struct tOutcome {
    std::uint64_t items = 0;
    unsigned long faults = 0;
    unsigned long long bytes = 0;
    std::chrono::milliseconds time{};
    const char* notKept = nullptr;  ///< why nothing was kept; null where it was
    const char* remark = nullptr;   ///< what surprises in what was kept
};

/// Counts the items of a store, and sees whether there is a root.
class Counting : public IVisitor {
public:
    void root(const tRoot& item) override { rooted = item.kind == tRoot::kRoot; }
    void primitive(const tPrimitive&) override { ++items; }
    bool table(const tTable&) override { return ++items != 0; }
    bool container(const tContainer&) override { return ++items != 0; }

    std::uint64_t items = 0;
    bool rooted = false;
};

void writeFault(JsonWriter& json, const Faults::tFault& fault) {
    json.beginObject();
    if (fault.line != 0) {
        json.key("line").value(fault.line);
        json.key("column").value(fault.column);
    }
    json.key("message").value(fault.message);
    json.endObject();
}

void writeEnd(JsonWriter& json, const tOutcome& outcome) {
    json.key("items").value(outcome.items);
    json.key("faults").value(outcome.faults);
    json.key("bytes").value(outcome.bytes);
    json.key("milliseconds").value(outcome.time.count());
    json.key("kept").value(outcome.notKept == nullptr);
}

void printEnd(const tOutcome& outcome) {
    std::cerr << outcome.items << (outcome.items == 1 ? " item, " : " items, ") << outcome.faults
              << (outcome.faults == 1 ? " fault, " : " faults, ") << outcome.bytes << " bytes read in "
              << outcome.time.count() << " ms";
    if (outcome.notKept) std::cerr << "; nothing was kept, since " << outcome.notKept;
    if (outcome.remark) std::cerr << "; " << outcome.remark;
    std::cerr << '\n';
}

tOutcome import(const tOptions& options, Schemas& schemas, const Faults::tHear& hear) {
    const auto start = std::chrono::steady_clock::now();
    ChangedStore target(options.store, true);
    if (target->extent() != 0) {
        throw Failure(kCannotOpen,
                      "the store " + options.store + " already holds data: give a new file to import into");
    }
    std::error_code error;
    const auto size = std::filesystem::file_size(options.document, error);
    Watch watch("import", "bytes", error ? 0 : size);
    WatchedStore store(*target, watch, false);
    lumivard::platform::core::io::FileReader file(options.document);
    WatchedReader reader(file, watch);
    // An interrupt shows here as a document that breaks off.
    Faults faults([&](const Faults::tFault& fault) {
        if (!watch.interrupted()) hear(fault);
    });
    IXMLFrontEnd::parse(&store, &reader, schemas.locator(), nullptr, &faults);
    watch.reached(watch.done());
    Counting counting;
    visit(store, {}, counting);
    tOutcome outcome{.items = counting.items, .faults = faults.count(), .bytes = reader.bytes()};
    if (options.strict && (faults.count() != 0 || schemas.faulty())) {
        outcome.notKept = "--strict takes no document with faults";
    } else if (faults.brokeOff() && outcome.items == 0) {
        outcome.notKept = "the document breaks off before its first item";
    } else {
        target.keep();
        if (faults.brokeOff()) {
            outcome.remark = "the store holds what came before the document broke off";
        } else if (!counting.rooted && store.extent() != 0) {
            outcome.remark =
                "the top element is no <root>: what it holds stands at the top, and its own name and value "
                "are not reached by a path";
        }
    }
    outcome.time = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    return outcome;
}

tExitStatus importDocument(const tOptions& options) {
    requireReadable(options.document);
    Schemas schemas(options.schemas);
    tOutcome outcome;
    if (options.json) {
        std::ostringstream out;  // a whole object or none
        JsonWriter json(out);
        json.beginObject();
        json.key("document").value(options.document);
        json.key("store").value(options.store);
        json.key("messages").beginArray();
        outcome = import(options, schemas, [&](const Faults::tFault& fault) { writeFault(json, fault); });
        json.endArray();
        writeEnd(json, outcome);
        json.endObject();
        std::cout << out.str() << '\n';
        flushOutput();
    } else {
        outcome = import(options, schemas, [&](const Faults::tFault& fault) { printFault(options.document, fault); });
        printEnd(outcome);
    }
    return outcome.faults == 0 && !schemas.faulty() ? kDone : kFaults;
}

}  // namespace

void declareImport(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("import", "Read an XML document into a new store", "import materials.xml materials.lvp",
             [options] { return importDocument(*options); })
        .argument("DOCUMENT", options->document, "The document: an XML file")
        .argument("STORE", options->store, "The store: a file, made when it is not there")
        .schemas(options->schemas)
        .flag("--strict", options->strict, "Leave the store as it is when there is any fault")
        .json(options->json);
}

}  // namespace lvp::tool
