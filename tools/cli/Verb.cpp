#include "tools/cli/Verb.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <string_view>

#include "tools/base/Location.h"
#include "tools/base/Nearest.h"

namespace lvp::tool {

namespace {

/// An option that was given says something: an empty one is a variable of the shell that was never set.
std::string notEmpty(const std::string& value) {
    return value.empty() ? "it is empty" : std::string();
}

/// Stands before a word that is one whatever it looks like: the parser takes brackets for lists, and much that begins
/// with a minus for options.
constexpr std::string_view kMark = "\x01";

std::string unmarked(const std::string& word) {
    return word.rfind(kMark, 0) == 0 ? word.substr(kMark.size()) : word;
}

template <class Value>
CLI::Option& add(CLI::App& app, const char* names, Value& value, const char* help) {
    return *app.add_option(names, value, help)->transform(unmarked);
}

}  // namespace

std::vector<std::string> Verb::marked(const std::vector<std::string>& words) {
    std::vector<std::string> marked;
    bool all = false;  // behind "--" there are no options
    for (const std::string& word : words) {
        const std::string small = lower(word);
        const auto begins = [&small](std::string_view beginning) { return small.rfind(beginning, 0) == 0; };
        const bool number = begins("-.") || begins("-inf") || begins("-nan");
        const bool plain = number || begins("[") || begins(kMark) || word == "++";
        if (!all && word == "--") {
            all = true;
        } else {
            marked.push_back(all || plain ? std::string(kMark) + word : word);
        }
    }
    return marked;
}

std::string Verb::withoutMarks(std::string text) {
    std::erase(text, kMark[0]);
    return text;
}

Verb& Verb::argument(const char* name, std::string& value, const char* help) {
    add(_app, name, value, help).check(notEmpty)->required();
    return *this;
}

Verb& Verb::optionalArgument(const char* name, std::string& value, const char* help) {
    add(_app, name, value, help);
    return *this;
}

Verb& Verb::arguments(const char* name, std::vector<std::string>& values, const char* help) {
    add(_app, name, values, help).check(notEmpty)->required();
    return *this;
}

Verb& Verb::optionalArguments(const char* name, std::vector<std::string>& values, const char* help) {
    add(_app, name, values, help);
    return *this;
}

Verb& Verb::option(const char* names, std::string& value, const char* help) {
    add(_app, names, value, help).check(notEmpty);
    return *this;
}

Verb& Verb::options(const char* names, std::vector<std::string>& values, const char* help) {
    add(_app, names, values, help)
        .check(notEmpty)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    return *this;
}

Verb& Verb::output(std::string& value, const char* help) {
    const auto take = [&value](const std::string& word) {
        const std::string name = unmarked(word);
        if (name.empty()) throw CLI::ValidationError("--output", "it is empty");
        value = name == "-" || name == "/dev/stdout" ? std::string() : name;
    };
    _app.add_option_function<std::string>("-o,--output", take, help);
    return *this;
}

Verb& Verb::number(const char* name, double& value, const char* help) {
    const auto take = [name, &value](const std::string& word) {
        const std::string text = unmarked(word);
        const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
        const bool whole = read.ec == std::errc() && read.ptr == text.data() + text.size();
        if (whole && std::isfinite(value) && value >= 0) return;
        throw CLI::ValidationError(name, "\"" + text + "\" is no number from 0 on, such as 1e-9");
    };
    _app.add_option_function<std::string>(name, take, help)->type_name("NUMBER");
    return *this;
}

Verb& Verb::flag(const char* name, bool& value, const char* help, const char* needs) {
    CLI::Option* const flag = _app.add_flag(name, value, help);
    if (needs) flag->needs(_app.get_option(needs));
    return *this;
}

Verb& Verb::store(std::string& store) {
    return argument("STORE", store, kStoreHelp);
}

Verb& Verb::needSchemas(std::vector<std::string>& schemas) {
    this->schemas(schemas);
    _app.get_option("--schemas")->required();
    return *this;
}

}  // namespace lvp::tool
