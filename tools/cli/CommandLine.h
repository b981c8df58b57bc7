#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/base/ExitStatus.h"
#include "tools/cli/Verb.h"

namespace CLI {

class ParseError;

}  // namespace CLI

namespace lvp::tool {

/// The command line: its verbs, what each of them says for itself, and the one that is called for.
class CommandLine {
public:
    CommandLine();
    ~CommandLine();

    /// Adds a verb. `example` shows it in use, without the name of the program; `work` does it, after the variables of
    /// the verb's arguments have been filled.
    Verb add(const char* name, const char* help, const char* example, std::function<tExitStatus()> work);

    /// The same, for the program's own build: help does not tell of it.
    Verb addHidden(const char* name, std::function<tExitStatus()> work);

    /// What the help is made of, too.
    const CLI::App& app() const { return *_app; }

    /// Does what the command line asks for. What fails is told on standard error.
    tExitStatus run(int argc, char** argv);

private:
    tExitStatus tell(const char* sentence, tExitStatus status) const;
    tExitStatus guarded(const std::function<tExitStatus()>& work) const;
    tExitStatus missesVerb(const std::string& word) const;
    tExitStatus refuseExtras() const;
    tExitStatus answer(const CLI::ParseError& error);

    std::unique_ptr<CLI::App> _app;
    std::function<tExitStatus()> _work;
    std::vector<std::string> _words;  ///< that were given, of which messages may repeat some
};

}  // namespace lvp::tool
