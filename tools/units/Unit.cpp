#include <algorithm>
#include <iostream>
#include <memory>

#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Nearest.h"
#include "tools/base/Units.h"

namespace lvp::tool {

namespace units = lumivard::platform::data::units;

namespace {

struct tOptions {
    std::string text;
    std::string group;
    bool json = false;
};

bool matches(const tUnitRow& row, const tOptions& options, units::tUnitGroup group) {
    if (group != units::kNoGroup && units::group(row.unit) != group) return false;
    return lower(row.name).find(lower(options.text)) != std::string::npos;
}

void printJson(const std::vector<tUnitRow>& rows) {
    JsonWriter json(std::cout);
    json.beginObject();
    json.key("units").beginArray();
    for (const tUnitRow& row : rows) {
        json.beginObject();
        json.key("name").value(std::string(row.name));
        json.key("number").value(static_cast<unsigned int>(row.unit));
        json.key("group").value(std::string(groupName(units::group(row.unit))));
        json.key("written").value(unitName(row.unit));
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << '\n';
}

void print(const std::vector<tUnitRow>& rows) {
    std::size_t widest = 0;
    for (const tUnitRow& row : rows) widest = std::max(widest, row.name.size());
    for (const tUnitRow& row : rows) {
        std::cout << row.name << std::string(widest + 2 - row.name.size(), ' ') << "in the group of "
                  << groupName(units::group(row.unit));
        if (!row.first) std::cout << ", written as " << unitName(row.unit);
        std::cout << '\n';
    }
}

tExitStatus search(const tOptions& options) {
    const auto group = options.group.empty() ? units::kNoGroup : units::group(unitNamed(options.group));
    std::vector<tUnitRow> rows;
    for (const tUnitRow& row : allUnits()) {
        if (matches(row, options, group)) rows.push_back(row);
    }
    if (options.json) {
        printJson(rows);
    } else if (rows.empty()) {
        const std::string near = listed(nearestUnits(options.text, 5));
        throw Failure(kFaults, "no unit has \"" + options.text + "\" in its name" +
                                   (near.empty() ? "" : "; near to it: " + near));
    } else {
        print(rows);
    }
    flushOutput();
    return rows.empty() ? kFaults : kDone;
}

}  // namespace

void declareUnit(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("unit", "Search the dictionary of units by a part of a name; all of it when left out",
             "unit newton --group Pascal", [options] { return search(*options); })
        .optionalArgument("TEXT", options->text, "A part of the name, in large or small letters")
        .option("--group", options->group, "Only the units that measure the same as this one")
        .json(options->json);
}

}  // namespace lvp::tool
