#include <iostream>
#include <memory>

#include "lumivard/platform/data/check/Check.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/Location.h"
#include "tools/base/WatchedStore.h"
#include "tools/schemas/Schemas.h"
#include "tools/view/PageData.h"
#include "tools/view/PageStream.h"
#include "tools/view/PageText.h"

namespace lvp::tool {

namespace core = lumivard::platform::core;
namespace check = lumivard::platform::data::check;

namespace {

/// Bytes of data that browsers can still take for one text; they end at about 2^29 characters.
constexpr std::uint64_t kMostForBrowsers = 500'000'000;

struct tOptions {
    std::string store;
    std::string output;
    std::vector<std::string> schemas;
    bool all = false;
};

void write(core::io::IDataWriter& writer, const std::vector<std::string_view>& pieces) {
    for (const std::string_view piece : pieces) writer.write(piece.data(), piece.size());
}

/// Writes the page, and gives the bytes of its data.
std::uint64_t writePage(const tOptions& options, Schemas& schemas) {
    Watch watch("view", "looks");
    WatchedStore store(schemas.storeToRead(options.store), watch);
    tPageSource source;
    source.name = calledName(options.store);
    source.store = &store;
    source.schemas = &schemas;
    if (options.all) source.limits = tPageLimits::none();
    // Before anything is opened: what is open shows in the counts that the checker looks at. What nothing reaches is
    // told as a number: notes of it, of which there may be thousands, would leave no room for what is wrong.
    check::Options checks;
    checks.without = {"live.unattached"};
    source.report = check::examine(store, checks);

    const auto writer = openOutput("the page", options.output);
    write(*writer, kPageBeforeData);
    PageStream out(*writer);
    writePageData(out, source);
    out.flush();
    write(*writer, kPageAfterData);
    writer->close();
    return out.written();
}

tExitStatus viewStore(const tOptions& options) {
    refuseOutput("the page", options.output, options.store, options.schemas);
    if (options.output.empty() && isTerminalOutput()) {
        throw Failure(kWrongUsage, "the page is long: give it a file by -o PAGE.html");
    }
    Schemas schemas(options.schemas);
    const std::uint64_t bytes = writePage(options, schemas);
    if (bytes > kMostForBrowsers) {
        std::cerr << "lvp-data: the page has " << bytes / 1'000'000
                  << " MB, and a browser may show nothing of more than 500 MB\n";
    }
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace

void declareView(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("view", "Write a store as one HTML page, to be looked at in a browser",
             "view materials.lvp -o materials.html", [options] { return viewStore(*options); })
        .store(options->store)
        .output(options->output, "The page; standard output when left out")
        .flag("--all", options->all, "Put whole values into the page, however long they are")
        .schemas(options->schemas);
}

}  // namespace lvp::tool
