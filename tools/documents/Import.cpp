#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>
#include <string_view>

#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "tools/Verbs.h"
#include "tools/base/ChangedStore.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Kinds.h"
#include "tools/base/Location.h"
#include "tools/base/Text.h"
#include "tools/base/WatchedStore.h"
#include "tools/documents/DocumentReader.h"
#include "tools/documents/Faults.h"
#include "tools/documents/WatchedStreams.h"
#include "tools/items/Items.h"
#include "tools/schemas/NotedLocator.h"
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
    std::uint64_t hidden = 0;  ///< of these, what schemas have given
    unsigned long faults = 0;
    unsigned long long bytes = 0;
    std::chrono::milliseconds time{};
    bool kept = false;
    std::string remark;  ///< why nothing was kept, or what surprises in what was
};

/// Counts the items of a store, and sees whether there is a root.
class Counting : public IVisitor {
public:
    void root(const tRoot& item) override { rooted = item.kind == tRoot::kRoot; }
    void primitive(const tPrimitive& item) override { count(item.flags); }
    bool table(const tTable& item) override { return count(item.flags); }
    bool container(const tContainer& item) override { return count(item.flags); }

    std::uint64_t items = 0;
    std::uint64_t hidden = 0;
    bool rooted = false;

private:
    bool count(unsigned char flags) {
        if (flags & kHidden) ++hidden;
        return ++items != 0;
    }
};

/// A reader that sees whether a document names schemas, in an encoding that has ASCII in it.
class ClassSeeker : public lumivard::platform::core::io::IDataReader {
public:
    explicit ClassSeeker(IDataReader& under) : _under(under) {}

    bool open() override { return _under.open(); }
    void close() override { _under.close(); }
    unsigned long read(void* buffer, unsigned long size) override {
        const unsigned long count = _under.read(buffer, size);
        if (found) return count;
        constexpr std::string_view kSought = " class=";
        _last.append(static_cast<const char*>(buffer), count);
        found = _last.find(kSought) != std::string::npos;
        if (_last.size() >= kSought.size()) _last.erase(0, _last.size() - (kSought.size() - 1));
        return count;
    }

    bool found = false;

private:
    IDataReader& _under;
    std::string _last;
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
    json.key("hidden").value(outcome.hidden);
    json.key("faults").value(outcome.faults);
    json.key("bytes").value(outcome.bytes);
    json.key("milliseconds").value(outcome.time.count());
    json.key("kept").value(outcome.kept);
    if (!outcome.remark.empty()) json.key("remark").value(outcome.remark);
}

void printEnd(const tOutcome& outcome) {
    std::cerr << outcome.items << (outcome.items == 1 ? " item, " : " items, ");
    if (outcome.hidden != 0) std::cerr << outcome.hidden << " of them hidden, ";
    std::cerr << outcome.faults << (outcome.faults == 1 ? " fault, " : " faults, ") << outcome.bytes
              << " bytes read in " << outcome.time.count() << " ms";
    if (!outcome.remark.empty()) std::cerr << "; " << printable(outcome.remark);
    std::cerr << '\n';
}

/// Why nothing of a document is kept; empty where it is.
std::string reasonNotToKeep(const tOptions& options, const Schemas& schemas, const Faults& faults, IDataStore& store) {
    if (options.strict && (faults.count() != 0 || schemas.faulty())) {
        return "nothing was kept, since --strict takes no document with faults";
    }
    if (store.extent() != 0) return {};
    return faults.brokeOff() ? "nothing was kept, since the document breaks off before its first item"
                             : "nothing was kept, since the document has no item at its top";
}

/// What surprises in what was kept; empty for nothing.
std::string remark(const Faults& faults, bool rooted, bool lacksSchemas) {
    if (faults.brokeOff()) return "the store holds what came before the document broke off";
    if (!rooted) {
        return "the top element is no <root>: what it holds stands at the top, and its own name and value are not "
               "reached by a path";
    }
    if (lacksSchemas) return "the schemas that the document names were passed over: give --schemas to take them in";
    return {};
}

tOutcome import(const tOptions& options, Schemas& schemas, const Faults::tHear& hear) {
    const auto start = std::chrono::steady_clock::now();
    ChangedStore target(options.store, true);
    if (target->extent() != 0) {
        throw Failure(kCannotOpen, "the store " + options.store + " already holds data: give a new " +
                                       (isLocation(options.store) ? "store" : "file") + " to import into");
    }
    std::error_code error;
    const auto size = std::filesystem::file_size(options.document, error);
    Watch watch("import", "bytes", error ? 0 : size);
    WatchedStore store(*target, watch, false);
    DocumentReader file(options.document);
    WatchedReader watched(file, watch);
    ClassSeeker reader(watched);
    // An interrupt shows here as a document that breaks off.
    Faults faults([&](const Faults::tFault& fault) {
        if (!watch.interrupted()) hear(fault);
    });
    NotedLocator locator(*schemas.all());
    IXMLFrontEnd::parse(&store, &reader, schemas.locator() ? &locator : nullptr, nullptr, &faults);
    watch.reached(watch.done());
    for (const std::string& uri : locator.missing()) faults.add("no schema \"" + uri + "\" was found");
    Counting counting;
    visit(store, {}, counting);
    tOutcome outcome{.items = counting.items,
                     .hidden = counting.hidden,
                     .faults = faults.count(),
                     .bytes = watched.bytes(),
                     .remark = reasonNotToKeep(options, schemas, faults, store)};
    outcome.kept = outcome.remark.empty();
    if (outcome.kept) {
        target.keep();
        outcome.remark = remark(faults, counting.rooted, reader.found && !schemas.locator());
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
        json.key("store").value(shown(options.store));
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
    return outcome.faults == 0 && !schemas.faulty() && outcome.kept ? kDone : kFaults;
}

}  // namespace

void declareImport(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("import", "Read an XML document into a new store", "import materials.xml materials.lvp",
             [options] { return importDocument(*options); })
        .argument("DOCUMENT", options->document, "The document: an XML file, or - for standard input")
        .argument("STORE", options->store, kNewStoreHelp)
        .schemas(options->schemas)
        .flag("--strict", options->strict, "Leave the store as it is when there is any fault")
        .json(options->json);
}

}  // namespace lvp::tool
