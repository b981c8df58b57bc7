#pragma once

#include <optional>
#include <string>

#include "lumivard/platform/data/check/Repair.h"
#include "lumivard/platform/stores/FileReport.h"

namespace lvp::tool {

/// What `check` is asked to do.
struct tCheckOptions {
    std::string store;
    bool whole = false;
    bool json = false;
    bool repair = false;
    bool reclaim = false;
};

/// What it has found out and done.
struct tCheckResult {
    std::string store;
    bool inFile = true;  ///< or in a database, of which nothing is known below the records

    /// The file below the records; no faults for a store in a database. Where it has faults that keep it from being
    /// opened, there is no report.
    lumivard::platform::stores::FileReport file;
    std::optional<lumivard::platform::data::check::Report> report;

    /// What was done about it, the file that keeps the old bytes, and what is left.
    std::optional<lumivard::platform::data::check::Repair> repair;
    std::string oldBytes;

    /// What the store is like now.
    const lumivard::platform::data::check::Report* last() const {
        if (repair) return &repair->after;
        return report ? &*report : nullptr;
    }

    /// Whether nothing at all is the matter now.
    bool clean() const { return file.faultCount == 0 && last() && last()->clean(); }
};

/// One sentence on what the store is like now.
std::string verdict(const tCheckResult& result);

/// A severity in one word.
const char* word(lumivard::platform::data::check::tSeverity severity);

}  // namespace lvp::tool
