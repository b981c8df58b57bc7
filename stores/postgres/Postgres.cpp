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

// Does something with a location, and puts the reason of its failure into a sentence.
template <class Work>
auto attempt(const char* what, const std::string& location, Work work) {
    std::string shown = pq::withoutSecrets(location);
    try {
        const tLocation read = pq::readLocation(location);
        shown = read.shown;
        return work(read);
    } catch (const EngineError& error) {
        throw failure(what, shown, error.what());
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

// The server of the location that takes changes.
Connection primaryOf(const tLocation& location) {
    const tPatience patience = tPatience::of(location.options.deadline);
    for (Connection& server : pq::connectToAll(location.database, patience.until)) {
        const tStatement ask{pq::sql::kReadOnly, {}};
        if (server.run(std::span(&ask, 1), patience).front().text(0, 0) != "on") return std::move(server);
    }
    throw EngineError("no server of the location takes changes");
}

bool isPostgres(Connection& server, tPatience patience) {
    const tStatement ask{pq::sql::kVersion, {}};
    return pq::isPostgres(server.run(std::span(&ask, 1), patience).front().text(0, 0));
}

std::unique_ptr<IDataStore> openLocation(const std::string& location, tMode mode) {
    return stores::postgres(location, mode);
}

}  // namespace

const bool kPostgresIsKnown = (provide(pq::kScheme, openLocation), true);

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
    attempt("set up", location, [&](const tLocation& read) {
        Connection server = primaryOf(read);
        const tPatience patience = tPatience::of(read.options.deadline);
        const bool own = isPostgres(server, patience);
        std::vector<tStatement> all{{pq::sql::kBegin, {}}};
        for (const std::string& statement : statements) {
            if (own || !statement.starts_with(pq::kOwn)) all.push_back({statement.c_str(), {}});
        }
        all.push_back({pq::sql::kCommit, {}});
        try {
            server.run(all, patience);
        } catch (const Refused& refusal) {
            if (refusal.state() == kIsThere) throw EngineError("there is one of that name already");
            throw;
        }
        if (server.warned()) throw EngineError("the server has warned that it may not be durable");
    });
}

std::vector<PostgresStore> postgresStores(const std::string& location) {
    return attempt("list the stores of", location, [&](const tLocation& read) {
        Connection server = primaryOf(read);
        const tStatement list{"SELECT name, version, next_off, epoch FROM lvp_store ORDER BY name", {}};
        std::vector<PostgresStore> stores;
        try {
            const Rows rows = server.run(std::span(&list, 1), tPatience::of(read.options.deadline)).front();
            for (std::size_t i = 0; i < rows.count(); ++i) {
                stores.push_back({rows.text(i, 0), static_cast<unsigned int>(rows.number(i, 1)),
                                  static_cast<unsigned long long>(rows.number(i, 2)),
                                  static_cast<unsigned long long>(rows.number(i, 3))});
            }
        } catch (const Refused& refusal) {
            if (refusal.state() != kNoTable) throw;
        }
        return stores;
    });
}

}  // namespace lumivard::platform::stores
