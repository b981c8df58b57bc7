#include "tools/cli/Verb.h"

#include <CLI/CLI.hpp>

namespace lvp::tool {

namespace {

/// An option that was given says something: an empty one is a variable of the shell that was never set.
std::string notEmpty(const std::string& value) {
    return value.empty() ? "it is empty" : std::string();
}

}  // namespace

Verb& Verb::argument(const char* name, std::string& value, const char* help) {
    _app.add_option(name, value, help)->required();
    return *this;
}

Verb& Verb::optionalArgument(const char* name, std::string& value, const char* help) {
    _app.add_option(name, value, help);
    return *this;
}

Verb& Verb::arguments(const char* name, std::vector<std::string>& values, const char* help) {
    _app.add_option(name, values, help)->required();
    return *this;
}

Verb& Verb::optionalArguments(const char* name, std::vector<std::string>& values, const char* help) {
    _app.add_option(name, values, help);
    return *this;
}

Verb& Verb::option(const char* names, std::string& value, const char* help) {
    _app.add_option(names, value, help)->check(notEmpty);
    return *this;
}

Verb& Verb::options(const char* names, std::vector<std::string>& values, const char* help) {
    _app.add_option(names, values, help)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    return *this;
}

Verb& Verb::number(const char* name, double& value, const char* help) {
    _app.add_option(name, value, help)->check(CLI::NonNegativeNumber);
    return *this;
}

Verb& Verb::flag(const char* name, bool& value, const char* help, const char* needs) {
    CLI::Option* const flag = _app.add_flag(name, value, help);
    if (needs) flag->needs(_app.get_option(needs));
    return *this;
}

Verb& Verb::needSchemas(std::vector<std::string>& schemas) {
    this->schemas(schemas);
    _app.get_option("--schemas")->required();
    return *this;
}

}  // namespace lvp::tool
