#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "bench/workloads/Data.h"
#include "bench/workloads/Measure.h"
#include "bench/workloads/Program.h"

// W8, the bare store of records, for whatever can hold them. An engine is a class that has:
//
//     kLasts                   whether records outlive the engine in a file; if not, there are no durable commits
//     create(file)             begins a new store
//     add(number, record)      adds the record of the next number
//     get(number, record)      copies a record
//     put(number, record)      replaces a record
//     flush()                  makes everything so far durable
//     close()                  gives everything back
//     files(file)              the files that the records lie in

namespace lvp::bench {

struct Record {
    std::uint32_t number;
    std::uint32_t edition;
    char filler[112];
};
static_assert(sizeof(Record) == 120);

constexpr unsigned int kCommits = 200;
constexpr unsigned int kRecordsOfCommit = 10;

template <class Engine>
std::uintmax_t bytesOfRecords(const std::filesystem::path& file) {
    std::uintmax_t sum = 0;
    for (const auto& part : Engine::files(file)) sum += bytesOf(part);
    return sum;
}

/// Creates records, reads all of them at random, updates a tenth of them at random, and some more in durable commits.
template <class Engine>
void runRecords(const Case& run) {
    const unsigned int count = run.count;
    const std::vector<unsigned int> reads = shuffled(count, 2);
    const std::vector<unsigned int> updates = shuffled(count, 3);
    const std::vector<unsigned int> commits = shuffled(count, 4);
    require(count >= kCommits * kRecordsOfCommit, "there are too few records for the commits");
    std::vector<std::uint8_t> editions(count);
    const auto file = run.scratch("records");
    for (const auto& part : Engine::files(file)) std::filesystem::remove(part);
    Record record{};
    std::fill(std::begin(record.filler), std::end(record.filler), 'x');
    Engine engine;

    const Measure creating = measured([&] {
        engine.create(file);
        for (record.number = 0; record.number < count; ++record.number) engine.add(record.number, record);
        engine.flush();
    });
    run.report("W8.create", count, creating, bytesOfRecords<Engine>(file));

    std::uint64_t numbers = 0;
    const Measure reading = measured([&] {
        Record read;
        for (const unsigned int number : reads) {
            engine.get(number, read);
            keep(&read);
            numbers += read.number;
        }
    });
    run.report("W8.read", count, reading, 0);
    require(numbers == std::uint64_t{count} * (count - 1) / 2, "a record was not read");

    const auto update = [&](unsigned int number, std::uint8_t edition) {
        record.number = number;
        record.edition = edition;
        editions[number] = edition;
        engine.put(number, record);
    };
    const Measure updating = measured([&] {
        for (unsigned int i = 0; i < count / 10; ++i) update(updates[i], 1);
        engine.flush();
    });
    run.report("W8.update", count / 10, updating, bytesOfRecords<Engine>(file));

    if constexpr (Engine::kLasts) {
        unsigned int done = 0;
        const Measure committing = measured([&] {
            done = repeat(kCommits, 1, [&](unsigned int commit) {
                for (unsigned int i = 0; i < kRecordsOfCommit; ++i) update(commits[commit * kRecordsOfCommit + i], 2);
                engine.flush();
            });
        });
        run.report("W8.commit", kCommits, done, committing, bytesOfRecords<Engine>(file));
    }

    for (unsigned int number = 0; number < count; ++number) {
        Record read;
        engine.get(number, read);
        require(read.number == number && read.edition == editions[number] && read.filler[0] == 'x',
                "a record is not what was written");
    }
    engine.close();
    for (const auto& part : Engine::files(file)) std::filesystem::remove(part);
}

}  // namespace lvp::bench
