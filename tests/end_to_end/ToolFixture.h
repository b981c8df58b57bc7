#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::test_support {

/// What a run of the tool left.
struct tRun {
    int status;
    std::string out;
    std::string err;
};

/// The command-line tool, run as a user runs it, in a folder of its own.
class Tool : public testing::Test {
protected:
    /// Runs the tool, or another program; the arguments are given as to a shell.
    tRun run(const std::string& arguments) const { return runProgram(LVP_TOOL, arguments); }
    tRun runProgram(const std::string& program, const std::string& arguments) const {
        const auto out = (_folder / "out").string();
        const auto err = (_folder / "err").string();
        const std::string command = program + " " + arguments + " >" + out + " 2>" + err;
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, bytesOf(out), bytesOf(err)};
    }

    std::string path(const std::string& name) const { return (_folder / name).string(); }
    std::string document(const std::string& text) const { return _folder.file("document.xml", text).string(); }

    /// The store that a document was imported into.
    std::string imported(const std::string& text, const std::string& name = "store.lvp",
                         const std::string& options = "") const {
        EXPECT_EQ(run("import " + document(text) + " " + path(name) + " " + options).status, 0);
        return path(name);
    }

    const std::string materials = LVP_SOURCE_DIR "/examples/data/materials.xml";
    const std::string schemas = LVP_SOURCE_DIR "/examples/data/schemas.xml";
    const std::string motion = LVP_SOURCE_DIR "/examples/data/motion.xml";
    const std::string motionSchemas = LVP_SOURCE_DIR "/examples/data/motion-schemas.xml";

private:
    TemporaryFolder _folder;
};

}  // namespace lumivard::platform::test_support
