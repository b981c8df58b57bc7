#include "lumivard/platform/stores/Postgres.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "lumivard/platform/stores/Stores.h"
#include "stores/core/Failure.h"
#include "stores/core/StoreOver.h"
#include "stores/postgres/Hosts.h"
#include "stores/postgres/Location.h"
#include "stores/postgres/PostgresEngine.h"
#include "stores/postgres/Schema.h"
#include "stores/postgres/Statements.h"

namespace lumivard::platform::stores {

using pq::Connection;
using pq::Refused;
using pq::Rows;
using pq::tLocation;
using pq::tPatience;
using pq::tStatement;

namespace {

constexpr char kIsThere[] = "23505";  // a key that there is already
constexpr char kNoTable[] = "42P01";
constexpr char kDatabase[] = "the database";

// For how long a server may be at work on a statement that takes in a whole store.
constexpr std::chrono::milliseconds kLongWork = std::chrono::minutes(5);

// Does something with a location, and puts the reason of its failure into a sentence.
template <class Work>
auto attempt(const char* what, const std::string& location, Work work, const char* noun = "the store") {
    std::string shown = pq::withoutSecrets(location);
    try {
        const tLocation read = pq::readLocation(location);
        shown = read.shown;
        return work(read);
    } catch (const EngineError& error) {
        throw failure(what, shown, error.what(), noun);
    }
}

void requireStore(const tLocation& location) {
    if (location.store.empty()) {
        throw EngineError("the location does not say which store: its end should be ?store= and a name");
    }
}

// Text as a statement has it. A backslash may mean something else, by a setting of the server.
std::string quoted(const std::string& text) {
    const bool escapes = text.find('\\') != std::string::npos;
    std::string result = escapes ? "E'" : "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') result += c;
        result += c;
    }
    return result + "'";
}

std::string quotedName(const std::string& name) {
    std::string result = "\"";
    for (const char c : name) result.append(c == '"' ? 2 : 1, c);
    return result + "\"";
}

/// A server that takes changes, and whether it is PostgreSQL itself.
struct tPrimary {
    Connection connection;
    bool isPostgres;
};

// Of the servers of the location that take changes the one that was promoted last.
tPrimary primaryOf(const tLocation& location) {
    const tPatience patience = tPatience::of(location.options.deadline);
    std::optional<tPrimary> primary;
    std::int64_t newest = 0;
    std::string reason = "no server of the location takes changes";
    for (Connection& server : pq::connectToAll(location.database, patience.until)) {
        try {
            const tStatement ask[] = {{pq::sql::kReadOnly, {}}, {pq::sql::kVersion, {}}};
            const auto rows = server.run(ask, patience);
            if (rows[0].text(0, 0) == "on") continue;
            const bool own = pq::isPostgres(rows[1].text(0, 0));
            const tStatement timeline{pq::sql::kTimeline, {}};
            const std::int64_t since = own ? server.run(std::span(&timeline, 1), patience).front().number(0, 0) : 0;
            if (primary && since <= newest) continue;
            primary.emplace(tPrimary{std::move(server), own});
            newest = since;
        } catch (const pq::ConnectionLost& lost) {
            reason = lost.what();
        }
    }
    if (!primary) throw EngineError(reason);
    return std::move(*primary);
}

void runAlone(Connection& server, const tStatement& statement, std::chrono::milliseconds silence) {
    server.run(std::span(&statement, 1), tPatience::of(silence));
}

std::unique_ptr<IDataStore> openLocation(const std::string& location, tMode mode) {
    return stores::postgres(location, mode);
}

// When the library is loaded.
[[maybe_unused]] const bool isProvided = (provide(pq::kScheme, openLocation), true);

}  // namespace

std::unique_ptr<IDataStore> postgres(const std::string& location, tMode mode, const PostgresOptions& options) {
    return attempt("open", location, [&](const tLocation&) {
        const tLocation read = pq::readLocation(location, options);
        requireStore(read);
        PostgresEngine::Settings settings;
        settings.location = read.database;
        settings.store = read.store;
        settings.deadline = read.options.deadline;
        settings.keep = read.options.keep;
        const auto cache = static_cast<std::size_t>(std::min<unsigned long long>(read.options.cache, SIZE_MAX));
        return storeOver(read.shown, std::make_unique<PostgresEngine>(std::move(settings), mode), mode, cache);
    });
}

std::vector<std::string> postgresCreation(const std::string& location) {
    return attempt("create", location, [&](const tLocation& read) {
        requireStore(read);
        std::vector<std::string> statements(std::begin(pq::kTables), std::end(pq::kTables));
        statements.push_back("INSERT INTO lvp_store(name) VALUES(" + quoted(read.store) + ")");
        return statements;
    });
}

std::vector<std::string> postgresRemoval(const std::string& location) {
    return attempt("drop", location, [&](const tLocation& read) {
        requireStore(read);
        const std::string store = "(SELECT id FROM lvp_store WHERE name = " + quoted(read.store) + ")";
        return std::vector<std::string>{
            "SELECT id FROM lvp_store WHERE name = " + quoted(read.store) + " FOR UPDATE",
            "DELETE FROM lvp_record WHERE store = " + store,
            "DELETE FROM lvp_change WHERE store = " + store,
            "DELETE FROM lvp_store WHERE name = " + quoted(read.store),
        };
    });
}

std::vector<std::string> postgresRights(const std::string& role, tMode mode) {
    const std::string to = " TO " + quotedName(role);
    std::vector<std::string> statements{"GRANT SELECT ON lvp_store, lvp_record, lvp_change" + to};
    if (mode == tMode::kWrite) {
        statements.push_back("GRANT UPDATE ON lvp_store" + to);
        statements.push_back("GRANT INSERT, UPDATE, DELETE ON lvp_record" + to);
        statements.push_back("GRANT INSERT, DELETE ON lvp_change" + to);
    }
    return statements;
}

void runInPostgres(const std::string& location, const std::vector<std::string>& statements) {
    const auto work = [&](const tLocation& read) {
        auto [server, own] = primaryOf(read);
        // Where nobody waits any more the server would wait on, and do it after all.
        const std::string most = std::to_string(read.options.deadline.count());
        if (own) runAlone(server, {pq::sql::kWaitAtMost, {pq::text(most)}}, read.options.deadline);
        // Who makes tables at the same moment as somebody else is refused, and finds them when he tries again.
        for (int attempts = 1;; ++attempts) {
            try {
                runAlone(server, {pq::sql::kBegin, {}}, read.options.deadline);
                for (const std::string& statement : statements) {
                    if (!own && statement.starts_with(pq::kOwn)) continue;
                    runAlone(server, {statement.c_str(), {}}, std::max(read.options.deadline, kLongWork));
                    if (server.warned()) throw EngineError(server.warning());
                }
                break;
            } catch (const Refused& refusal) {
                const std::string reason = refusal.what();
                if (refusal.state() != kIsThere) throw;
                if (reason.find("lvp_store_name") != std::string::npos) {
                    throw EngineError("there is a store of that name already");
                }
                if (attempts == 3) throw;
                runAlone(server, {pq::sql::kRollBack, {}}, read.options.deadline);
            }
        }
        try {
            runAlone(server, {pq::sql::kCommit, {}}, read.options.deadline);
        } catch (const pq::ConnectionLost& lost) {
            throw EngineError(lost.what() + std::string("; it is not known whether they were run"));
        }
        if (server.warned()) throw EngineError("the server has warned that it may not be durable");
    };
    attempt("run statements in", location, work, kDatabase);
}

std::vector<PostgresStore> postgresStores(const std::string& location) {
    const auto list = [](const tLocation& read) {
        Connection server = primaryOf(read).connection;
        const tStatement all{"SELECT name, version, next_off, epoch FROM lvp_store ORDER BY name", {}};
        std::vector<PostgresStore> stores;
        try {
            const Rows rows = server.run(std::span(&all, 1), tPatience::of(read.options.deadline)).front();
            for (std::size_t i = 0; i < rows.count(); ++i) {
                stores.push_back({rows.text(i, 0), static_cast<unsigned int>(rows.number(i, 1)),
                                  static_cast<unsigned long long>(rows.number(i, 2)),
                                  static_cast<unsigned long long>(rows.number(i, 3))});
            }
        } catch (const Refused& refusal) {
            if (refusal.state() != kNoTable) throw;
        }
        return stores;
    };
    return attempt("list the stores of", location, list, kDatabase);
}

}  // namespace lumivard::platform::stores
