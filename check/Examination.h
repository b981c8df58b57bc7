#pragma once

#include <vector>

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// One examination of a store, from the census to the report. The store must stand still as long as it runs.
class Examination {
public:
    Examination(IDataStore& store, const Options& options) : _case(store, options) {}

    /// Applies all rules and returns what was found.
    Report run();

    /// What would mend it, apart from erasing; after `run`.
    const Edits& edits() const { return _case.edits; }

    /// The records that nothing reaches; after `run`.
    const std::vector<unsigned int>& unattached() const { return _unattached; }

    /// The records that the store did not give out; after `run`.
    std::vector<unsigned int> unreadable() const;

private:
    void takeCensus();
    void count(Report& report) const;

    Case _case;
    std::vector<unsigned int> _unattached;
};

}  // namespace lumivard::platform::data::Check
