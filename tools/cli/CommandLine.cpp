#include "tools/cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "tools/base/Text.h"

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
    try {
        _app->parse(argc, argv);
    } catch (const CLI::RequiredError& error) {
        if (!_app->get_subcommands().empty()) return _app->exit(error), kWrongUsage;
        return tell("give a verb: lvp-data --help lists them, lvp-data VERB --help shows one", kWrongUsage);
    } catch (const CLI::ParseError& error) {
        return _app->exit(error) == 0 ? kDone : kWrongUsage;
    }
    return guarded(_work);
}

}  // namespace lvp::tool
