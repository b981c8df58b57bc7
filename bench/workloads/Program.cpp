#include "bench/workloads/Program.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

namespace lvp::bench {

std::filesystem::path Case::file(std::string_view ending) const {
    const std::string owner = subject.substr(0, subject.find('_'));
    return folder / (owner + "-" + std::to_string(count) + "." + std::string(ending));
}

std::filesystem::path Case::scratch(std::string_view ending) const {
    return folder / (subject + "-" + std::to_string(count) + "-" + workload + "." + std::string(ending));
}

std::filesystem::path Case::document() const {
    return folder / ("tree-" + std::to_string(count) + ".xml");
}

void Case::report(std::string_view step, unsigned int asked, unsigned int items, const Measure& measure,
                  std::uintmax_t file) const {
    std::printf(
        "{\"subject\": \"%s\", \"step\": \"%.*s\", \"count\": %u, \"asked\": %u, \"items\": %u, \"seconds\": %.9f, "
        "\"peak\": %ld, \"grown\": %ld, \"file\": %ju}\n",
        subject.c_str(), static_cast<int>(step.size()), step.data(), count, asked, items, measure.seconds, measure.peak,
        measure.grown, file);
    std::fflush(stdout);
}

int runProgram(int argc, char** argv, std::span<const Row> rows) {
    if (argc == 2 && std::string_view(argv[1]) == "--list") {
        for (const Row& row : rows) std::printf("%s\t%s\n", row.subject, row.workload);
        return EXIT_SUCCESS;
    }
    if (argc == 5) {
        const Case run{argv[1], argv[2], static_cast<unsigned int>(std::strtoul(argv[3], nullptr, 10)), argv[4]};
        for (const Row& row : rows) {
            if (run.subject != row.subject || run.workload != row.workload) continue;
            try {
                row.run(run);
                return EXIT_SUCCESS;
            } catch (const std::exception& error) {
                std::fprintf(stderr, "%s %s %u: %s\n", argv[1], argv[2], run.count, error.what());
                return EXIT_FAILURE;
            }
        }
    }
    std::fprintf(stderr, "usage: %s --list | SUBJECT WORKLOAD COUNT FOLDER\n", argv[0]);
    return EXIT_FAILURE;
}

}  // namespace lvp::bench
