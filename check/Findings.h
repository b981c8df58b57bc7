#pragma once

#include <map>
#include <string>
#include <tuple>

#include "check/Rules.h"
#include "lumivard/platform/data/check/Options.h"
#include "lumivard/platform/data/check/Report.h"

namespace lumivard::platform::data::Check {

using check::Finding;
using check::Options;
using check::Report;

/// Takes findings as they come: counts all, and keeps those of the lowest offsets.
class Findings {
public:
    explicit Findings(const Options& options) : _options(options) {}

    /// Takes a finding, of the severity of its rule or of `most` where that is less; false when its rule is not
    /// applied.
    bool add(tRule number, unsigned int offset, std::string found, std::string repair = {},
             tSeverity most = tSeverity::kFatal);

    /// Hands counts and findings over; `path(offset)` tells the path of a record. It may find something itself: a
    /// record that was read before and cannot be read now. That is counted and kept with the others, without a path.
    template <class Path>
    void moveTo(Report& report, Path path) {
        std::map<unsigned int, std::wstring> paths;
        for (const auto& [key, finding] : _kept) paths.try_emplace(finding.offset);
        for (auto& [offset, itsPath] : paths) itsPath = path(offset);
        for (auto& [key, finding] : _kept) {
            const auto known = paths.find(finding.offset);
            if (known != paths.end()) finding.path = known->second;
            report.findings.push_back(std::move(finding));
        }
        report.byCode = std::move(_byCode);
        report.bySeverity = _bySeverity;
    }

private:
    /// Offset, rule, and the number of the finding.
    using tKey = std::tuple<unsigned int, tRule, std::uint64_t>;

    const Options& _options;
    std::map<tKey, Finding> _kept;
    std::map<std::string, std::uint64_t> _byCode;
    std::array<std::uint64_t, 4> _bySeverity{};
    std::uint64_t _count = 0;
};

}  // namespace lumivard::platform::data::Check
