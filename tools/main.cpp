#include <CLI/CLI.hpp>
#include <exception>
#include <functional>
#include <iostream>

#include "tools/Commands.h"

using namespace lvp::tool;

namespace {

constexpr const char* kStoreHelp = "The store: a file";
constexpr const char* kPathHelp = "Names from the top down, joined by dots; the whole store when left out";

int run(const std::function<tExitStatus()>& command) {
    try {
        return command();
    } catch (const Failure& failure) {
        std::cerr << "lvp-data: " << failure.what() << '\n';
        return failure.status();
    } catch (const std::exception& error) {
        std::cerr << "lvp-data: " << error.what() << '\n';
        return kCannotFinish;
    }
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Reads, shows and writes stores of structured, typed, localizable data.", "lvp-data");
    app.require_subcommand(1);
    app.footer("Exit status: 0 done, 1 the input had faults, 2 wrong usage, 3 cannot open, 4 cannot finish.");

    std::string document;
    std::string store;
    std::string path;
    std::string output;
    std::function<tExitStatus()> command;

    auto* import = app.add_subcommand("import", "Read an XML document into a new store");
    import->add_option("DOCUMENT", document, "The document: an XML file")->required();
    import->add_option("STORE", store, "The store: a file, made when it is not there")->required();
    import->footer("Example: lvp-data import materials.xml materials.lvp");
    import->callback([&] { command = [&] { return importDocument(document, store);
};
});

auto* writing = app.add_subcommand("export", "Write a store, or one item of it, as an XML document");
writing->add_option("STORE", store, kStoreHelp)->required();
writing->add_option("PATH", path, kPathHelp);
writing->add_option("-o,--output", output, "The document; standard output when left out");
writing->footer("Example: lvp-data export materials.lvp Metal.Steel -o steel.xml");
writing->callback([&] { command = [&] { return exportDocument(store, path, output); }; });

auto* tree = app.add_subcommand("tree", "Show names, kinds, values and units as a tree");
tree->add_option("STORE", store, kStoreHelp)->required();
tree->add_option("PATH", path, kPathHelp);
tree->footer("Example: lvp-data tree materials.lvp Metal");
tree->callback([&] { command = [&] { return printTree(store, path); }; });

try {
    app.parse(argc, argv);
} catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kWrongUsage;
}
return run(command);
}
