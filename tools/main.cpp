#include <CLI/CLI.hpp>
#include <exception>
#include <functional>
#include <iostream>

#include "tools/Commands.h"
#include "tools/Text.h"

using namespace lvp::tool;

namespace {

constexpr const char* kStoreHelp = "The store: a file";
constexpr const char* kPathHelp = "Names from the top down, joined by dots; the whole store when left out";
constexpr const char* kItemHelp = "Names from the top down, joined by dots";
constexpr const char* kUrisHelp = "The schemas, joined by ;";

int run(const std::function<tExitStatus()>& command) {
    try {
        return command();
    } catch (const Failure& failure) {
        std::cerr << "lvp-data: " << printable(failure.what()) << '\n';
        return failure.status();
    } catch (const std::exception& error) {
        std::cerr << "lvp-data: " << printable(error.what()) << '\n';
        return kCannotFinish;
    }
}

/// An option that was given says something: an empty one is a variable of the shell that was never set.
std::string notEmpty(const std::string& value) {
    return value.empty() ? "it is empty" : std::string();
}

/// The command line: what it says, and the command that it calls for.
class CommandLine {
public:
    CommandLine() {
        _app.require_subcommand(1);
        _app.footer(
            "Exit status: 0 done, 1 the input had faults or does not conform, 2 wrong usage, 3 cannot open, "
            "4 cannot finish.");
        addDocumentCommands();
        addSchemaCommands();
        addItemCommands();
        addCheckCommand();
        addStoreCommands();
    }

    /// The exit status of the whole.
    int run(int argc, char** argv) {
        try {
            _app.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return _app.exit(error) == 0 ? kDone : kWrongUsage;
        }
        return ::run(_command);
    }

private:
    template <class Command>
    CLI::App* add(const char* name, const char* help, const char* example, Command command) {
        CLI::App* subcommand = _app.add_subcommand(name, help);
        subcommand->footer(std::string("Example: lvp-data ") + example);
        subcommand->callback([this, command] { _command = command; });
        return subcommand;
    }

    CLI::Option* addSchemas(CLI::App* subcommand) {
        return subcommand
            ->add_option("--schemas", _schemas, "A store or document that holds schemas; may be given again")
            ->expected(1)
            ->allow_extra_args(false)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    }

    void addDocumentCommands() {
        auto* import = add("import", "Read an XML document into a new store", "import materials.xml materials.lvp",
                           [this] { return importDocument(_document, _store, _schemas); });
        import->add_option("DOCUMENT", _document, "The document: an XML file")->required();
        import->add_option("STORE", _store, "The store: a file, made when it is not there")->required();
        addSchemas(import);

        auto* writing = add("export", "Write a store, or one item of it, as an XML document",
                            "export materials.lvp Metal.Steel -o steel.xml",
                            [this] { return exportDocument(_store, _path, _output, _schemas); });
        writing->add_option("STORE", _store, kStoreHelp)->required();
        writing->add_option("PATH", _path, kPathHelp);
        writing->add_option("-o,--output", _output, "The document; standard output when left out")->check(notEmpty);
        addSchemas(writing);

        auto* tree = add("tree", "Show names, kinds, values and units as a tree", "tree materials.lvp Metal",
                         [this] { return printTree(_store, _path, _schemas); });
        tree->add_option("STORE", _store, kStoreHelp)->required();
        tree->add_option("PATH", _path, kPathHelp);
        addSchemas(tree);
    }

    void addSchemaCommands() {
        auto* validation = add("validate", "Tell whether a container or table conforms to schemas, and why not",
                               "validate materials.lvp Metal.Steel \"Mechanical;Thermal\" --schemas schemas.xml",
                               [this] { return validate(_store, _path, _uris, _schemas); });
        validation->add_option("STORE", _store, kStoreHelp)->required();
        validation->add_option("PATH", _path, kItemHelp)->required();
        validation->add_option("URI", _uris, kUrisHelp)->required();
        addSchemas(validation)->required();

        auto* schema = add("schema", "Show how a struct of a schema is laid out",
                           "schema Mechanical --schemas schemas.xml", [this] { return showSchema(_uris, _schemas); });
        schema->add_option("URI", _uris, kUrisHelp)->required();
        addSchemas(schema)->required();
    }

    void addItemCommands() {
        auto* copying = add("cp", "Copy an item, with all that it holds", "cp materials.lvp Metal.Steel Metal.MySteel",
                            [this] { return copyItem(_store, _path, _destination, _target); });
        auto* moving = add("mv", "Move an item, with all that it holds", "mv materials.lvp Metal.Steel Alloys.Steel",
                           [this] { return moveItem(_store, _path, _destination, _target); });
        for (CLI::App* subcommand : {copying, moving}) {
            subcommand->add_option("STORE", _store, kStoreHelp)->required();
            subcommand->add_option("PATH", _path, kItemHelp)->required();
            subcommand->add_option("DESTINATION", _destination, "CONTAINER.NAME: the new place and name")->required();
            subcommand->add_option("--to", _target, "The store of the destination; the same one when left out")
                ->check(notEmpty);
        }
    }

    void addStoreCommands() {
        auto* compacting = add("compact", "Make the file of a store as small as it can be", "compact materials.lvp",
                               [this] { return compactStore(_store); });
        compacting->add_option("STORE", _store, kStoreHelp)->required();
    }

    void addCheckCommand() {
        auto* checking = add("check", "Tell whether a store is in order, and mend it", "check materials.lvp --whole",
                             [this] { return checkStore(_check); });
        checking->add_option("STORE", _check.store, kStoreHelp)->required();
        checking->add_flag("--whole", _check.whole, "Look at every byte, and for records below every offset");
        checking->add_flag("--json", _check.json, "Print one JSON object");
        auto* repair = checking->add_flag("--repair", _check.repair,
                                          "Mend what needs no guessing; the old bytes go to STORE.before-repair");
        checking->add_flag("--reclaim", _check.reclaim, "Erase the records that nothing reaches, too")->needs(repair);
    }

    CLI::App _app{"Reads, shows, changes and writes stores of structured, typed, localizable data.", "lvp-data"};
    std::string _document;
    std::string _store;
    std::string _path;
    std::string _output;
    std::string _uris;
    std::string _destination;
    std::string _target;
    tCheckOptions _check;
    std::vector<std::string> _schemas;
    std::function<tExitStatus()> _command;
};

}  // namespace

int main(int argc, char** argv) {
    return CommandLine().run(argc, argv);
}
