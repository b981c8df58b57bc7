#include <filesystem>
#include <iostream>
#include <memory>

#include "lumivard/platform/stores.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Location.h"
#include "tools/base/Watch.h"

namespace lvp::tool {

namespace stores = lumivard::platform::stores;

namespace {

struct tOptions {
    std::string store;
    bool json = false;
};

void compact(const std::string& store) {
    Watch watch("compact", "steps");
    try {
        stores::compact(store, {.progress = watch.listener()});
    } catch (const stores::StoreError& error) {
        throw Failure(kCannotFinish, error.what());
    }
}

/// What cannot be opened is refused as by every other command.
void requireOpening(const std::string& store) {
    if (isLocation(store)) {
        throw Failure(kCannotOpen,
                      "the store " + store +
                          " has no file, so there is nothing to do: the database takes the room of what is "
                          "gone for what comes");
    }
    openToChange(store);
}

tExitStatus compactStore(const tOptions& options) {
    requireOpening(options.store);
    const auto before = std::filesystem::file_size(options.store);
    compact(options.store);
    const auto after = std::filesystem::file_size(options.store);
    if (options.json) {
        JsonWriter json(std::cout);
        json.beginObject();
        json.key("store").value(options.store);
        json.key("before").value(before);
        json.key("after").value(after);
        json.endObject();
        std::cout << '\n';
    } else {
        std::cout << before << " bytes before, " << after << " bytes now\n";
    }
    flushOutput();
    return kDone;
}

}  // namespace

void declareCompact(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("compact", "Make the file of a store as small as it can be", "compact materials.lvp",
             [options] { return compactStore(*options); })
        .store(options->store)
        .json(options->json);
}

}  // namespace lvp::tool
