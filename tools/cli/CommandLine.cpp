#include "tools/cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/base/Files.h"
#include "tools/base/Nearest.h"
#include "tools/base/Text.h"
#include "tools/base/Watch.h"

namespace lvp::tool {

namespace {

tExitStatus tell(const char* sentence, tExitStatus status) {
    std::cerr << "lvp-data: " << printable(sentence) << '\n';
    return status;
}

tExitStatus guarded(const std::function<tExitStatus()>& work) {
    try {
        return work();
    } catch (const Failure& failure) {
        return tell(failure.what(), failure.status());
    } catch (const Interrupted& interrupted) {
        return tell((interrupted.work + " was interrupted, and nothing was changed").c_str(), kCannotFinish);
    } catch (const std::bad_alloc&) {
        return tell("there is not enough memory", kCannotFinish);
    } catch (const std::exception& error) {
        return tell(error.what(), kCannotFinish);
    }
}

}  // namespace

CommandLine::CommandLine()
    : _app(std::make_unique<CLI::App>("Reads, shows, changes and writes stores of structured, typed, localizable data.",
                                      "lvp-data")) {
    _app->require_subcommand(1);
    _app->get_formatter()->label("SUBCOMMAND", "VERB");
    _app->set_version_flag("--version", "lvp-data " LVP_TOOL_VERSION);
    _app->footer(
        "Exit status: 0 done, 1 differences or faults were found, 2 wrong usage, 3 cannot open, 4 cannot finish.");
}

CommandLine::~CommandLine() = default;

Verb CommandLine::add(const char* name, const char* help, const char* example, std::function<tExitStatus()> work) {
    CLI::App* const verb = _app->add_subcommand(name, help);
    verb->group("Verbs");
    verb->footer(std::string("Example: lvp-data ") + example);
    verb->callback([this, work = std::move(work)] { _work = work; });
    return Verb(*verb);
}

Verb CommandLine::addHidden(const char* name, std::function<tExitStatus()> work) {
    const Verb verb = add(name, "", "", std::move(work));
    _app->get_subcommand(name)->group("");
    return verb;
}

tExitStatus CommandLine::run(int argc, char** argv) {
    std::vector<std::string> words;
    for (int i = argc - 1; i > 0; --i) words.push_back(Verb::marked(argv[i]));
    try {
        _app->parse(words);
    } catch (const CLI::RequiredError& error) {
        if (_app->get_subcommands().empty()) {
            return missesVerb(argc > 1 ? argv[1] : "");
        }
        return answer(error);
    } catch (const CLI::ParseError& error) {
        return answer(error);
    }
    return guarded(_work);
}

tExitStatus CommandLine::missesVerb(const std::string& word) const {
    const std::string help = "lvp-data --help lists them, lvp-data VERB --help shows one";
    if (word.empty() || word[0] == '-') return tell(("give a verb: " + help).c_str(), kWrongUsage);
    std::vector<std::string> verbs;
    for (const CLI::App* verb :
         _app->get_subcommands([](const CLI::App* each) { return !each->get_group().empty(); })) {
        verbs.push_back(verb->get_name());
    }
    const std::string near = listed(nearest(word, verbs, 3));
    return tell(("there is no verb \"" + word + "\"" + (near.empty() ? "" : ", but " + near) + ": " + help).c_str(),
                kWrongUsage);
}

/// Help that was asked for, or what is wrong with the command line.
tExitStatus CommandLine::answer(const CLI::ParseError& error) {
    std::ostringstream help;
    std::ostringstream complaint;
    const bool asked = _app->exit(error, help, complaint) == 0;
    std::istringstream lines(complaint.str());
    for (std::string line; std::getline(lines, line);) std::cerr << printable(line) << '\n';
    std::cout << help.str();
    return guarded([asked] {
        flushOutput();
        return asked ? kDone : kWrongUsage;
    });
}

}  // namespace lvp::tool
