#include "tools/stores/CheckJson.h"

#include "lumivard/platform/core/string/WideString.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Location.h"

namespace lvp::tool {

using namespace lumivard::platform::data;
using lumivard::platform::core::string::WideString;
using lumivard::platform::stores::FileFault;

namespace {

void writeFile(JsonWriter& json, const tCheckResult& result) {
    json.key("file").beginObject();
    json.key("format").value(result.file.format);
    json.key("length").value(result.file.length);
    json.key("faultCount").value(result.file.faultCount);
    json.key("faults").beginArray();
    for (const FileFault& fault : result.file.faults) {
        json.beginObject();
        json.key("code").value(fault.code);
        json.key("position").value(fault.position);
        json.key("found").value(fault.text);
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

void writeFinding(JsonWriter& json, const check::Finding& finding) {
    json.beginObject();
    json.key("severity").value(word(finding.severity));
    json.key("code").value(finding.code);
    json.key("offset").value(finding.offset);
    json.key("path").value(WideString(finding.path.c_str()).string());
    json.key("found").value(finding.found);
    json.key("repair").value(finding.repair);
    json.endObject();
}

void writeReport(JsonWriter& json, const char* name, const check::Report& report) {
    json.key(name).beginObject();
    json.key("records").value(report.records);
    json.key("bytes").value(report.bytes);
    json.key("reached").value(report.reached);
    json.key("reachedBytes").value(report.reachedBytes);
    json.key("depth").value(report.depth);
    json.key("unattached").value(report.unattached);
    json.key("unattachedBytes").value(report.unattachedBytes);
    json.key("searched").value(report.searched);
    json.key("findingCount").value(report.total());
    json.key("severities").beginObject();
    for (const auto severity :
         {check::tSeverity::kNote, check::tSeverity::kStale, check::tSeverity::kDamage, check::tSeverity::kFatal}) {
        json.key(word(severity)).value(report.count(severity));
    }
    json.endObject();
    json.key("counts").beginObject();
    for (const auto& [code, count] : report.byCode) json.key(code).value(count);
    json.endObject();
    json.key("findings").beginArray();
    for (const check::Finding& finding : report.findings) writeFinding(json, finding);
    json.endArray();
    json.endObject();
}

void writeRepair(JsonWriter& json, const tCheckResult& result) {
    json.key("repair").beginObject();
    json.key("oldBytes").value(result.oldBytes);
    json.key("steps").beginArray();
    for (const check::Step& step : result.repair->steps) {
        json.beginObject();
        json.key("offset").value(step.offset);
        json.key("erases").value(step.erases);
        json.key("before").value(step.before.size());
        json.key("after").value(step.after.size());
        json.endObject();
    }
    json.endArray();
    json.endObject();
    writeReport(json, "after", result.repair->after);
}

}  // namespace

void printJson(const tCheckResult& result, std::ostream& out) {
    JsonWriter json(out);
    json.beginObject();
    json.key("store").value(shown(result.store));
    if (result.inFile) writeFile(json, result);
    if (result.report) writeReport(json, "report", *result.report);
    if (result.repair) writeRepair(json, result);
    json.key("clean").value(result.clean());
    json.key("verdict").value(verdict(result));
    json.endObject();
    out << '\n';
}

}  // namespace lvp::tool
