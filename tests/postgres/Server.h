#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "stores/core/Core.h"
#include "stores/postgres/PostgresEngine.h"

struct pg_conn;

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

    /// A client that waits for a lock with its statements, and has it as soon as it can be had, until its own end.
    class Waiter {
    public:
        /// Returns when it waits.
        explicit Waiter(const std::string& sql);

    private:
        std::unique_ptr<pg_conn, void (*)(pg_conn*)> _connection;
    };

    /// Makes a new, empty store, and gives its name.
    static std::string newStore();

    /// How a store is found, by the server's own port or another one that leads there, and takes no encryption.
    static PostgresEngine::Settings settings(const std::string& store, unsigned short port = 0);
    static unsigned short port();
    static std::unique_ptr<Core> open(const std::string& store, tMode mode = tMode::kWrite);

    /// The same for programs: a location, of a user if one is named.
    static std::string url(const std::string& store, const std::string& user = {});

    /// Ends the server's side of all connections but its own.
    static void cutAll();
};

}  // namespace lumivard::platform::stores
