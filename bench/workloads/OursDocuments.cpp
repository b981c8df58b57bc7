#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/workloads/OursTree.h"
#include "lumivard/platform/stores.h"

// W6 and W7: the tree as a document.

namespace lvp::bench {

namespace stores = lumivard::platform::stores;
namespace io = lumivard::platform::core::io;
using data::format::xml::IXMLFrontEnd;

namespace {

/// Writes a file as it comes. `io::FileWriter` makes it durable before it takes its name, which W6 does not ask for.
class PlainWriter : public io::IDataWriter {
public:
    explicit PlainWriter(const std::filesystem::path& path) : _path(path) {}
    ~PlainWriter() override { PlainWriter::close(); }
    PlainWriter(const PlainWriter&) = delete;
    PlainWriter& operator=(const PlainWriter&) = delete;

    bool open() override {
        _file = std::fopen(_path.c_str(), "wb");
        return _file != nullptr;
    }
    void close() override {
        if (_file) std::fclose(_file);
        _file = nullptr;
    }
    void write(const void* bytes, unsigned long size) override {
        require(_file && std::fwrite(bytes, 1, size, _file) == size, "the document was not written");
    }

private:
    std::filesystem::path _path;
    std::FILE* _file = nullptr;
};

/// Ends the run at the first fault: the document has none.
class Faults : public IXMLFrontEnd::IErrorReporter {
public:
    void report(const data::WideString& message) override { add(message); }
    void malformed(const data::WideString& message) override { add(message); }
    void verify() const {
        if (!_first.empty()) throw std::runtime_error("the document is not read: " + _first);
    }

private:
    void add(const data::WideString& message) {
        if (_first.empty()) _first = message.string() + ".";
    }

    std::string _first;
};

template <class Engine>
void write(Engine& engine, const Case& run, const std::filesystem::path& document) {
    const Measure measure = measured([&] {
        if constexpr (Engine::kLasts) engine.open(run.file(Engine::kEnding), tAccess::kRead);
        PlainWriter writer(document);
        IXMLFrontEnd::serialize(&engine.store(), &writer, nullptr, 0);
    });
    run.report("W6", run.count, measure, bytesOf(document));
}

}  // namespace

/// W6: from the file that W1 has left, which is opened within the time, and from a tree in memory that is there
/// already. Both write the same document; the first one's is what W7 reads.
void writeDocument(const Case& run) {
    if (run.subject == "ours") {
        OursFile engine;
        write(engine, run, run.document());
    } else {
        const auto document = run.scratch("xml");
        OursMemory engine;
        build(engine, document, run.count);
        write(engine, run, document);
        std::filesystem::remove(document);
    }
}

/// W7: reads the document into a store in memory.
void readDocument(const Case& run) {
    Faults faults;
    io::FileReader reader(run.document());
    OursMemory engine;
    const Measure measure = measured([&] { engine.parse(reader, faults); });
    run.report("W7", run.count, measure, bytesOf(run.document()));
    faults.verify();
    Checksum sum;
    engine.readTree(sum);
    verify(sum, checksumOfDocument(run.count));
}

}  // namespace lvp::bench
