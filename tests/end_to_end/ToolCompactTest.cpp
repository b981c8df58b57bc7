#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/end_to_end/ToolFixture.h"

// What the tool does for the file of a store.

namespace {

using namespace lumivard::platform::test_support;

using ToolCompact = Tool;

TEST_F(ToolCompact, GivesSpaceBackAndKeepsTheTree) {
    const std::string store = imported("<root name='r'><group name='a'><int8 name='x'>5</int8></group></root>");
    for (int copy = 0; copy < 3; ++copy) {
        ASSERT_EQ(run("mv " + store + " a.x a.y").status + run("mv " + store + " a.y a.x").status, 0);
    }
    const std::string tree = run("tree " + store).out;
    const auto before = std::filesystem::file_size(store);
    const tRun compacted = run("compact " + store);
    const auto after = std::filesystem::file_size(store);
    EXPECT_EQ(compacted.status, 0);
    EXPECT_EQ(compacted.out, std::to_string(before) + " bytes before, " + std::to_string(after) + " bytes now\n");
    EXPECT_LT(after, before);
    EXPECT_EQ(run("tree " + store).out, tree);
}

TEST_F(ToolCompact, RefusesWhatIsNoStoreAndMakesNone) {
    EXPECT_EQ(run("compact " + path("missing.lvp")).status, 3);
    EXPECT_FALSE(std::filesystem::exists(path("missing.lvp")));
    EXPECT_EQ(run("compact " + document("<root/>")).status, 3);
}

TEST_F(ToolCompact, ReadsFilesOfEarlierFormats) {
    const std::filesystem::path kept = LVP_SOURCE_DIR "/tests/data/stores";
    for (const std::string format : {"format-1", "format-2"}) {
        std::filesystem::copy_file(kept / (format + ".lvp"), path(format));
        for (int compacted = 0; compacted < 2; ++compacted) {
            const tRun exported = run("export " + path(format) + " --schemas " + motionSchemas);
            EXPECT_EQ(exported.out, bytesOf(kept / "format-1.xml"));
            ASSERT_EQ(run("compact " + path(format)).status, 0);
        }
    }
}

TEST_F(ToolCompact, IsToldOfADamagedFileByEveryCommand) {
    const std::string store = imported("<root name='r'><group name='a'/></root>");
    std::string bytes = bytesOf(store);
    for (std::size_t page = 2 * 4096; page + 4096 <= bytes.size(); page += 4096) bytes[page + 14] = '\x7F';
    std::ofstream(store, std::ios::binary) << bytes;
    for (const std::string command : {"tree", "export", "compact"}) {
        const tRun refused = run(command + " " + store);
        EXPECT_EQ(refused.status, 3);
        EXPECT_NE(refused.err.find("it is damaged"), std::string::npos) << refused.err;
    }
}

}  // namespace
