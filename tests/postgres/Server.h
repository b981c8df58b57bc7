#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "stores/core/Core.h"
#include "stores/postgres/PostgresEngine.h"

namespace lumivard::platform::stores {

/// The server that the tests were given, by the environment variable LVP_POSTGRES; its tables are made when it is first
/// asked for.
class Server {
public:
    /// Whether there is one. Who finds none says so, and skips his test.
    static bool isThere();

    /// Runs a statement that gives no rows.
    static void run(const std::string& sql);
    static long long count(const std::string& sql);

    /// Makes a new, empty store, and gives its name.
    static std::string newStore();

    /// How a store is found, by the server's own port or another one that leads there.
    static PostgresEngine::Settings settings(const std::string& store, unsigned short port = 0);
    static unsigned short port();
    static std::unique_ptr<Core> open(const std::string& store, tMode mode = tMode::kWrite);

    /// The same for programs: a location, of a user if one is named.
    static std::string url(const std::string& store, const std::string& user = {});

    /// Ends the server's side of all connections but its own.
    static void cutAll();
};

}  // namespace lumivard::platform::stores
