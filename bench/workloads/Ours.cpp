#include <string_view>

#include "bench/workloads/OursTree.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/TreeWorkloads.h"

// This library through its public interfaces: on a file ("ours") and on a store in memory ("ours_memory").

namespace lvp::bench {

namespace {

constexpr Row kRows[] = {
    {"ours", "W1", buildTree<OursFile>},
    {"ours", "W2", readTree<OursFile>},
    {"ours", "W3", lookUp<OursFile>},
    {"ours", "W4", editTree<OursFile>},
    {"ours", "W4d", editTree<OursFile>},
    {"ours", "W5", wideSet<OursFile>},
    {"ours", "W6", writeDocument},
    {"ours", "W8", runRecordsInFile},
    {"ours_objects", "W2", readTree<OursObjects>},
    {"ours_objects", "W3", lookUp<OursObjects>},
    {"ours_memory", "W1", buildTree<OursMemory>},
    {"ours_memory", "W2", readTree<OursMemory>},
    {"ours_memory", "W3", lookUp<OursMemory>},
    {"ours_memory", "W4", editTree<OursMemory>},
    {"ours_memory", "W5", wideSet<OursMemory>},
    {"ours_memory", "W6", writeDocument},
    {"ours_memory", "W7", readDocument},
    {"ours_memory", "W8", runRecordsInMemory},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
