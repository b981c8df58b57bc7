#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Documentation shows code that is compiled and run: each piece of C++ in a page is a piece of an example, marked there
// by a comment `// [name]` before and behind it.

namespace {

std::vector<std::string> linesOf(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

const std::filesystem::path kSource(LVP_SOURCE_DIR);

/// The marked pieces of all examples, without the indentation of their marks.
std::set<std::string> pieces() {
    std::set<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(kSource / "examples")) {
        if (entry.path().extension() != ".cpp") continue;
        std::string piece;
        bool inside = false;
        std::size_t indentation = 0;
        for (const std::string& line : linesOf(entry.path())) {
            if (line.find("// [") != std::string::npos) {
                if (inside) all.insert(std::exchange(piece, {}));
                inside = !inside;
                indentation = line.find('/');
            } else if (inside) {
                piece += (line.size() > indentation ? line.substr(indentation) : "") + "\n";
            }
        }
    }
    return all;
}

class Documentation : public testing::TestWithParam<const char*> {};

TEST_P(Documentation, ShowsCodeThatIsCompiledAndRun) {
    const std::set<std::string> compiled = pieces();
    std::string shown;
    bool inside = false;
    unsigned int count = 0;
    for (const std::string& line : linesOf(kSource / GetParam())) {
        if (inside && line == "```") {
            // The first piece of a page may begin with the headers that all of them need.
            std::string bare = shown;
            while (bare.rfind("#include", 0) == 0 || bare.rfind("using ", 0) == 0 || bare.rfind('\n', 0) == 0) {
                bare.erase(0, bare.find('\n') + 1);
            }
            EXPECT_TRUE(compiled.contains(bare)) << bare;
            inside = false;
            ++count;
        } else if (inside) {
            shown += line + "\n";
        } else if (line == "```cpp") {
            inside = true;
            shown.clear();
        }
    }
    EXPECT_NE(count, 0u) << "there is no code in the page";
}

INSTANTIATE_TEST_SUITE_P(Of, Documentation, testing::Values("README.md", "docs/schemas.md"),
                         [](const auto& page) { return std::filesystem::path(page.param).stem().string(); });

}  // namespace
