#pragma once

#include <cstdint>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "tests/model/TreeOperation.h"

namespace lumivard::platform::model {

/// What one process has done under one guard, in order.
struct tDeed {
    unsigned int process = 0;
    bool isNew = false;  ///< before that it has begun anew, and whatever it had open is void
    std::vector<TreeOperation> operations{};
};

/// What processes that share a store have done to its tree, in the order in which they had the guard: kept in the store
/// itself, so that what is noted under a guard is stored along with what was done under it, or neither is. Each deed is
/// a record; one more lists them, and is found by the store's version.
///
/// All members are called under the guard. It reads a deed once.
class OperationLog {
public:
    using IDataStore = core::storage::datastore::IDataStore;

    /// Makes an empty log in a store that has its first record.
    static void make(IDataStore& store);

    explicit OperationLog(IDataStore& store) : _store(&store) {}

    /// Goes on in the same store, which has been opened anew.
    void goOn(IDataStore& store) { _store = &store; }

    /// What has been noted since the last call, but not by this object.
    std::vector<tDeed> news();

    /// Notes something where the news are known.
    void note(const tDeed& deed);

    /// How many operations are known.
    std::uint64_t operations() const { return _operations; }

    /// Takes all of it out of the store.
    void remove();

private:
    std::vector<unsigned int> list();

    IDataStore* _store;
    std::size_t _known = 0;
    std::uint64_t _operations = 0;
};

}  // namespace lumivard::platform::model
