#pragma once

#include <string>

#include "lumivard/platform/stores/Postgres.h"

namespace lumivard::platform::stores::pq {

/// How the locations of stores in databases begin.
inline constexpr char kScheme[] = "postgresql://";

/// What a location says.
struct tLocation {
    std::string shown;        ///< without a name and a password, for messages
    std::string database;     ///< as libpq takes it
    std::string store;        ///< the store's name, in UTF-8; empty where none is named
    PostgresOptions options;  ///< with what the location says of them
};

/// Reads a location. Throws `EngineError` for one that cannot be understood.
tLocation readLocation(const std::string& location, const PostgresOptions& options = {});

/// A location for messages, be it understood or not.
std::string withoutSecrets(std::string location);

}  // namespace lumivard::platform::stores::pq
