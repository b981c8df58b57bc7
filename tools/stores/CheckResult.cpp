#include "tools/stores/CheckResult.h"

namespace lvp::tool {

using namespace lumivard::platform::data;
using check::tSeverity;

namespace {

/// "; 3 stale counts", or nothing for none.
std::string part(std::uint64_t count, const char* one, const char* many) {
    return count == 0 ? std::string() : "; " + std::to_string(count) + " " + (count == 1 ? one : many);
}

/// Notes, and that they are harmless where there is nothing else.
std::string notes(const check::Report& report, bool sound) {
    const std::uint64_t count = report.count(tSeverity::kNote);
    const bool alone = sound && count != 0 && count == report.total();
    return alone ? "; notes only (" + std::to_string(count) + ")" : part(count, "note", "notes");
}

/// What became of the content. Damage may have cut off some of it, and mending it keeps no reference that leads
/// nowhere: nobody can tell then that nothing is lost, but what nothing reaches is still there.
std::string losses(const tCheckResult& result, bool sound) {
    const bool wasSound = !result.repair || result.repair->before.sound();
    if (wasSound) return sound ? "; nothing lost" : "";
    if (result.repair->steps.empty()) return {};
    const check::Report& after = result.repair->after;
    if (!after.searched) return "; what nothing reaches now was not looked for";
    if (after.unattached == 0) return "; nothing is unattached";
    return part(after.unattached, "record of ", "records of ") + std::to_string(after.unattachedBytes) +
           (after.unattached == 1 ? " bytes is unattached" : " bytes are unattached");
}

}  // namespace

std::string verdict(const tCheckResult& result) {
    const check::Report* report = result.last();
    if (!report) return "not usable: the file is damaged below its records";
    const bool sound = report->sound() && result.file.faultCount == 0;
    std::string text;
    if (report->count(tSeverity::kFatal) != 0) {
        text = "not usable: nothing can be reached";
    } else {
        text = sound ? "usable" : "damaged";
    }
    text += part(result.file.faultCount, "fault of the file", "faults of the file");
    text += part(report->count(tSeverity::kDamage), "finding of damage", "findings of damage");
    text += part(report->count(tSeverity::kStale), "stale count", "stale counts");
    return text + notes(*report, sound) + losses(result, sound);
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
