#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> linesOf(const std::string& file) {
    std::ifstream in(LVP_SOURCE_DIR "/" + file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// The lines between the two marks of a program, without the indentation of the first.
std::string tourOfTheExample() {
    std::string tour;
    bool inside = false;
    std::size_t indentation = 0;
    for (const std::string& line : linesOf("examples/first_steps.cpp")) {
        if (line.find("// [tour]") != std::string::npos) {
            inside = !inside;
            indentation = line.find('/');
        } else if (inside) {
            tour += (line.size() > indentation ? line.substr(indentation) : "") + "\n";
        }
    }
    return tour;
}

TEST(Readme, ShowsCodeThatIsCompiledAndRun) {
    std::string readme;
    for (const std::string& line : linesOf("README.md")) readme += line + "\n";
    const std::string tour = tourOfTheExample();
    ASSERT_NE(tour, "");
    EXPECT_NE(readme.find(tour), std::string::npos) << "README.md does not hold the tour of examples/first_steps.cpp";
}

}  // namespace
