#include "tools/base/Location.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <vector>

namespace lvp::tool {

namespace {

constexpr std::string_view kScheme = "postgresql://";

// PostgreSQL's own clients take it as well, so it may be typed by mistake, with a password in it.
constexpr std::string_view kOtherScheme = "postgres://";

bool begins(std::string_view text, std::string_view with) {
    return text.substr(0, with.size()) == with;
}

/// The parameters of a location, as they are written.
std::vector<std::string_view> parametersOf(std::string_view location) {
    std::vector<std::string_view> parameters;
    std::size_t begin = location.find('?');
    while (begin != std::string_view::npos) {
        const std::size_t end = location.find('&', begin + 1);
        parameters.push_back(location.substr(begin + 1, end == std::string_view::npos ? end : end - begin - 1));
        begin = end;
    }
    return parameters;
}

std::string_view nameOf(std::string_view parameter) {
    return parameter.substr(0, parameter.find('='));
}

std::string decoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const char* const digits = text.data() + i + 1;
        if (text[i] == '%' && i + 2 < text.size() && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            result += static_cast<char>(byte);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string storeOf(const std::string& location) {
    std::string store;
    for (const std::string_view parameter : parametersOf(location)) {
        if (begins(parameter, "store=")) store = decoded(parameter.substr(6));
    }
    return store;
}

/// Whether there is an "@" behind the place that may be the end of a password with a "?" in it.
bool mayHoldPassword(std::string_view location) {
    const std::vector<std::string_view> parameters = parametersOf(location);
    return std::any_of(parameters.begin(), parameters.end(), [](std::string_view parameter) {
        return nameOf(parameter) != "store" && parameter.find('@') != std::string_view::npos;
    });
}

/// The hosts and the database.
std::string placeOf(std::string_view location) {
    const std::string_view scheme = location.substr(0, location.find("//") + 2);
    const std::string_view rest = location.substr(scheme.size());
    std::string_view place = rest.substr(0, rest.find('?'));
    const std::size_t at = place.rfind('@');
    if (at != std::string_view::npos) {
        place.remove_prefix(at + 1);
    } else if (mayHoldPassword(location)) {
        place = "...";
    }
    return std::string(scheme) + std::string(place);
}

/// What tells one store from another.
std::vector<std::string> identityOf(const std::string& location) {
    std::vector<std::string> identity;
    for (const std::string_view parameter : parametersOf(location)) {
        constexpr std::string_view kOthers[] = {"deadline",         "keep", "cache", "user", "password",
                                                "application_name", "store"};
        if (std::find(std::begin(kOthers), std::end(kOthers), nameOf(parameter)) == std::end(kOthers)) {
            identity.emplace_back(parameter);
        }
    }
    std::sort(identity.begin(), identity.end());
    identity.push_back(storeOf(location));
    identity.push_back(placeOf(location));
    return identity;
}

}  // namespace

bool isLocation(const std::string& store) {
    return begins(store, kScheme);
}

bool isAlmostLocation(const std::string& store) {
    return begins(store, kOtherScheme);
}

bool isSameLocation(const std::string& a, const std::string& b) {
    return isLocation(a) && isLocation(b) && identityOf(a) == identityOf(b);
}

std::string shown(const std::string& store) {
    if (!isLocation(store) && !isAlmostLocation(store)) return store;
    const std::string name = storeOf(store);
    return placeOf(store) + (name.empty() ? "" : "?store=" + name);
}

std::string calledName(const std::string& store) {
    return isLocation(store) ? storeOf(store) : std::filesystem::path(store).filename().string();
}

std::string fileBeside(const std::string& store) {
    if (!isLocation(store)) return store;
    std::string name = storeOf(store);
    for (char& character : name) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F || character == '/') character = '_';
    }
    // Neither hidden nor an option of the programs that are going to be used on it.
    if (name.empty() || name[0] == '.' || name[0] == '-') name.insert(0, "_");
    return name;
}

std::string withoutSecrets(std::string sentence, const std::string& word) {
    for (const std::string_view scheme : {kScheme, kOtherScheme}) {
        const std::size_t begin = word.find(scheme);
        if (begin == std::string::npos) continue;
        const std::string location = word.substr(begin);
        const std::string instead = shown(location);
        for (std::size_t at = sentence.find(location); at != std::string::npos;
             at = sentence.find(location, at + instead.size())) {
            sentence.replace(at, location.size(), instead);
        }
    }
    return sentence;
}

}  // namespace lvp::tool
