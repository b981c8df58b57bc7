#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::stores::load {

using core::storage::datastore::IDataStore;

/// What should never be seen: something that was promised has not been kept.
class Fault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Numbers in a store that have to agree, so that it shows when a flush is lost, done by halves or done upon an older
/// state than the last one.
///
/// There are several tallies, of which one is longer than a row of the database, all with the number of all steps that
/// were ever taken. Each writer has a counter with the number of its own steps, and a journal, to which each of its
/// steps appends its number. So each step changes records of all kinds, and of all of them together.
///
/// Everything is done under a guard that the caller holds.
class Ledger {
public:
    struct tTotals {
        std::uint64_t tally = 0;
        std::vector<std::uint64_t> counters;  ///< of each writer
    };

    explicit Ledger(IDataStore& store) : _store(store) {}

    /// Fills a new store.
    void create(unsigned int writers);

    /// What the records say, if they agree; throws `Fault` otherwise.
    tTotals look();

    /// Takes a step, upon what was looked at. Where that fails, what was changed is given up, and so is the store.
    void step(unsigned int writer, const tTotals& before);

    /// Throws `Fault` unless a writer's journal holds the numbers of all its steps, each once.
    void requireJournal(unsigned int writer, std::uint64_t steps);

private:
    std::vector<std::uint64_t> _words(unsigned int offset);
    std::uint64_t _number(unsigned int offset);
    void _put(unsigned int offset, std::uint64_t number);

    IDataStore& _store;
};

}  // namespace lumivard::platform::stores::load
