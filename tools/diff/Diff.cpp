#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/Location.h"
#include "tools/base/Text.h"
#include "tools/base/WatchedStore.h"
#include "tools/diff/Comparison.h"
#include "tools/diff/HtmlReport.h"
#include "tools/diff/JsonReport.h"
#include "tools/diff/ModelReader.h"
#include "tools/diff/SoundStore.h"
#include "tools/diff/Source.h"
#include "tools/diff/TextReport.h"
#include "tools/items/Items.h"

namespace lvp::tool {

namespace {

constexpr unsigned long kFaultsTold = 100;      // records that cannot be read, of each side
constexpr std::uint64_t kValuesForPeople = 80;  // of a long value, from which an excerpt is taken
constexpr std::uint64_t kValuesForPrograms = 1000;

struct tOptions {
    std::string a;
    std::string b;
    std::string path;
    std::string toPath;
    std::vector<std::string> schemas;
    double tolerance = 0;
    std::vector<std::string> ignored;
    bool hidden = false;
    bool order = false;
    bool json = false;
    bool html = false;
    std::string output;

    const std::string& pathInB() const { return toPath.empty() ? path : toPath; }
};

void requireSense(const tOptions& options) {
    if (options.json && options.html) throw Failure(kWrongUsage, "give --json or --html, not both");
    if (!options.toPath.empty() && options.path.empty()) {
        throw Failure(kWrongUsage, "--to-path names the item in B to which that of --path in A is compared: give both");
    }
    if (!std::isfinite(options.tolerance)) throw Failure(kWrongUsage, "--tolerance takes a number");
    std::vector<std::string> others = options.schemas;
    others.push_back(options.b);
    refuseOutput("the comparison", options.output, options.a, others);
}

/// One side while it is compared: the source, under one guard all the time so that all that is read belongs together,
/// and what was read of it.
class Reading {
public:
    Reading(const Source& source, const std::string& path, TextPool& pool)
        : _source(source),
          _path(path),
          _pool(pool),
          _guard(source.store().lock()),
          _store(source.store(), [this](unsigned int offset, const std::string& why) { refused(offset, why); }),
          _model(pool, _store, path) {
        if (path.empty() || itemAt(_store, path) != tItem::kNothing) return;
        refusePath(_store, source.name(), path);
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() {
        if (_faults > kFaultsTold)
            std::cerr << printable(shown(_source.name())) << ": " << _faults - kFaultsTold << " more\n";
    }

    void read(const tExtent& extent) {
        ModelReader reader(_pool, _model, extent, _path.empty());
        _reader = &reader;
        const bool shown = visit(_store, _path, reader);
        reader.finish();
        _reader = nullptr;
        if (shown || (_path.empty() && _store.extent() == 0)) return;
        throw Failure(kCannotOpen, "the store " + _source.name() + " cannot be read: lvp-data check tells more");
    }

    /// Goes by another way to the same records.
    void over(IDataStore& store) { _store.over(store); }

    IDataStore& store() const { return _source.store(); }
    const Model& model() const { return _model; }

    /// How many records cannot be read, and faults of a document.
    unsigned long faults() const { return _faults + _source.faults(); }

private:
    void refused(unsigned int offset, const std::string& why) {
        if (++_faults > kFaultsTold) return;
        const std::string where = _reader ? _reader->where() : std::string();
        std::cerr << printable(shown(_source.name())) << ": " << (where.empty() ? "" : "in " + printable(where) + ": ")
                  << "record " << std::to_string(offset) << " cannot be read and is left out: " << printable(why)
                  << '\n';
    }

    const Source& _source;
    std::string _path;
    TextPool& _pool;
    std::unique_ptr<IDataStore::ILock> _guard;
    SoundStore _store;
    Model _model;
    const ModelReader* _reader = nullptr;
    unsigned long _faults = 0;
};

/// Where the differences are written: a file appears whole or not at all.
class Output {
public:
    explicit Output(const std::string& file) : _name(file) {
        if (!file.empty()) _file = openOutput("the comparison", file);
    }

    std::ostream& stream() {
        if (_name.empty()) return std::cout;
        return _text;
    }
    bool colours() const {
        const char* const none = std::getenv("NO_COLOR");
        return _name.empty() && isTerminalOutput() && (!none || !*none);
    }
    void finish() {
        if (_name.empty()) return flushOutput();
        const std::string text = _text.str();
        _file->write(text.data(), text.size());
        _file->close();
    }

private:
    std::string _name;
    std::unique_ptr<lumivard::platform::core::io::IDataWriter> _file;
    std::ostringstream _text;
};

void writeJson(std::ostream& out, const tOptions& options, Comparison& comparison, unsigned long faults) {
    JsonWriter json(out);
    json.beginObject();
    json.key("a").value(shown(options.a));
    json.key("b").value(shown(options.b));
    json.key("equal").value(comparison.equal() && faults == 0);
    json.key("differences").beginArray();
    JsonReport report(json);
    const tCounts counts = comparison.tell(report, kValuesForPrograms);
    json.endArray();
    json.key("counts").beginObject();
    for (std::size_t i = 0; i < counts.size(); ++i) json.key(nameOf(static_cast<tWhat>(i))).value(counts[i]);
    json.endObject();
    json.key("faults").value(faults);
    json.endObject();
    out << '\n';
}

void write(const tOptions& options, Comparison& comparison, unsigned long faults) {
    Output output(options.output);
    if (options.json) {
        writeJson(output.stream(), options, comparison, faults);
    } else if (options.html) {
        HtmlReport report(output.stream(), shown(options.a), shown(options.b));
        const tCounts counts = comparison.tell(report, kValuesForPeople);
        report.finish(counts, faults);
    } else {
        TextReport report(output.stream(), output.colours());
        comparison.tell(report, kValuesForPeople);
    }
    output.finish();
}

std::vector<Glob> globs(const std::vector<std::string>& patterns) {
    std::vector<Glob> globs;
    for (const std::string& pattern : patterns) globs.emplace_back(static_cast<const wchar_t*>(wide(pattern)));
    return globs;
}

tExitStatus diff(const tOptions& options) {
    requireSense(options);
    const std::vector<Glob> ignored = globs(options.ignored);
    Schemas schemas(options.schemas);
    const Source sourceA(options.a, schemas);
    const Source sourceB(options.b, schemas);
    TextPool pool;
    Reading a(sourceA, options.path, pool);
    Reading b(sourceB, options.pathInB(), pool);
    const auto step = [] {
        if (Watch::interrupted()) throw Failure(kCannotFinish, "diff was interrupted");
    };
    std::optional<Comparison> comparison;
    {
        Watch watch("diff", "looks at records");
        WatchedStore watchedA(a.store(), watch);
        WatchedStore watchedB(b.store(), watch);
        a.over(watchedA);
        b.over(watchedB);
        const tExtent extent{.hidden = options.hidden, .ignored = &ignored, .as = options.path};
        a.read(extent);
        b.read(extent);
        comparison.emplace(a.model(), b.model(), pool,
                           tRules{.tolerance = options.tolerance,
                                  .order = options.order,
                                  .hidden = options.hidden,
                                  .wholeStores = options.path.empty()},
                           step);
        comparison->compare();
        a.over(a.store());
        b.over(b.store());
    }
    // The progress is gone from the terminal before the first difference is shown there.
    Watch watch("diff", "");
    const unsigned long faults = a.faults() + b.faults();
    write(options, *comparison, faults);
    return comparison->equal() && faults == 0 && !schemas.faulty() ? kDone : kFaults;
}

}  // namespace

void declareDiff(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("diff", "Show what differs between two stores or documents, or two items in them",
             "diff old.lvp new.xml --tolerance 1e-9 --ignore '**.Notes'", [options] { return diff(*options); })
        .argument("A", options->a, "A store, or a document: an XML file")
        .argument("B", options->b, "Another one, or the same again with --to-path")
        .option("--path", options->path, "The item to compare, in both; all when left out")
        .option("--to-path", options->toPath, "The item in B to compare that of --path to")
        .schemas(options->schemas)
        .number("--tolerance", options->tolerance,
                "Real numbers are equal that differ by this part of the larger one, such as 1e-9")
        .options("--ignore", options->ignored,
                 "Leave out items whose path matches: * and ? within a name, ** across dots; may be given again")
        .flag("--hidden", options->hidden, "Compare what schemas have given and nobody has changed, too")
        .flag("--order", options->order, "The order of items matters")
        .json(options->json)
        .flag("--html", options->html, "Write a page with the two side by side")
        .output(options->output, "Where to write; standard output when left out");
}

}  // namespace lvp::tool
