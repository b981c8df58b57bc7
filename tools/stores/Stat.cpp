#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <optional>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/stores.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Kinds.h"
#include "tools/base/Location.h"
#include "tools/base/Text.h"
#include "tools/base/WatchedStore.h"
#include "tools/items/Items.h"

namespace lvp::tool {

using namespace lumivard::platform::data;
namespace stores = lumivard::platform::stores;

namespace {

constexpr std::size_t kLargest = 10;
constexpr std::size_t kColumns = 60;
constexpr std::array kKinds{"roots", "primitives", "tables", "lists", "containers", "localized names"};

struct tOptions {
    std::string store;
    bool json = false;
};

/// Remembers the largest values, with their paths.
class Largest : public IVisitor {
public:
    struct tValueSize {
        std::uint64_t bytes;
        std::string path;
        std::string kind;
    };

    void primitive(const tPrimitive& item) override {
        const std::uint64_t bytes = std::uint64_t{item.dimension} * item.stride;
        if (found.size() == kLargest && bytes <= found.back().bytes) return;
        std::string path;
        for (const std::string& set : _sets) path += set + ".";
        const auto place =
            std::find_if(found.begin(), found.end(), [&](const auto& other) { return other.bytes < bytes; });
        found.insert(place, {bytes, path + utf8(item.name), nameOf(item.valuetype)});
        if (found.size() > kLargest) found.pop_back();
    }
    bool table(const tTable& item) override { return enter(item.name); }
    bool container(const tContainer& item) override { return enter(item.name); }
    void leave() override { _sets.pop_back(); }

    std::vector<tValueSize> found;

private:
    bool enter(std::wstring_view name) {
        _sets.push_back(utf8(name));
        return true;
    }

    std::vector<std::string> _sets;
};

struct tStatistics {
    std::optional<stores::FileReport> file;  ///< none of a store in a database
    check::Report records;
    std::vector<Largest::tValueSize> largest;
    unsigned int version = 0;
};

std::uint64_t spareIn(const stores::FileReport& file) {
    return file.freePages * file.pageSize;
}

stores::FileReport examine(const std::string& name) {
    Watch watch("stat", "pages");
    try {
        return stores::verify(name, false, {.progress = watch.listener()});
    } catch (const stores::StoreError& error) {
        refuseStore(name, error);
    }
}

tStatistics gather(const std::string& name) {
    tStatistics statistics;
    if (!isLocation(name)) statistics.file = examine(name);
    const auto store = openToRead(name);
    requireSetUp(*store, name);
    Watch watch("stat", "steps");
    WatchedStore watched(*store, watch);
    statistics.version = store->version();
    statistics.records = check::examine(watched, {});
    Largest largest;
    visit(watched, {}, largest);
    statistics.largest = largest.found;
    return statistics;
}

void printJson(const std::string& store, const tStatistics& statistics) {
    const check::Report& records = statistics.records;
    JsonWriter json(std::cout);
    json.beginObject();
    json.key("store").value(shown(store));
    json.key("version").value(statistics.version);
    if (statistics.file) {
        json.key("file").beginObject();
        json.key("format").value(statistics.file->format);
        json.key("length").value(statistics.file->length);
        json.key("spare").value(spareIn(*statistics.file));
        json.endObject();
    }
    json.key("records").value(records.records);
    json.key("bytes").value(records.bytes);
    json.key("kinds").beginArray();
    for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
        json.beginObject();
        json.key("kind").value(kKinds[kind]);
        json.key("records").value(records.byKind[kind]);
        json.key("bytes").value(records.bytesByKind[kind]);
        json.endObject();
    }
    json.endArray();
    json.key("levels").value(records.depth);
    json.key("unattached").value(records.unattached);
    json.key("unattachedBytes").value(records.unattachedBytes);
    json.key("live").value(records.live);
    json.key("findings").value(records.total());
    json.key("largest").beginArray();
    for (const auto& value : statistics.largest) {
        json.beginObject();
        json.key("path").value(value.path);
        json.key("kind").value(value.kind);
        json.key("bytes").value(value.bytes);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << '\n';
}

void print(const tStatistics& statistics) {
    const check::Report& records = statistics.records;
    if (statistics.file) {
        std::cout << "file: " << statistics.file->length << " bytes in format " << statistics.file->format
                  << ", version " << statistics.version << " of the data; compact would give back about "
                  << spareIn(*statistics.file) << " bytes\n";
    } else {
        std::cout << "database: version " << statistics.version << " of the data\n";
    }
    std::cout << "records: " << records.records << " of " << records.bytes << " bytes, on " << records.depth
              << " levels\n";
    for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
        if (records.byKind[kind] == 0) continue;
        std::cout << "  " << kKinds[kind] << ": " << records.byKind[kind] << " of " << records.bytesByKind[kind]
                  << " bytes\n";
    }
    std::cout << "unattached: " << records.unattached << " records of " << records.unattachedBytes << " bytes"
              << (records.unattached == 0 ? "" : "; check --repair --reclaim erases them") << '\n'
              << "open: " << records.live << (records.live == 1 ? " object" : " objects") << " counted on "
              << records.liveRecords << " records"
              << (records.live == 0 ? "" : "; where no program is at work, check --repair sets them right") << '\n';
    if (!statistics.largest.empty()) std::cout << "largest values:\n";
    for (const auto& value : statistics.largest) {
        std::cout << "  " << value.bytes << "  " << value.kind << "  " << shortened(value.path, kColumns) << '\n';
    }
}

tExitStatus showStatistics(const tOptions& options) {
    const tStatistics statistics = gather(options.store);
    if (options.json) {
        printJson(options.store, statistics);
    } else {
        print(statistics);
    }
    flushOutput();
    return kDone;
}

}  // namespace

void declareStat(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("stat", "Tell what a store consists of, and what takes the most room", "stat materials.lvp",
             [options] { return showStatistics(*options); })
        .store(options->store)
        .json(options->json);
}

}  // namespace lvp::tool
