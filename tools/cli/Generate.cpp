#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "tools/Verbs.h"
#include "tools/base/Files.h"

// The manual page and the completions of shells are made of what the command line says of itself, so that they say what
// `--help` says.
namespace lvp::tool {

namespace {

using tVerbs = std::vector<const CLI::App*>;
using tOptions = std::vector<const CLI::Option*>;

tVerbs verbsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App* verb) { return !verb->get_group().empty(); });
}

tOptions optionsOf(const CLI::App& app) {
    return app.get_options([](const CLI::Option* option) { return !option->get_group().empty(); });
}

bool isArgument(const CLI::Option& option) {
    return option.get_positional();
}

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

/// All names of an option: -o, --output.
std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
    return names;
}

/// A text without the characters that take hold of what it stands in: those in `special` get `escape` before them.
std::string escaped(const std::string& text, std::string_view special, char escape) {
    std::string out;
    for (const char character : text) {
        if (special.find(character) != special.npos) out += escape;
        out += character;
    }
    return out;
}

// --- Manual page (man(7))

/// Minus signs are not hyphens, and a line that begins with a dot or a quote is no request.
std::string troff(const std::string& text) {
    std::string out;
    for (const char character : text) {
        if (character == '\\') {
            out += "\\e";
        } else if (character == '-') {
            out += "\\-";
        } else {
            out += character;
        }
    }
    return !out.empty() && (out[0] == '.' || out[0] == '\'') ? "\\&" + out : out;
}

std::string synopsisOf(const CLI::App& verb) {
    std::string line;
    for (const CLI::Option* option : optionsOf(verb)) {
        if (!isArgument(*option)) continue;
        const std::string more = option->get_items_expected_max() > 1 ? "..." : "";
        const std::string name = "\\fI" + troff(option->get_single_name()) + "\\fR" + more;
        line += option->get_required() ? " " + name : " [" + name + "]";
    }
    return line;
}

void printOption(const CLI::Option& option, std::ostream& out) {
    out << ".TP\n";
    if (isArgument(option)) {
        out << "\\fI" << troff(option.get_single_name()) << "\\fR\n";
    } else {
        std::string names;
        for (const std::string& name : namesOf(option))
            names += (names.empty() ? "" : ", ") + ("\\fB" + troff(name) + "\\fR");
        out << names << (takesValue(option) ? " \\fIVALUE\\fR" : "") << '\n';
    }
    out << troff(option.get_description()) << '\n';
}

void printManual(const CLI::App& app, std::ostream& out) {
    out << ".TH LVP\\-DATA 1 \"\" \"lvp\\-data " << troff(LVP_TOOL_VERSION) << "\" \"User Commands\"\n"
        << ".SH NAME\nlvp\\-data \\- stores of structured, typed, localizable data\n"
        << ".SH SYNOPSIS\n\\fBlvp\\-data\\fR \\fIVERB\\fR [\\fIARGUMENTS\\fR] [\\fIOPTIONS\\fR]\n"
        << ".SH DESCRIPTION\n"
        << troff(app.get_description()) << "\n.SH VERBS\n";
    for (const CLI::App* verb : verbsOf(app)) {
        out << ".SS \"\\fB" << troff(verb->get_name()) << "\\fR" << synopsisOf(*verb) << "\"\n"
            << troff(verb->get_description()) << ".\n";
        for (const CLI::Option* option : optionsOf(*verb)) {
            if (option != verb->get_help_ptr()) printOption(*option, out);
        }
        out << ".PP\n" << troff(verb->get_footer()) << '\n';
    }
    out << ".SH EXIT STATUS\n" << troff(app.get_footer().substr(app.get_footer().find(':') + 2)) << '\n';
}

// --- Completions

std::string wordsOf(const CLI::App& app) {
    std::string words;
    for (const CLI::Option* option : optionsOf(app)) {
        if (isArgument(*option)) continue;
        for (const std::string& name : namesOf(*option)) words += (words.empty() ? "" : " ") + name;
    }
    return words;
}

void printBash(const CLI::App& app, std::ostream& out) {
    std::string verbs;
    for (const CLI::App* verb : verbsOf(app)) verbs += (verbs.empty() ? "" : " ") + verb->get_name();
    out << "# Completion of lvp-data for bash.\n"
           "_lvp_data() {\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} options=\n"
           "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
           "        COMPREPLY=($(compgen -W '"
        << verbs << ' ' << wordsOf(app)
        << "' -- \"$word\"))\n"
           "        return\n"
           "    fi\n"
           "    case ${COMP_WORDS[1]} in\n";
    for (const CLI::App* verb : verbsOf(app)) {
        out << "        " << verb->get_name() << ") options='" << wordsOf(*verb) << "' ;;\n";
    }
    out << "    esac\n"
           "    if [[ $word == -* ]]; then\n"
           "        COMPREPLY=($(compgen -W \"$options\" -- \"$word\"))\n"
           "    else\n"
           "        COMPREPLY=($(compgen -f -- \"$word\"))\n"
           "    fi\n"
           "}\n"
           "complete -o filenames -F _lvp_data lvp-data\n";
}

std::string quoted(const std::string& text) {
    std::string out = "'";
    for (const char character : text) out += character == '\'' ? std::string("'\\''") : std::string(1, character);
    return out + "'";
}

void printZsh(const CLI::App& app, std::ostream& out) {
    out << "#compdef lvp-data\n"
           "# Completion of lvp-data for zsh.\n"
           "_lvp_data() {\n"
           "    local -a verbs\n"
           "    verbs=(\n";
    for (const CLI::App* verb : verbsOf(app)) {
        out << "        " << quoted(escaped(verb->get_name() + ":" + verb->get_description(), "", '\\')) << '\n';
    }
    out << "    )\n"
           "    if (( CURRENT == 2 )); then\n"
           "        _describe verb verbs\n"
           "        return\n"
           "    fi\n"
           "    case $words[2] in\n";
    for (const CLI::App* verb : verbsOf(app)) {
        out << "        " << verb->get_name() << ")\n            _arguments";
        for (const CLI::Option* option : optionsOf(*verb)) {
            if (isArgument(*option)) continue;
            for (const std::string& name : namesOf(*option)) {
                const std::string help = "[" + escaped(option->get_description(), "[]\\:", '\\') + "]";
                out << " \\\n                " << quoted(name + help + (takesValue(*option) ? ":value:_files" : ""));
            }
        }
        out << " \\\n                '*:file:_files' ;;\n";
    }
    out << "    esac\n"
           "}\n"
           "_lvp_data \"$@\"\n";
}

}  // namespace

void declareGenerate(CommandLine& line) {
    const auto form = std::make_shared<std::string>();
    line.addHidden("generate",
                   [&line, form] {
                       if (*form == "man") {
                           printManual(line.app(), std::cout);
                       } else if (*form == "bash") {
                           printBash(line.app(), std::cout);
                       } else if (*form == "zsh") {
                           printZsh(line.app(), std::cout);
                       } else {
                           throw Failure(kWrongUsage, "generate makes man, bash or zsh, not \"" + *form + "\"");
                       }
                       flushOutput();
                       return kDone;
                   })
        .argument("FORM", *form, "man, bash or zsh");
}

}  // namespace lvp::tool
