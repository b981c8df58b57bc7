#pragma once

#include <limits>
#include <ostream>

#include "tests/cost/CountingStore.h"
#include "tests/fault/calls/Allocations.h"

namespace lumivard::platform::test_support {

/// What a piece of work has taken.
struct tCost {
    std::uint64_t calls;   ///< of the store, without guards
    std::uint64_t bytes;   ///< of records, copied from the store or to it
    std::uint64_t guards;  ///< taken
    long long requests;    ///< for memory

    bool operator==(const tCost&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const tCost& cost) {
    return out << cost.calls << " calls, " << cost.bytes << " bytes, " << cost.guards << " guards, " << cost.requests
               << " requests for memory";
}

/// Does a piece of work on a store and tells what it took.
template <class Work>
tCost costOf(CountingStore& store, Work work) {
    store.clear();
    fault::allocations::failAfter(std::numeric_limits<long long>::max(), false);
    work();
    const long long requests = fault::allocations::requests();
    fault::allocations::goOn();
    return {store.count().calls, store.count().bytes, store.count().guards, requests};
}

}  // namespace lumivard::platform::test_support
