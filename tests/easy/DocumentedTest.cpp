// The headers show code that is compiled and run: each piece of it stands in ExamplesTest.cpp, line for line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

const fs::path kSource(LVP_SOURCE_DIR);

/// The pieces of code in the comments of a header, with an indentation of four blanks as comments and tests have it.
std::vector<std::string> piecesOf(const std::string& header) {
    const std::string mark = "///     ";
    std::vector<std::string> pieces;
    bool inside = false;
    for (std::size_t begin = 0, end = 0; end != header.npos; begin = end + 1) {
        end = header.find('\n', begin);
        const std::string line = header.substr(begin, end == header.npos ? end : end - begin);
        const bool code = line.rfind(mark, 0) == 0;
        if (code && !inside) pieces.emplace_back();
        if (code) pieces.back() += line.substr(4) + "\n";
        inside = code;
    }
    return pieces;
}

TEST(EasyHeaders, ShowCodeThatIsCompiledAndRun) {
    const std::string tests = bytesOf(kSource / "tests/easy/ExamplesTest.cpp");
    unsigned int count = 0;
    for (const auto& header : fs::directory_iterator(kSource / "include/lumivard/platform/data/easy")) {
        for (const std::string& piece : piecesOf(bytesOf(header.path()))) {
            EXPECT_NE(tests.find("\n" + piece), tests.npos) << header.path() << " shows\n" << piece;
            ++count;
        }
    }
    EXPECT_GE(count, 12u) << "one for each function";
}

TEST(EasyHeaders, ShowPiecesThatAreFound) {
    EXPECT_THAT(
        piecesOf("/// Words.\n///\n///     one();\n///         two();\n/// More.\n///     three();\nint f();\n"),
        ElementsAre("    one();\n        two();\n", "    three();\n"));
}

}  // namespace
