#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::stores::disk {

using core::storage::datastore::IDataStore;

/// All that can be read from a store, in one number: records with their bytes, extent and version.
std::uint64_t fingerprint(IDataStore& store);

/// A model of a store that changes it batch by batch: what batch n does follows from the seed and from n alone, so that
/// the content after it can be told although whoever wrote it is dead.
///
/// A batch creates, replaces, extends and erases records, most of them short, some as long as several pages of a file,
/// and sets the version. After some dozens of records it keeps their number.
class Workload {
public:
    explicit Workload(std::uint64_t seed);

    std::uint64_t seed() const { return _seed; }

    /// How many batches there were.
    unsigned int batches() const { return static_cast<unsigned int>(_history.size()) - 1; }

    /// Does the next batch, in `store` as well if there is one.
    void next(IDataStore* store = nullptr);

    /// The fingerprint of a store after batch `number`, for all that there were; 0 is a new store.
    std::uint64_t after(unsigned int number) const { return _history.at(number); }
    const std::vector<std::uint64_t>& history() const { return _history; }

private:
    class Batch;
    std::uint64_t fingerprint() const;

    std::uint64_t _seed;
    std::vector<std::string> _records;  // by offset; empty where erased
    std::vector<unsigned int> _living;
    unsigned int _version = 0;
    std::vector<std::uint64_t> _history;
};

}  // namespace lumivard::platform::stores::disk
