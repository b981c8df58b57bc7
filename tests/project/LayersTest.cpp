#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

// Which room may know which. An include names its room by its first folder, so the rule can be read off the text.

namespace {

namespace fs = std::filesystem;
using tRooms = std::set<std::string>;

// The headers that clients see, by the start of the include.
const std::string kCore = "lumivard/platform/core";
const std::string kData = "lumivard/platform/data";
const std::string kStores = "lumivard/platform/stores";
const std::string kContract = "lumivard/platform/store_contract";

const std::map<std::string, tRooms>& mayKnow() {
    static const tRooms record{kCore, "record"};
    static const auto with = [](tRooms below, const tRooms& more) {
        below.insert(more.begin(), more.end());
        return below;
    };
    static const tRooms metadata = with(record, {"metadata"});
    static const tRooms design = with(metadata, {"design", kData});
    static const tRooms schema = with(design, {"schema"});
    static const tRooms property = with(schema, {"units", "property"});
    static const tRooms container = with(property, {"container"});
    static const tRooms xml = with(container, {"xml"});
    static const tRooms check = with(record, {kData, "design", "units", "check"});
    static const std::map<std::string, tRooms> table{
        {"platform", {kCore, "platform"}},
        {"include", {kCore, kData}},
        {"record", record},
        {"metadata", metadata},
        {"design", design},
        {"schema", schema},
        {"units", {kCore, kData, "units"}},
        {"type", {kCore, kData}},
        {"property", property},
        {"container", container},
        {"xml", xml},
        {"check", check},
        {"stores", {kCore, kStores, "stores"}},
        {"tools", {kCore, kData, kStores, "tools"}},
        // The two headers are those of examples/own_store, a project of its own.
        {"examples", {kCore, kData, kStores, kContract, "examples", "OwnStore.h", "Visits.h"}},
        {"bench", {kCore, kData, kStores, "bench"}},
    };
    return table;
}

std::string roomOf(const std::string& include) {
    for (const std::string& publicRoom : {kCore, kData, kStores, kContract}) {
        if (include.rfind(publicRoom, 0) == 0) return publicRoom;
    }
    return include.substr(0, include.find('/'));
}

bool isSource(const fs::path& path) {
    return path.extension() == ".h" || path.extension() == ".cpp" || path.extension() == ".inc";
}

// The quoted includes of a file, and those of the platform in angle brackets.
std::vector<std::string> includesOf(const fs::path& file) {
    static const std::regex pattern(R"re(^\s*#\s*include\s+(?:"([^"]+)"|<(lumivard/[^>]+)>))re");
    std::vector<std::string> includes;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        std::smatch match;
        if (std::regex_search(line, match, pattern)) includes.push_back(match[1].matched ? match[1] : match[2]);
    }
    return includes;
}

class Layers : public testing::TestWithParam<std::string> {};

TEST_P(Layers, IncludeNothingFromAbove) {
    const fs::path root(LVP_SOURCE_DIR);
    const fs::path room = root / GetParam();
    const tRooms& allowed = mayKnow().at(GetParam());
    if (!fs::exists(room)) GTEST_SKIP() << room << " is not there";
    unsigned int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(room)) {
        if (!isSource(entry.path())) continue;
        ++files;
        for (const std::string& include : includesOf(entry.path())) {
            EXPECT_TRUE(allowed.count(roomOf(include)) == 1)
                << fs::relative(entry.path(), root) << " includes " << include;
        }
    }
    EXPECT_GT(files, 0u);
}

std::vector<std::string> rooms() {
    std::vector<std::string> names;
    for (const auto& [room, allowed] : mayKnow()) names.push_back(room);
    return names;
}

INSTANTIATE_TEST_SUITE_P(Rooms, Layers, testing::ValuesIn(rooms()), [](const auto& room) { return room.param; });

// Two classes of one name in one namespace are one to the linker, which takes the functions of either.
TEST(NamesOfTheTool, StandForOneClassEach) {
    static const std::regex pattern(R"(^(?:class|struct) (\w+)(?: final)?(?: :.*)? \{)");
    std::map<std::string, fs::path> known;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(LVP_SOURCE_DIR) / "tools")) {
        if (entry.path().extension() != ".h") continue;
        std::ifstream in(entry.path());
        for (std::string line; std::getline(in, line);) {
            std::smatch match;
            if (!std::regex_search(line, match, pattern)) continue;
            const auto [place, isNew] = known.try_emplace(match[1], entry.path());
            EXPECT_TRUE(isNew) << match[1] << " stands in " << place->second << " and in " << entry.path();
        }
    }
    EXPECT_GT(known.size(), 20u);
}

TEST(LayersRule, TellsAnUpwardInclude) {
    EXPECT_EQ(mayKnow().at("record").count(roomOf("design/Table.h")), 0u);
    EXPECT_EQ(mayKnow().at("stores").count(roomOf("lumivard/platform/data/Names.h")), 0u);
    EXPECT_EQ(mayKnow().at("design").count(roomOf("metadata/Set.h")), 1u);
}

}  // namespace
