#include "tools/CheckText.h"

#include "lumivard/platform/core/string/WideString.h"
#include "tools/Text.h"

namespace lvp::tool {

using namespace lumivard::platform::data;
using lumivard::platform::core::string::WideString;
using lumivard::platform::stores::FileFault;

namespace {

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

void printFindings(const check::Report& report, std::ostream& out) {
    for (const check::Finding& finding : report.findings) printFinding(finding, out);
    printMore(report.total(), report.findings.size(), out);
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

void printText(const tCheckResult& result, std::ostream& out) {
    for (const FileFault& fault : result.file.faults) {
        out << "damage " << fault.code << " at byte " << fault.position << ": " << printable(fault.text) << '\n';
    }
    printMore(result.file.faultCount, result.file.faults.size(), out);
    if (result.report) printFindings(*result.report, out);
    if (result.repair) printRepair(result, out);
    if (result.last()) printTotals(*result.last(), out);
    out << verdict(result) << '\n';
}

}  // namespace lvp::tool
