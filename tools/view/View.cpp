#include <filesystem>
#include <memory>

#include "lumivard/platform/data/check/Check.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/WatchedStore.h"
#include "tools/schemas/Schemas.h"
#include "tools/view/PageData.h"
#include "tools/view/PageStream.h"
#include "tools/view/PageText.h"

namespace lvp::tool {

namespace core = lumivard::platform::core;
namespace check = lumivard::platform::data::check;

namespace {

struct tOptions {
    std::string store;
    std::string output;
    std::vector<std::string> schemas;
    bool all = false;
};

void write(core::io::IDataWriter& writer, std::string_view text) {
    writer.write(text.data(), text.size());
}

tExitStatus viewStore(const tOptions& options) {
    refuseOutput("the page", options.output, options.store, options.schemas);
    if (options.output.empty() && isTerminalOutput()) {
        throw Failure(kWrongUsage, "the page is long: give it a file by -o PAGE.html");
    }
    Schemas schemas(options.schemas);
    Watch watch("view", "looks");
    WatchedStore store(schemas.storeToRead(options.store), watch);
    tPageSource source;
    source.name = std::filesystem::path(options.store).filename().string();
    source.store = &store;
    source.schemas = &schemas;
    if (options.all) source.limits = tPageLimits::none();
    // Before anything is opened: what is open shows in the counts that the checker looks at.
    source.report = check::examine(store);

    const auto writer = openOutput("the page", options.output);
    write(*writer, kPageBeforeData);
    PageStream out(*writer);
    writePageData(out, source);
    out.flush();
    write(*writer, kPageAfterData);
    writer->close();
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace

void declareView(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("view", "Write a store as one HTML page, to be looked at in a browser",
             "view materials.lvp -o materials.html", [options] { return viewStore(*options); })
        .store(options->store)
        .option("-o,--output", options->output, "The page; standard output when left out")
        .flag("--all", options->all, "Put whole values into the page, however long they are")
        .schemas(options->schemas);
}

}  // namespace lvp::tool
