#include "tools/CheckResult.h"

namespace lvp::tool {

using namespace lumivard::platform::data;
using check::tSeverity;

namespace {

/// "; 3 stale counts", or nothing for none.
std::string part(std::uint64_t count, const char* one, const char* many) {
    return count == 0 ? std::string() : "; " + std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::string verdict(const tCheckResult& result) {
    const check::Report* report = result.last();
    if (!report) return "not usable: the file is damaged below its records";
    std::string text;
    if (report->count(tSeverity::kFatal) != 0) {
        text = "not usable: nothing can be reached";
    } else {
        text = report->sound() && result.file.faultCount == 0 ? "usable" : "damaged";
    }
    text += part(result.file.faultCount, "fault of the file", "faults of the file");
    text += part(report->count(tSeverity::kDamage), "finding of damage", "findings of damage");
    text += part(report->count(tSeverity::kStale), "stale count", "stale counts");
    text += part(report->count(tSeverity::kNote), "note", "notes");
    if (report->sound() && result.file.faultCount == 0) text += "; nothing lost";
    return text;
}

const char* word(tSeverity severity) {
    switch (severity) {
        case tSeverity::kNote:
            return "note";
        case tSeverity::kStale:
            return "stale";
        case tSeverity::kDamage:
            return "damage";
        case tSeverity::kFatal:
            return "fatal";
    }
    return "";
}

}  // namespace lvp::tool
