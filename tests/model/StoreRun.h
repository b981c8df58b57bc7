#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "tests/model/StoreModel.h"

namespace lumivard::platform::model {

/// A store and its model under the same random calls, compared at each of them. It remembers the last calls, and stops
/// at the first difference.
class StoreRun {
public:
    explicit StoreRun(std::uint64_t seed, const StoreModel::tRules& rules = {}) : _random(seed), _model(rules) {}

    /// Makes up to `count` calls of a store, under its guard; false when a difference was found, then or before.
    bool go(IDataStore& store, std::uint64_t count);

    /// The same in the model alone, for what another process does to the store.
    void goAlone(std::uint64_t count);

    /// Compares everything.
    bool compare(IDataStore& store);

    /// What differed and which calls led there, as lines for a person; empty as long as nothing did.
    const std::string& difference() const { return _difference; }

    StoreModel& model() { return _model; }
    tRandom& random() { return _random; }
    std::uint64_t done() const { return _done; }

private:
    void note(const StoreOperation& operation);
    bool differs(const std::string& what);

    tRandom _random;
    StoreModel _model;
    std::uint64_t _done = 0;
    std::deque<StoreOperation> _last;
    std::string _difference;
};

}  // namespace lumivard::platform::model
