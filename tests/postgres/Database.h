#pragma once

#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "lumivard/platform/stores/Stores.h"
#include "stores/core/Core.h"
#include "stores/postgres/PostgresEngine.h"
#include "tests/postgres/Server.h"
#include "tests/stores/Records.h"

namespace lumivard::platform::stores {

using tLock = std::unique_ptr<IDataStore::ILock>;

/// A new store for each test, which is skipped where there is no server.
class Database : public testing::Test {
protected:
    void SetUp() override {
        if (!Server::isThere()) GTEST_SKIP() << "no server was named by LVP_POSTGRES: see scripts/test-postgres.sh";
        name = Server::newStore();
    }

    /// A client whose engine can be asked.
    struct tClient {
        PostgresEngine* engine;
        std::unique_ptr<Core> store;
        Core& operator*() const { return *store; }
        Core* operator->() const { return store.get(); }
    };
    tClient open(PostgresEngine::Settings settings, tMode mode = tMode::kWrite, std::size_t cache = SIZE_MAX) const {
        auto engine = std::make_unique<PostgresEngine>(std::move(settings), mode);
        PostgresEngine* const known = engine.get();
        return {known, std::make_unique<Core>(name, std::move(engine), mode, cache)};
    }
    tClient open(std::chrono::milliseconds keep, tMode mode = tMode::kWrite) const {
        auto settings = Server::settings(name);
        settings.keep = keep;
        return open(std::move(settings), mode);
    }

    /// A number of the store's row.
    long long stored(const std::string& what) const {
        return Server::count("SELECT " + what + " FROM lvp_store WHERE name = '" + name + "'");
    }
    /// How many rows of another table are the store's.
    long long rows(const std::string& table, const std::string& condition = "true") const {
        return Server::count("SELECT count(*) FROM " + table +
                             " t JOIN lvp_store s ON s.id = t.store WHERE s.name = '" + name + "' AND " + condition);
    }

    std::string name;
};

constexpr std::chrono::milliseconds kNever{0};
constexpr std::chrono::hours kLong{1};

}  // namespace lumivard::platform::stores
