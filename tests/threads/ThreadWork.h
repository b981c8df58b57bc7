#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"

namespace lumivard::platform::model {

using core::storage::datastore::IDataStore;

inline constexpr unsigned int kThreads = 8;

/// Runs `work(number)` on eight threads that begin together, and waits for their ends.
void onThreads(const std::function<void(unsigned int)>& work);

/// What several threads do on one store through the public interfaces, each in a top-level container of its own but for
/// one that all add to. What a thread does follows from the seed and its number, so that the same work can be done by
/// one thread after the other.
class ThreadWork {
public:
    /// Sets the store up, and makes schemas in another one, which both outlive this object.
    ThreadWork(IDataStore& store, IDataStore& schemas, std::uint64_t seed);

    /// The steps of the thread of that number, which keeps to the rules of the interfaces.
    void run(unsigned int number, unsigned int steps);

    /// All that there is when the threads are done, as text. What was added by all stands in the order of its names.
    std::string result();

private:
    class Worker;

    IDataStore& _store;
    IDataStore& _schemas;
    data::SharedPtr<data::metadata::ISchemaLocator> _locator;
    std::uint64_t _seed;
};

}  // namespace lumivard::platform::model
