#include "tools/stores/CheckText.h"

#include <algorithm>
#include <string_view>

#include "lumivard/platform/core/string/WideString.h"
#include "tools/base/Text.h"

namespace lvp::tool {

using namespace lumivard::platform::data;
using lumivard::platform::core::string::WideString;
using lumivard::platform::stores::FileFault;

namespace {

constexpr const char* kUnattached = "live.unattached";

void printFinding(const check::Finding& finding, std::ostream& out) {
    out << word(finding.severity) << ' ' << finding.code << ' ' << finding.offset;
    if (!finding.path.empty()) out << ' ' << printable(WideString(finding.path.c_str()).string());
    out << ": " << printable(finding.found);
    if (!finding.repair.empty()) out << "; " << printable(finding.repair);
    out << '\n';
}

/// `count` "more", where not all could be kept.
void printMore(std::uint64_t all, std::size_t kept, std::ostream& out) {
    if (all > kept) out << "... and " << all - kept << " more\n";
}

bool isUnattached(const check::Finding& finding) {
    return std::string_view(finding.code) == kUnattached;
}

/// How many findings of what nothing reaches there are, if they are too many to tell each of them; otherwise 0.
std::uint64_t manyUnattached(const check::Report& report) {
    constexpr std::uint64_t kFew = 10;
    const auto count = report.byCode.find(kUnattached);
    return count == report.byCode.end() || count->second <= kFew ? 0 : count->second;
}

void printFindings(const check::Report& report, std::ostream& out) {
    const std::uint64_t summedUp = manyUnattached(report);
    std::size_t told = 0;
    for (const check::Finding& finding : report.findings) {
        if (summedUp != 0 && isUnattached(finding)) continue;
        printFinding(finding, out);
        ++told;
    }
    printMore(report.total() - summedUp, told, out);
    if (summedUp == 0) return;
    out << "note " << kUnattached << ": " << report.unattached << " records of " << report.unattachedBytes
        << " bytes in " << summedUp << " subtrees, which nothing reaches";
    const auto first = std::find_if(report.findings.begin(), report.findings.end(), isUnattached);
    if (first != report.findings.end() && !first->repair.empty()) out << "; " << first->repair;
    out << '\n';
}

void printTotals(const check::Report& report, std::ostream& out) {
    for (const auto& [code, count] : report.byCode) out << "  " << code << ": " << count << '\n';
    out << report.records << " records of " << report.bytes << " bytes, of which " << report.reached << " of "
        << report.reachedBytes << " bytes are reached, on " << report.depth << " levels\n";
    if (!report.searched) out << "records that nothing reaches were not looked for: --whole does\n";
}

void printRepair(const tCheckResult& result, std::ostream& out) {
    const check::Repair& repair = *result.repair;
    if (repair.steps.empty()) {
        out << "nothing to repair\n";
        return;
    }
    out << "repaired, in " << repair.steps.size() << (repair.steps.size() == 1 ? " record" : " records")
        << ", whose old bytes are in " << printable(result.oldBytes) << "; what is left:\n";
    printFindings(repair.after, out);
}

}  // namespace

void printFound(const tCheckResult& result, std::ostream& out) {
    for (const FileFault& fault : result.file.faults) {
        out << "damage " << fault.code << " at byte " << fault.position << ": " << printable(fault.text) << '\n';
    }
    printMore(result.file.faultCount, result.file.faults.size(), out);
    if (result.report) printFindings(*result.report, out);
}

void printPlan(const check::Repair& repair, std::ostream& out) {
    for (const check::Step& step : repair.steps) {
        out << (step.erases ? "erase " : "change ") << step.offset << ": " << step.before.size() << " bytes";
        if (!step.erases) out << " to " << step.after.size();
        out << '\n';
    }
}

void printEnd(const tCheckResult& result, std::ostream& out) {
    if (result.repair) printRepair(result, out);
    if (result.last()) printTotals(*result.last(), out);
    out << verdict(result) << '\n';
    if (!result.repair && result.last() && result.last()->sound() && result.last()->unattached != 0) {
        out << "what nothing reaches, as reading a document may leave it, goes with check --repair --reclaim"
            << (result.inFile ? "; compact then gives its room back\n" : "\n");
    }
}

}  // namespace lvp::tool
