#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "lumivard/platform/data/check/Finding.h"

namespace lumivard::platform::data::check {

/// What an examination found.
struct Report {
    static constexpr std::size_t kKinds = 6;  ///< the kinds of records

    /// The first findings, ordered by offset, then by code; `Options::keep` of them at the most.
    std::vector<Finding> findings;

    /// How often each rule was broken, by code: all findings, also those that were not kept.
    std::map<std::string, std::uint64_t> byCode;

    /// The same by severity.
    std::array<std::uint64_t, 4> bySeverity{};

    std::uint64_t records = 0;                        ///< all that were found
    std::array<std::uint64_t, kKinds> byKind{};       ///< of each kind, whose number is the index
    std::uint64_t bytes = 0;                          ///< of all
    std::array<std::uint64_t, kKinds> bytesByKind{};  ///< of those of each kind

    std::uint64_t live = 0;         ///< how many objects count themselves as open
    std::uint64_t liveRecords = 0;  ///< and on how many records

    std::uint64_t reached = 0;       ///< records that are reached from the top, lists and localized names included
    std::uint64_t reachedBytes = 0;  ///< and their bytes

    /// Those that nothing reaches, which is what "live.unattached" tells of; without such as cannot be read.
    std::uint64_t unattached = 0;

    /// The bytes of those.
    std::uint64_t unattachedBytes = 0;

    /// The number of levels below the top.
    std::uint64_t depth = 0;

    /// Whether all offsets below the store's extent were looked at. If not, only what references lead to was: a report
    /// without findings then says nothing of records that nothing reaches, nor does a repair erase them.
    bool searched = true;

    /// How many findings of a severity there were.
    std::uint64_t count(tSeverity severity) const { return bySeverity[static_cast<std::size_t>(severity)]; }

    /// How many findings there were in all.
    std::uint64_t total() const { return bySeverity[0] + bySeverity[1] + bySeverity[2] + bySeverity[3]; }

    /// Whether nothing at all was found.
    bool clean() const { return total() == 0; }

    /// Whether no content is wrong: notes and stale counts stand in nobody's way of reading.
    bool sound() const { return count(tSeverity::kDamage) == 0 && count(tSeverity::kFatal) == 0; }
};

}  // namespace lumivard::platform::data::check
