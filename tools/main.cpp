#include <fcntl.h>
#include <unistd.h>

#include "tools/Verbs.h"

namespace {

/// A stream that the caller has closed is opened on nothing, the way in which it fails: the number would go to the next
/// file that is opened, and messages into a store.
void holdStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) == -1) {
            static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    using namespace lvp::tool;
    holdStreams();
    CommandLine line;
    for (const auto declare :
         {declareTree, declareView,  declareList,   declareGet,     declareSet,  declareMake,     declareRemove,
          declareMove, declareCopy,  declareImport, declareExport,  declareDiff, declareValidate, declareSchema,
          declareUnit, declareCheck, declareStat,   declareCompact, declareDump, declareGenerate}) {
        declare(line);
    }
#ifdef LVP_TOOL_POSTGRES
    declareStore(line);
#endif
    return line.run(argc, argv);
}
