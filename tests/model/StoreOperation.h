#pragma once

#include <string>
#include <utility>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::model {

using core::storage::datastore::IDataStore;

/// One call of a store, with its arguments.
struct StoreOperation {
    enum tCode {
        kCreate,
        kAppend,
        kUpdate,
        kCount,
        kWrite,       ///< a few bytes as content
        kWriteCount,  ///< and as bookkeeping
        kErase,
        kVersion,
        kSize,
        kRead,
        kReadPart,
        kState,
        kFlush
    };

    tCode code = kState;
    unsigned int offset = 0;
    unsigned int position = 0;  ///< where a part begins, or what is written
    unsigned int number = 0;    ///< a version, or how many bytes are asked for
    std::string bytes;
};

/// All that a caller can see of a call: that it threw, or the number and the bytes that it gave. `injected`: it was
/// made to fail, and so has done nothing.
struct StoreOutcome {
    bool refused = false;
    unsigned long long number = 0;
    std::string bytes;
    bool injected = false;

    static StoreOutcome of(unsigned long long number) { return {false, number, {}, false}; }
    static StoreOutcome of(std::string bytes) { return {false, 0, std::move(bytes), false}; }
    static StoreOutcome refusal() { return {true, 0, {}, false}; }

    bool operator==(const StoreOutcome&) const = default;
};

/// Makes the call. What is thrown is an outcome.
StoreOutcome perform(IDataStore& store, const StoreOperation& operation);

/// The whole contents of a record.
std::string contents(IDataStore& store, unsigned int offset);

/// A line for a person.
std::string described(const StoreOperation& operation);
std::string described(const StoreOutcome& outcome);

}  // namespace lumivard::platform::model
