#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bench/workloads/Measure.h"

// What every program of the benchmark is: a list of subjects and the workloads that they do, run one at a time.
//
//     PROGRAM --list                              a line for each of its pairs: subject, tab, workload
//     PROGRAM SUBJECT WORKLOAD COUNT FOLDER       runs one, in a folder in which the files of earlier ones lie
//
// A run prints a line for each of its steps, a JSON object:
//
//     subject   what did it, such as "sqlite"
//     step      the workload, with the step where it has several: "W1", "W5.lookup"
//     count     the size of the workload: N properties, children or records
//     asked     how many items were to be worked on
//     items     how many were; fewer where `kPatience` was over
//     seconds   how long all of them took
//     peak      the most memory that the process had resident until then, in bytes
//     grown     how much more of it there was at the end of the step than at its beginning, in bytes
//     file      the length of the file that was made, changed or read, in bytes; 0 without one
//
// Exit status: 0 done, and what was read is what was written; 1 not so, with a sentence on standard error.

namespace lvp::bench {

/// One run, of one workload by one subject. A subject with an underscore in its name is another way of using the one
/// that is named before it, on the same files.
struct Case {
    std::string subject;
    std::string workload;
    unsigned int count;
    std::filesystem::path folder;

    /// The subject's file for this count, which W1 leaves behind for the workloads that read it.
    std::filesystem::path file(std::string_view ending) const;

    /// A file of this run's own, which it removes in the end.
    std::filesystem::path scratch(std::string_view ending) const;

    /// The document of the tree of this size, the same for everybody: W6 of "ours" writes it.
    std::filesystem::path document() const;

    /// Prints the line of a step that did all it was asked for, or `items` of it.
    void report(std::string_view step, unsigned int asked, const Measure& measure, std::uintmax_t file) const {
        report(step, asked, asked, measure, file);
    }
    void report(std::string_view step, unsigned int asked, unsigned int items, const Measure& measure,
                std::uintmax_t file) const;
};

struct Row {
    const char* subject;
    const char* workload;
    void (*run)(const Case&);
};

int runProgram(int argc, char** argv, std::span<const Row> rows);

/// Throws where something did not do what it has to.
inline void require(bool done, const char* what) {
    if (!done) throw std::runtime_error(what);
}

}  // namespace lvp::bench
