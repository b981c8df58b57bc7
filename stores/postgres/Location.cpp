#include "stores/postgres/Location.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores::pq {
namespace {

using std::chrono::milliseconds;

// Of a store's name, in bytes: so much fits in an index of any database.
constexpr std::size_t kLongestName = 200;

constexpr milliseconds kLongest = std::chrono::hours(24);

int digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string decoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? digit(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? digit(text[i + 2]) : -1;
        if (high < 0 || low < 0) throw EngineError("behind a % of the location stand no two hexadecimal digits");
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

unsigned long long count(std::string_view name, std::string_view text) {
    unsigned long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw EngineError("the location's " + std::string(name) + " is no whole number");
    }
    return value;
}

milliseconds timeOf(std::string_view name, std::string_view text) {
    const unsigned long long value = count(name, text);
    if (value > static_cast<unsigned long long>(kLongest.count())) {
        throw EngineError("the location's " + std::string(name) + " is longer than a day");
    }
    return milliseconds(value);
}

std::string storeName(const std::string& name) {
    if (name.empty()) throw EngineError("the name of the store is empty");
    if (name.size() > kLongestName) throw EngineError("the name of the store is longer than 200 bytes");
    if (std::any_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; })) {
        throw EngineError("the name of the store has control characters");
    }
    return name;
}

}  // namespace

std::string withoutSecrets(std::string location) {
    const std::size_t begin = sizeof kScheme - 1;
    const std::size_t query = std::min(location.size(), location.find('?'));
    const std::size_t at = location.rfind('@', query);
    std::string shown = location.substr(0, begin);
    // A password with a "?" in it, which PostgreSQL's clients take: where it ends cannot be told.
    if (at == std::string::npos && query < location.size()) {
        std::string_view rest = std::string_view(location).substr(query + 1);
        for (; !rest.empty(); rest.remove_prefix(std::min(rest.size(), rest.find('&') + 1))) {
            const std::string_view parameter = rest.substr(0, rest.find('&'));
            if (!parameter.starts_with("store=") && parameter.find('@') != std::string_view::npos) return shown + "...";
            if (parameter.size() == rest.size()) break;
        }
    }
    const std::size_t from = at == std::string::npos || at < begin ? std::min(begin, location.size()) : at + 1;
    return shown + location.substr(from, query - std::min(from, query));
}

tLocation readLocation(const std::string& location, const PostgresOptions& options) {
    if (!location.starts_with(kScheme)) throw EngineError("the location does not begin with postgresql://");
    tLocation read{withoutSecrets(location), location, {}, options};
    const std::size_t query = location.find('?');
    if (query != std::string::npos) {
        read.database = location.substr(0, query);
        std::string_view rest = std::string_view(location).substr(query + 1);
        char before = '?';
        while (!rest.empty()) {
            const std::string_view parameter = rest.substr(0, rest.find('&'));
            rest.remove_prefix(std::min(rest.size(), parameter.size() + 1));
            const std::size_t equals = parameter.find('=');
            const std::string_view name = parameter.substr(0, equals);
            const std::string value = equals == std::string_view::npos ? "" : decoded(parameter.substr(equals + 1));
            if (name == "store") {
                read.store = storeName(value);
            } else if (name == "deadline") {
                read.options.deadline = timeOf(name, value);
            } else if (name == "keep") {
                read.options.keep = timeOf(name, value);
            } else if (name == "cache") {
                read.options.cache = count(name, value);
            } else {
                read.database.append(1, std::exchange(before, '&')).append(parameter);
            }
        }
    }
    read.options.deadline = std::min(read.options.deadline, kLongest);
    read.options.keep = std::clamp(read.options.keep, milliseconds(0), kLongest);
    if (read.options.deadline.count() <= 0) throw EngineError("the deadline is not above 0");
    if (!read.store.empty()) read.shown += "?store=" + read.store;
    return read;
}

}  // namespace lumivard::platform::stores::pq
