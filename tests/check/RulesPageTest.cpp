// The page on the checker tells of the rules that there are.
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "lumivard/platform/data/check/Check.h"

namespace {

namespace check = lumivard::platform::data::check;

const char* name(check::tSeverity severity) {
    constexpr const char* kNames[] = {"note", "stale", "damage", "fatal"};
    return kNames[static_cast<std::size_t>(severity)];
}

TEST(RulesPage, HasARowForEachRule) {
    std::vector<std::string> rows;
    std::ifstream page(LVP_SOURCE_DIR "/docs/check.md");
    for (std::string line; std::getline(page, line);) {
        const bool isRule = line.rfind("| `", 0) == 0 && line.rfind("| `container.", 0) != 0;
        if (isRule) rows.push_back(line);
    }
    std::vector<std::string> rules;
    for (const check::Rule& rule : check::rules()) {
        const std::string repair = *rule.repair ? rule.repair : "nothing";
        rules.push_back(std::string("| `") + rule.code + "` | " + name(rule.severity) + " | " + rule.meaning + " | " +
                        repair + " |");
    }
    EXPECT_EQ(rows, rules);
}

}  // namespace
