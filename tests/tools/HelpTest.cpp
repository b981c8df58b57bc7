// Help, manual page and completions say the same.
#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::HasSubstr;

class Help : public Tool {
protected:
    /// The verbs, as the help lists them.
    std::vector<std::string> verbs() const {
        std::istringstream help(run("--help").out);
        std::vector<std::string> verbs;
        bool listed = false;
        for (std::string line; std::getline(help, line);) {
            if (listed && line.rfind("  ", 0) == 0) verbs.push_back(line.substr(2, line.find(' ', 2) - 2));
            if (line == "Verbs:") listed = true;
        }
        return verbs;
    }
    /// The long options of a verb, as its help lists them.
    std::vector<std::string> options(const std::string& verb) const {
        std::istringstream help(run(verb + " --help").out);
        std::vector<std::string> options;
        for (std::string line; std::getline(help, line);) {
            const auto begin = line.find("--");
            if (line.rfind("  -", 0) == 0 && begin != std::string::npos) {
                options.push_back(line.substr(begin, line.find(' ', begin) - begin));
            }
        }
        return options;
    }
    static std::string page(const std::string& name) { return bytesOf(LVP_TOOL_PAGES "/" + name); }
};

TEST_F(Help, ListsAllVerbs) {
    EXPECT_THAT(verbs(), testing::IsSupersetOf({"tree", "ls", "get", "set", "mk", "rm", "mv", "cp", "import", "export",
                                                "validate", "schema", "unit", "check", "stat", "compact", "dump"}));
    EXPECT_EQ(run("--help").out.find("generate"), std::string::npos);
    EXPECT_THAT(run("--version").out, HasSubstr("6.1.0"));
}

TEST_F(Help, ThatCannotBeWrittenIsAFailure) {
    const int status = std::system(LVP_TOOL " --help >/dev/full 2>/dev/null");
    EXPECT_EQ(WEXITSTATUS(status), 4);
}

TEST_F(Help, ShowsWhatIsWrongWithoutItsControlCharacters) {
    const tRun wrong = run("tree a b 'c\x1b[31m'");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.err.find('\x1b'), std::string::npos);
    EXPECT_THAT(wrong.err, HasSubstr("\\x1b[31m"));
}

TEST_F(Help, OfEachVerbShowsAnExample) {
    for (const std::string& verb : verbs()) {
        const tRun help = run(verb + " --help");
        EXPECT_EQ(help.status, 0);
        EXPECT_THAT(help.out, HasSubstr("Example: lvp-data " + verb + (verb == "check" ? " " : ""))) << verb;
    }
}

TEST_F(Help, IsWhatTheManualPageSays) {
    const std::string manual = page("lvp-data.1");
    for (const std::string& verb : verbs()) {
        EXPECT_THAT(manual, HasSubstr(".SS \"\\fB" + verb + "\\fR"));
        for (std::string option : options(verb)) {
            if (option == "--help") continue;
            for (std::size_t at = option.find('-'); at != option.npos; at = option.find('-', at + 2))
                option.insert(at, "\\");
            EXPECT_THAT(manual, HasSubstr(option)) << verb;
        }
    }
    const tRun rendered = runProgram("man", "--warnings -l " LVP_TOOL_PAGES "/lvp-data.1");
    if (rendered.status != 127) {
        EXPECT_EQ(rendered.err, "") << "where there is a man program";
    }
}

TEST_F(Help, IsWhatTheCompletionsOffer) {
    const std::string bash = page("lvp-data.bash");
    const std::string zsh = page("_lvp-data");
    for (const std::string& verb : verbs()) {
        EXPECT_THAT(zsh, HasSubstr("        '" + verb + ":"));
        for (const std::string& option : options(verb)) {
            EXPECT_THAT(bash, HasSubstr(option));
            EXPECT_THAT(zsh, HasSubstr("'" + option + "["));
        }
    }
}

TEST_F(Help, IsCompletedByBash) {
    const auto completed = [this](const std::string& line, int word) {
        const std::string script = "'. " LVP_TOOL_PAGES "/lvp-data.bash; COMP_WORDS=(" + line +
                                   "); COMP_CWORD=" + std::to_string(word) + "; _lvp_data; echo ${COMPREPLY[*]}'";
        return runProgram("bash", "-c " + script).out;
    };
    EXPECT_EQ(completed("lvp-data exp", 1), "export\n");
    EXPECT_EQ(completed("lvp-data import --st", 2), "--strict\n");
    EXPECT_EQ(completed("lvp-data import " LVP_SOURCE_DIR "/README", 2), LVP_SOURCE_DIR "/README.md\n");
}

}  // namespace
