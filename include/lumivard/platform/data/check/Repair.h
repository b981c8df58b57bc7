#pragma once

#include <string>
#include <vector>

#include "lumivard/platform/data/check/Report.h"

namespace lumivard::platform::data::check {

/// What a repair does to one record.
struct Step {
    unsigned int offset = 0;  ///< of the record
    std::string before;       ///< all bytes of the record as they are
    std::string after;        ///< all bytes as they shall be; empty for one that is erased
    bool erases = false;      ///< the record goes
};

/// What is to be done to a store.
struct Repair {
    /// One step for each record that changes, by offset.
    std::vector<Step> steps;

    /// What was found before the first step, as by `examine`.
    Report before;

    /// What will be left when all steps are done.
    Report after;
};

}  // namespace lumivard::platform::data::check
