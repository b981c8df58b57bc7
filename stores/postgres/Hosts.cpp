#include "stores/postgres/Hosts.h"

#include <libpq-fe.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <new>
#include <utility>

#include "stores/postgres/Lookup.h"
#include "stores/postgres/Waiting.h"

namespace lumivard::platform::stores::pq {
namespace {

using tParameters = std::map<std::string, std::string>;

struct tHost {
    std::string name;     // for messages
    std::string host;     // a name, an address or a folder of sockets
    std::string address;  // where the name has been looked up
    std::string port;
};

void add(tParameters& parameters, const PQconninfoOption* options) {
    for (; options->keyword; ++options) {
        if (options->val) parameters.emplace(options->keyword, options->val);
    }
}

// What a location says, and of the hosts what libpq takes where it says nothing.
tParameters parametersOf(const std::string& location) {
    char* message = nullptr;
    const std::unique_ptr<PQconninfoOption, void (*)(PQconninfoOption*)> said(
        PQconninfoParse(location.c_str(), &message), PQconninfoFree);
    const std::unique_ptr<char, void (*)(void*)> owned(message, PQfreemem);
    if (!said) {
        // Words that may hold a password are not repeated.
        const bool secret = location.find('@') != std::string::npos || location.find("password") != std::string::npos;
        const std::string text = message && !secret ? message : "it is not as PostgreSQL's clients take it";
        throw EngineError("the location cannot be understood: " + text.substr(0, text.find('\n')));
    }
    tParameters parameters;
    add(parameters, said.get());
    const std::unique_ptr<PQconninfoOption, void (*)(PQconninfoOption*)> usual(PQconndefaults(), PQconninfoFree);
    if (!usual) throw std::bad_alloc();
    tParameters others;
    add(others, usual.get());
    if (parameters.contains("service")) return parameters;  // which says where, and libpq looks there
    if (!parameters.contains("host") && !parameters.contains("hostaddr")) {
        for (const char* const name : {"host", "hostaddr"}) {
            if (others.contains(name)) parameters.emplace(name, others[name]);
        }
    }
    if (!parameters.contains("port") && others.contains("port")) parameters.emplace("port", others["port"]);
    return parameters;
}

std::vector<std::string> split(const std::string& list) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (;;) {
        const std::size_t end = list.find(',', begin);
        parts.push_back(list.substr(begin, end - begin));
        if (end == std::string::npos) return parts;
        begin = end + 1;
    }
}

// One of a list, which is as long as that of the hosts, has one part for all, or is empty.
std::string part(const std::vector<std::string>& list, std::size_t i) {
    if (list.size() == 1) return list.front();
    return i < list.size() ? list[i] : std::string();
}

std::vector<tHost> hostsOf(const tParameters& parameters, tTime until) {
    const auto of = [&](const char* name) {
        const auto found = parameters.find(name);
        return found == parameters.end() ? std::vector<std::string>() : split(found->second);
    };
    const auto hosts = of("host");
    const auto addresses = of("hostaddr");
    const auto ports = of("port");
    const std::size_t count = std::max({hosts.size(), addresses.size(), std::size_t{1}});
    if ((!hosts.empty() && !addresses.empty() && hosts.size() != addresses.size()) ||
        (ports.size() > 1 && ports.size() != count)) {
        throw EngineError("the location has not as many ports as hosts");
    }
    std::vector<tHost> all;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        tHost host{{}, part(hosts, i), part(addresses, i), part(ports, i)};
        host.name = host.host.empty() ? host.address : host.host;
        // It is a part of a password then, which no message may have.
        if (host.name.find('@') != std::string::npos) {
            throw EngineError("a host of the location has an @ in it, which in a user or a password is written %40");
        }
        if (!host.port.empty()) host.name += ":" + host.port;
        names.push_back(host.address.empty() && !host.host.starts_with('/') ? host.host : std::string());
        all.push_back(std::move(host));
    }
    // A host with several addresses is several hosts.
    const auto found = lookUp(names, until);
    std::vector<tHost> each;
    for (std::size_t i = 0; i < count; ++i) {
        if (names[i].empty()) each.push_back(all[i]);
        for (const std::string& address : found[i]) {
            each.push_back(all[i]);
            each.back().address = address;
        }
    }
    return each;
}

/// One server that is being connected to.
struct tAttempt {
    std::string name;
    Connection::tHandle connection;
    PostgresPollingStatusType state = PGRES_POLLING_WRITING;

    bool isUnderWay() const { return state == PGRES_POLLING_READING || state == PGRES_POLLING_WRITING; }

    std::string reason() const {
        const std::string text = PQerrorMessage(connection.get());
        return text.substr(0, text.find('\n'));
    }
};

tAttempt begin(const tHost& host, tParameters parameters) {
    parameters.erase("target_session_attrs");
    for (const auto& [name, value] :
         {std::pair("host", host.host), std::pair("hostaddr", host.address), std::pair("port", host.port)}) {
        parameters.erase(name);
        if (!value.empty()) parameters.emplace(name, value);
    }
    parameters["client_encoding"] = "UTF8";
    parameters.emplace("fallback_application_name", "lvp_data");
    std::vector<const char*> names;
    std::vector<const char*> values;
    for (const auto& [name, value] : parameters) {
        names.push_back(name.c_str());
        values.push_back(value.c_str());
    }
    names.push_back(nullptr);
    values.push_back(nullptr);
    tAttempt attempt{host.name, Connection::tHandle(PQconnectStartParams(names.data(), values.data(), 0))};
    if (!attempt.connection) throw std::bad_alloc();
    if (PQstatus(attempt.connection.get()) == CONNECTION_BAD) attempt.state = PGRES_POLLING_FAILED;
    return attempt;
}

// Waits until one of them can go on, and takes those that can a step further.
void advance(std::vector<tAttempt>& attempts, tTime until) {
    std::vector<pollfd> waited;
    for (const tAttempt& attempt : attempts) {
        const short events = attempt.state == PGRES_POLLING_READING ? POLLIN : POLLOUT;
        waited.push_back({attempt.isUnderWay() ? PQsocket(attempt.connection.get()) : -1, events, 0});
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
    if (::poll(waited.data(), waited.size(), static_cast<int>(std::clamp<long long>(left.count(), 0, 60'000))) <= 0)
        return;
    for (std::size_t i = 0; i < attempts.size(); ++i) {
        if (waited[i].revents != 0) attempts[i].state = PQconnectPoll(attempts[i].connection.get());
    }
}

}  // namespace

std::vector<Connection> connectToAll(const std::string& location, tTime until) {
    const tParameters parameters = parametersOf(location);
    std::vector<tAttempt> attempts;
    for (const tHost& host : hostsOf(parameters, until)) attempts.push_back(begin(host, parameters));

    const auto isThere = [](const tAttempt& attempt) { return attempt.state == PGRES_POLLING_OK; };
    tTime end = until;
    bool any = false;
    while (std::any_of(attempts.begin(), attempts.end(), [](const tAttempt& each) { return each.isUnderWay(); }) &&
           std::chrono::steady_clock::now() < end) {
        advance(attempts, end);
        if (any || std::none_of(attempts.begin(), attempts.end(), isThere)) continue;
        any = true;
        end = std::min(end, std::chrono::steady_clock::now() + kGrace);
    }

    std::vector<Connection> connections;
    std::string reasons;
    for (tAttempt& attempt : attempts) {
        if (isThere(attempt)) {
            connections.emplace_back(std::move(attempt.connection));
            continue;
        }
        if (!reasons.empty()) reasons += "; ";
        reasons += attempts.size() > 1 ? attempt.name + ": " : "";
        reasons += attempt.isUnderWay() ? "the server did not answer in time" : attempt.reason();
    }
    if (connections.empty()) throw ConnectionLost(reasons.empty() ? "no host of the location was found" : reasons);
    return connections;
}

}  // namespace lumivard::platform::stores::pq
