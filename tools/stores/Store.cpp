#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <memory>

#include "lumivard/platform/stores.h"
#include "lumivard/platform/stores/Postgres.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Location.h"
#include "tools/base/Nearest.h"
#include "tools/base/Text.h"

// Stores in databases as a whole: they are neither made nor deleted by way of files.
namespace lvp::tool {

namespace stores = lumivard::platform::stores;

namespace {

struct tOptions {
    std::string action;
    std::string location;
    std::string role;
    bool read = false;
    bool json = false;
    bool print = false;
};

using tStatements = std::vector<std::string>;

/// The name of a store as messages have it.
std::string quoted(const std::string& location) {
    return "the store \"" + calledName(location) + "\"";
}

std::string databaseOf(const std::string& location) {
    const std::string all = shown(location);
    return all.substr(0, all.find('?'));
}

tExitStatus print(const tStatements& statements) {
    const bool terminal = isTerminalOutput();
    std::cout << "BEGIN;\n";
    for (const std::string& statement : statements) {
        std::cout << (terminal ? printable(statement) : statement) << ";\n";
    }
    std::cout << "COMMIT;\n";
    flushOutput();
    return kDone;
}

/// Runs statements, or prints them, and tells what was done by them.
tExitStatus run(const tOptions& options, const tStatements& statements, const std::string& done) {
    if (options.print) return print(statements);
    stores::runInPostgres(options.location, statements);
    std::cerr << printable(done) << '\n';
    return kDone;
}

tExitStatus create(const tOptions& options) {
    return run(options, stores::postgresCreation(options.location),
               "made " + quoted(options.location) + " in " + databaseOf(options.location));
}

/// To delete what is not there succeeds in a database, and helps nobody who has mistyped a name.
void requireStore(const std::string& location) {
    std::vector<std::string> names;
    for (const stores::PostgresStore& store : stores::postgresStores(location)) names.push_back(store.name);
    const std::string wanted = calledName(location);
    if (std::find(names.begin(), names.end(), wanted) != names.end()) return;
    const std::string near = listed(nearest(wanted, names, 3));
    throw Failure(kCannotOpen, "there is no store \"" + wanted + "\" in " + databaseOf(location) +
                                   (near.empty() ? "" : "; near to it: " + near));
}

tExitStatus drop(const tOptions& options) {
    const tStatements statements = stores::postgresRemoval(options.location);
    if (!options.print) requireStore(options.location);
    return run(
        options, statements,
        "deleted " + quoted(options.location) + " in " + databaseOf(options.location) + " with all that was in it");
}

tExitStatus grant(const tOptions& options) {
    if (options.role.empty()) throw Failure(kWrongUsage, "give the --role that is to be let in");
    const auto mode = options.read ? stores::tMode::kRead : stores::tMode::kWrite;
    return run(options, stores::postgresRights(options.role, mode),
               "the role \"" + options.role + "\" may read " + (options.read ? "" : "and write ") + "all stores in " +
                   databaseOf(options.location));
}

void printJson(const tOptions& options, const std::vector<stores::PostgresStore>& found) {
    JsonWriter json(std::cout);
    json.beginObject();
    json.key("database").value(databaseOf(options.location));
    json.key("stores").beginArray();
    for (const stores::PostgresStore& store : found) {
        json.beginObject();
        json.key("name").value(store.name);
        json.key("extent").value(store.extent);
        json.key("version").value(store.version);
        json.key("epoch").value(store.epoch);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << '\n';
}

/// The names come last, since they may have blanks in them, and any length.
void printTable(const std::vector<stores::PostgresStore>& found) {
    using tRow = std::array<std::string, 4>;
    std::vector<tRow> rows{{"extent", "version", "epoch", "name"}};
    for (const stores::PostgresStore& store : found) {
        rows.push_back({std::to_string(store.extent), std::to_string(store.version), std::to_string(store.epoch),
                        printable(store.name)});
    }
    std::array<std::size_t, 3> widths{};
    for (const tRow& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
    }
    for (const tRow& row : rows) {
        for (std::size_t i = 0; i < widths.size(); ++i) {
            std::cout << std::right << std::setw(static_cast<int>(widths[i])) << row[i] << "  ";
        }
        std::cout << row.back() << '\n';
    }
}

tExitStatus list(const tOptions& options) {
    const std::vector<stores::PostgresStore> found = stores::postgresStores(options.location);
    if (options.json) {
        printJson(options, found);
    } else if (found.empty()) {
        std::cerr << printable("there are no stores in " + databaseOf(options.location)) << '\n';
    } else {
        printTable(found);
    }
    flushOutput();
    return kDone;
}

struct tAction {
    const char* name;
    tExitStatus (*work)(const tOptions&);
    bool prints;  ///< takes --print
};
constexpr std::array kActions{tAction{"create", create, true}, tAction{"list", list, false},
                              tAction{"drop", drop, true}, tAction{"grants", grant, true}};

const tAction& actionNamed(const std::string& name) {
    const auto found =
        std::find_if(kActions.begin(), kActions.end(), [&](const tAction& action) { return name == action.name; });
    if (found != kActions.end()) return *found;
    std::vector<std::string> names;
    for (const tAction& action : kActions) names.emplace_back(action.name);
    const std::vector<std::string> near = nearest(name, names, 1);
    throw Failure(kWrongUsage, "there is no action \"" + name + "\"" + (near.empty() ? "" : ", but " + near.front()) +
                                   ": it is one of " + listed(names));
}

/// What is given makes sense for the action.
void requireFitting(const tOptions& options, const tAction& action) {
    const std::string name = action.name;
    const bool grants = action.work == grant;
    if (!options.role.empty() && !grants) throw Failure(kWrongUsage, "store " + name + " takes no --role");
    if (options.json && action.work != list) throw Failure(kWrongUsage, "store " + name + " takes no --json");
    if (options.print && !action.prints) throw Failure(kWrongUsage, "store " + name + " takes no --print");
    if (isLocation(options.location)) return;
    throw Failure(kWrongUsage,
                  options.location +
                      " is no location of a store in a database, such as "
                      "postgresql://user@host:5432/database?store=NAME; a store in a file is made by mk and "
                      "import, and deleted as a file is");
}

tExitStatus work(const tOptions& options) {
    const tAction& action = actionNamed(options.action);
    requireFitting(options, action);
    try {
        return action.work(options);
    } catch (const stores::StoreError& error) {
        throw Failure(kCannotOpen, error.what());
    }
}

}  // namespace

void declareStore(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("store", "Make, list and delete stores in a PostgreSQL database, and let roles use them",
             "store create \"postgresql://user@host:5432/database?store=materials\"",
             [options] { return work(*options); })
        .argument("ACTION", options->action, "create, list, drop, or grants")
        .argument("LOCATION", options->location,
                  "postgresql://user@host:port/database?store=NAME; list and grants need no store")
        .option("--role", options->role, "With grants: the role that may use all stores of the database")
        .flag("--read", options->read, "It may only read them", "--role")
        .flag("--print", options->print, "Print the SQL, and do nothing")
        .json(options->json);
}

}  // namespace lvp::tool
