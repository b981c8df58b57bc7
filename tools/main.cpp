#include "tools/Verbs.h"

int main(int argc, char** argv) {
    using namespace lvp::tool;
    CommandLine line;
    for (const auto declare :
         {declareTree, declareView,  declareList,   declareGet,     declareSet,  declareMake,     declareRemove,
          declareMove, declareCopy,  declareImport, declareExport,  declareDiff, declareValidate, declareSchema,
          declareUnit, declareCheck, declareStat,   declareCompact, declareDump, declareGenerate}) {
        declare(line);
    }
    return line.run(argc, argv);
}
