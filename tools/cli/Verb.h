#pragma once

#include <memory>
#include <string>
#include <vector>

namespace CLI {

class App;

}  // namespace CLI

namespace lvp::tool {

/// One verb of the command line, to which its arguments and options are added. What is said for them goes into the
/// variables that are given here, which live as long as the verb.
class Verb {
public:
    explicit Verb(CLI::App& app) : _app(app) {}

    /// The words of a command line as they have to be given to the parser, which would take some of them for what they
    /// are not. Behind a "--" all of them are words.
    static std::vector<std::string> marked(const std::vector<std::string>& words);

    /// What the parser says of such words, as they were typed.
    static std::string withoutMarks(std::string text);

    /// Arguments, in their order: one that must be given, one that may be left out, at least one of several, and any
    /// number of them.
    Verb& argument(const char* name, std::string& value, const char* help);
    Verb& optionalArgument(const char* name, std::string& value, const char* help);
    Verb& arguments(const char* name, std::vector<std::string>& values, const char* help);
    Verb& optionalArguments(const char* name, std::vector<std::string>& values, const char* help);

    /// Options with a value: a text that is not empty, several of them, one each time, and a number that is not
    /// negative.
    Verb& option(const char* names, std::string& value, const char* help);
    Verb& options(const char* names, std::vector<std::string>& values, const char* help);
    Verb& number(const char* name, double& value, const char* help);

    /// Where the verb writes. Empty where that is standard output: when it is left out, or is "-".
    Verb& output(std::string& value, const char* help);

    /// An option without a value, which may make sense only where another one is given.
    Verb& flag(const char* name, bool& value, const char* help, const char* needs = nullptr);

    // What several verbs have.
    Verb& store(std::string& store);
    Verb& item(std::string& path) { return argument("PATH", path, "Names from the top down, joined by dots"); }
    Verb& part(std::string& path) {
        return optionalArgument("PATH", path, "Names from the top down, joined by dots; the whole store when left out");
    }
    Verb& json(bool& json) { return flag("--json", json, "Print one JSON object"); }
    Verb& schemas(std::vector<std::string>& schemas) {
        return options("--schemas", schemas, "A store or document that holds schemas; may be given again");
    }
    Verb& needSchemas(std::vector<std::string>& schemas);

private:
    CLI::App& _app;
};

}  // namespace lvp::tool
