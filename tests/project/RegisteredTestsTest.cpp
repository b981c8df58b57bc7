#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;

std::set<std::string> registered() {
    std::set<std::string> files;
    std::ifstream registry(LVP_TEST_REGISTRY);
    for (std::string line; std::getline(registry, line);) files.insert(line);
    return files;
}

std::set<std::string> onDisk() {
    const fs::path root(LVP_SOURCE_DIR);
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(root / "tests")) {
        if (entry.path().extension() == ".cpp") files.insert(fs::relative(entry.path(), root).generic_string());
    }
    return files;
}

TEST(RegisteredTests, AreAllFilesOnDisk) {
    EXPECT_EQ(registered(), onDisk());
}

}  // namespace
