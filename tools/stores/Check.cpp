#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/stores.h"
#include "tools/Verbs.h"
#include "tools/base/ChangedStore.h"
#include "tools/base/Files.h"
#include "tools/base/Location.h"
#include "tools/base/Text.h"
#include "tools/base/WatchedStore.h"
#include "tools/stores/CheckJson.h"
#include "tools/stores/CheckOldBytes.h"
#include "tools/stores/CheckResult.h"
#include "tools/stores/CheckText.h"

namespace lvp::tool {

using namespace lumivard::platform::data;
namespace stores = lumivard::platform::stores;

namespace {

stores::FileReport verify(const tCheckOptions& options) {
    if (isLocation(options.store)) return {};  // what a database has beneath is not ours to examine
    Watch watch("check", "pages");
    try {
        return stores::verify(options.store, options.whole || options.repair, {.progress = watch.listener()});
    } catch (const stores::StoreError& error) {
        refuseStore(options.store, error);
    }
}

/// Whether the file can be opened in spite of its faults: records that are not as they were written are refused one by
/// one.
bool canBeOpened(const stores::FileReport& file) {
    return file.faultCount == file.faults.size() &&
           std::all_of(file.faults.begin(), file.faults.end(),
                       [](const stores::FileFault& fault) { return fault.code == "container.checksum"; });
}

/// Looks at the store, and at what can be read of one that must not be repaired.
void examine(const tCheckOptions& options, tCheckResult& result) {
    if (canBeOpened(result.file)) {
        const auto store = openToRead(options.store);
        Watch watch("check", "steps");
        WatchedStore watched(*store, watch);
        result.report = check::examine(watched, {.whole = options.whole});
    }
    if (options.json) return;
    printFound(result, std::cout);
    if (options.repair) std::cout << "nothing was repaired: the file has faults below its records\n";
}

check::Repair planFor(IDataStore& store, const check::Options& how) {
    Watch watch("check", "steps");
    WatchedStore watched(store, watch);
    return check::plan(watched, how);
}

/// What was found, why, and what is going to be done is told before anything is. Nobody else gets at the store between.
void repair(const tCheckOptions& options, tCheckResult& result) {
    ChangedStore store(options.store, false);
    check::Options how{.whole = options.whole, .reclaim = options.reclaim};
    auto repair = planFor(*store, how);
    result.report = repair.before;
    if (!options.json) {
        printFound(result, std::cout);
        printPlan(repair, std::cout);
        flushOutput();
    }
    if (!repair.steps.empty()) {
        result.oldBytes = keepOldBytes(options.store, repair);
        try {
            if (!check::apply(*store, repair)) throw std::runtime_error("the store changed while it was examined");
            repair.after = check::examine(*store, how);
        } catch (const std::exception& error) {
            throw Failure(kCannotFinish, std::string(error.what()) + "; the old bytes are in " + result.oldBytes);
        }
    }
    store.keep();
    result.repair = std::move(repair);
}

tExitStatus checkStore(const tCheckOptions& options) {
    tCheckResult result;
    result.store = options.store;
    result.inFile = !isLocation(options.store);
    result.file = verify(options);
    if (options.repair && result.file.faultCount == 0) {
        repair(options, result);
    } else {
        examine(options, result);
    }
    if (options.json) {
        printJson(result, std::cout);
    } else {
        printEnd(result, std::cout);
    }
    flushOutput();
    return result.clean() ? kDone : kFaults;
}

}  // namespace

void declareCheck(CommandLine& line) {
    const auto options = std::make_shared<tCheckOptions>();
    line.add("check", "Tell whether a store is in order, and mend it", "check materials.lvp --whole",
             [options] { return checkStore(*options); })
        .store(options->store)
        .flag("--whole", options->whole, "Look at every byte, and for records below every offset")
        .json(options->json)
        .flag("--repair", options->repair, "Mend what needs no guessing; the old bytes go to STORE.before-repair")
        .flag("--reclaim", options->reclaim, "Erase the records that nothing reaches, too", "--repair");
}

}  // namespace lvp::tool
