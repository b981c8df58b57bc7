#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Documentation shows code that is compiled and run: each piece of C++ in a page is a piece of an example, marked there
// by a comment `// [name]` before and behind it. What a page shows as a program's output, as a piece of "text", is what
// the tests ask of an example.

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
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kSource / "examples")) {
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

/// What the examples print.
std::set<std::string> outputs() {
    std::set<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(kSource / "tests/project/examples")) {
        std::string text;
        for (const std::string& line : linesOf(entry.path())) text += line + "\n";
        all.insert(text);
    }
    return all;
}

/// The pieces of a page that are fenced as of one language.
std::vector<std::string> fenced(const std::filesystem::path& page, const std::string& language) {
    std::vector<std::string> all;
    bool inside = false;
    for (const std::string& line : linesOf(page)) {
        if (inside && line == "```") {
            inside = false;
        } else if (inside) {
            all.back() += line + "\n";
        } else if (line == "```" + language) {
            inside = true;
            all.emplace_back();
        }
    }
    return all;
}

/// A piece without what the first of a page may begin with: the headers that all of them need.
std::string bare(std::string piece) {
    while (piece.rfind("#include", 0) == 0 || piece.rfind("using ", 0) == 0 || piece.rfind('\n', 0) == 0) {
        piece.erase(0, piece.find('\n') + 1);
    }
    return piece;
}

class Documentation : public testing::TestWithParam<const char*> {};

TEST_P(Documentation, ShowsCodeThatIsCompiledAndRun) {
    const std::set<std::string> compiled = pieces();
    const auto shown = fenced(kSource / GetParam(), "cpp");
    for (const std::string& piece : shown) EXPECT_TRUE(compiled.contains(bare(piece))) << piece;
    EXPECT_FALSE(shown.empty()) << "there is no code in the page";
}

TEST_P(Documentation, ShowsWhatIsPrinted) {
    const std::set<std::string> printed = outputs();
    for (const std::string& piece : fenced(kSource / GetParam(), "text")) EXPECT_TRUE(printed.contains(piece)) << piece;
}

INSTANTIATE_TEST_SUITE_P(Of, Documentation,
                         testing::Values("README.md", "docs/errors.md", "docs/first-steps.md", "docs/model.md",
                                         "docs/schemas.md", "docs/threads.md"),
                         [](const auto& page) {
                             std::string name = std::filesystem::path(page.param).stem().string();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

}  // namespace
