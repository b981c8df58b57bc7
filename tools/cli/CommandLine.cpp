#include "tools/cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tools/base/Files.h"
#include "tools/base/Location.h"
#include "tools/base/Nearest.h"
#include "tools/base/Text.h"
#include "tools/base/Watch.h"

namespace lvp::tool {

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

/// A location may hold a password, which no message repeats.
tExitStatus CommandLine::tell(const char* sentence, tExitStatus status) const {
    std::string told = sentence;
    for (const std::string& word : _words) told = withoutSecrets(std::move(told), word);
    std::cerr << "lvp-data: " << printable(told) << '\n';
    return status;
}

tExitStatus CommandLine::guarded(const std::function<tExitStatus()>& work) const {
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

tExitStatus CommandLine::run(int argc, char** argv) {
    _words.assign(argv + std::min(argc, 1), argv + argc);
    std::vector<std::string> words = Verb::marked(_words);
    const std::string first = words.empty() ? std::string() : words.front();
    const bool isVerb = !_app->get_subcommands([&](const CLI::App* verb) { return verb->get_name() == first; }).empty();
    const bool isOption = first.rfind('-', 0) == 0 && _app->get_option_no_throw(first) != nullptr;
    if (!isVerb && !isOption) return missesVerb(Verb::withoutMarks(first));
    std::reverse(words.begin(), words.end());
    try {
        _app->parse(words);
    } catch (const CLI::ExtrasError&) {
        return refuseExtras();
    } catch (const CLI::ParseError& error) {
        return answer(error);
    }
    return guarded(_work);
}

/// Words that nothing takes, in the order in which they were given.
tExitStatus CommandLine::refuseExtras() const {
    const CLI::App& verb = *_app->get_subcommands().front();
    std::vector<std::string> extras = _app->remaining(true);
    std::string sentence = verb.get_name() + " takes no " + Verb::withoutMarks(extras.front());
    std::vector<std::string> options;
    for (const CLI::Option* option : verb.get_options()) {
        for (const std::string& name : option->get_lnames()) options.push_back("--" + name);
    }
    const std::vector<std::string> near = nearest(extras.front(), options, 1);
    if (extras.front().rfind("--", 0) == 0 && !near.empty()) sentence += ", but " + near.front();
    return tell((sentence + ": lvp-data " + verb.get_name() + " --help shows what it takes").c_str(), kWrongUsage);
}

tExitStatus CommandLine::missesVerb(const std::string& word) const {
    const std::string help = "lvp-data --help lists them, lvp-data VERB --help shows one";
    if (word.empty()) return tell(("give a verb: " + help).c_str(), kWrongUsage);
    if (word[0] == '-') return tell(("give a verb before " + word + ": " + help).c_str(), kWrongUsage);
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
    if (!asked) {
        const std::vector<CLI::App*> verbs = _app->get_subcommands();
        const std::string command = verbs.empty() ? "lvp-data" : "lvp-data " + verbs.front()->get_name();
        tell((Verb::withoutMarks(error.what()) + ": " + command + " --help shows what it takes").c_str(), kWrongUsage);
    }
    std::cout << help.str();
    return guarded([asked] {
        flushOutput();
        return asked ? kDone : kWrongUsage;
    });
}

}  // namespace lvp::tool
