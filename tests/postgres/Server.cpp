#include "tests/postgres/Server.h"

#include <libpq-fe.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>

#include <unistd.h>

#include "stores/postgres/Schema.h"

namespace lumivard::platform::stores {
namespace {

const char* location() {
    return std::getenv("LVP_POSTGRES");
}

std::string answer(const std::string& sql) {
    const std::unique_ptr<PGconn, void (*)(PGconn*)> connection(PQconnectdb(location()), PQfinish);
    PQsetNoticeProcessor(
        connection.get(), [](void*, const char*) {}, nullptr);
    const std::unique_ptr<PGresult, void (*)(PGresult*)> result(PQexec(connection.get(), sql.c_str()), PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status == PGRES_TUPLES_OK) return PQgetvalue(result.get(), 0, 0);
    if (status != PGRES_COMMAND_OK) throw std::runtime_error(PQerrorMessage(connection.get()));
    return {};
}

}  // namespace

bool Server::isThere() {
    return location() != nullptr;
}

void Server::run(const std::string& sql) {
    answer(sql);
}

long long Server::count(const std::string& sql) {
    return std::stoll(answer(sql));
}

Server::Waiter::Waiter(const std::string& sql) : _connection(PQconnectdb(location()), PQfinish) {
    const std::string waits = "SELECT count(*) FROM pg_stat_activity WHERE wait_event_type = 'Lock' AND pid = " +
                              std::to_string(PQbackendPID(_connection.get()));
    if (PQsendQuery(_connection.get(), sql.c_str()) != 1) throw std::runtime_error(PQerrorMessage(_connection.get()));
    while (count(waits) == 0) std::this_thread::yield();
}

std::string Server::newStore() {
    static const bool made = [] {
        for (const char* const statement : pq::kTables) run(statement);
        return true;
    }();
    static int number = 0;
    static_cast<void>(made);
    const std::string name = "test " + std::to_string(::getpid()) + " " + std::to_string(++number);
    run("INSERT INTO lvp_store(name) VALUES('" + name + "')");
    return name;
}

unsigned short Server::port() {
    const std::string all = location();
    return static_cast<unsigned short>(std::stoi(all.substr(all.find("port=") + 5)));
}

// Of two ports the last one counts.
PostgresEngine::Settings Server::settings(const std::string& store, unsigned short port) {
    PostgresEngine::Settings settings;
    settings.location = location();
    if (port != 0) settings.location += " sslmode=disable gssencmode=disable port=" + std::to_string(port);
    settings.store = store;
    return settings;
}

std::string Server::url(const std::string& store, const std::string& user) {
    std::string name;
    for (const char c : store) name += c == ' ' ? std::string("%20") : std::string(1, c);
    return "postgresql://" + (user.empty() ? answer("SELECT current_user") : user) +
           "@127.0.0.1:" + std::to_string(port()) + "/" + answer("SELECT current_database()") + "?store=" + name;
}

void Server::cutAll() {
    run("SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity WHERE pid <> pg_backend_pid() AND datname = "
        "current_database()");
}

std::unique_ptr<Core> Server::open(const std::string& store, tMode mode) {
    return std::make_unique<Core>(store, std::make_unique<PostgresEngine>(settings(store), mode), mode);
}

}  // namespace lumivard::platform::stores
