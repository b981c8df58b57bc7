#pragma once

#include <string>

#include "lumivard/platform/core/string/WideString.h"
#include "lumivard/platform/data/check/Report.h"

namespace lumivard::platform::test_support {

/// The findings of a report, one a line: for comparing, and for whoever reads why a test failed.
inline std::string describe(const data::check::Report& report) {
    std::string text;
    for (const data::check::Finding& finding : report.findings) {
        text += finding.code;
        text += " @" + std::to_string(finding.offset) + " " + core::string::WideString(finding.path.c_str()).string() +
                ": " + finding.found + "; " + finding.repair + "\n";
    }
    return text;
}

/// The codes that a report counts, each once, with a blank behind each.
inline std::string codes(const data::check::Report& report) {
    std::string text;
    for (const auto& [code, count] : report.byCode) text += code + " ";
    return text;
}

}  // namespace lumivard::platform::test_support
