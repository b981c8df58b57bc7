#pragma once

namespace lumivard::platform::stores::postgres {

/// How stores lie in a database. Offsets are `bigint`, since 32 bits without a sign fit no smaller type.
///
/// A record of up to `kChunk` bytes is one row, chunk 0, also an empty one. A longer one is cut into full chunks, so
/// that appending rewrites the last of them and adds others. `lvp_change` tells what each commit has changed; its key
/// is a fence as well, since no epoch can be made twice.
inline constexpr char kTables[] =
    "CREATE TABLE IF NOT EXISTS lvp_store(id bigserial PRIMARY KEY, name text UNIQUE NOT NULL, epoch bigint NOT NULL "
    "DEFAULT 0, next_off bigint NOT NULL DEFAULT 0, version bigint NOT NULL DEFAULT 0, low_epoch bigint NOT NULL "
    "DEFAULT "
    "0);"
    "CREATE TABLE IF NOT EXISTS lvp_record(store bigint, off bigint, chunk int, body bytea NOT NULL, PRIMARY "
    "KEY(store, "
    "off, chunk));"
    "CREATE TABLE IF NOT EXISTS lvp_change(store bigint, epoch bigint, writer bigint NOT NULL, offs bigint[] NOT NULL, "
    "PRIMARY KEY(store, epoch));";

inline constexpr unsigned int kChunk = 8192;  ///< bytes

}  // namespace lumivard::platform::stores::postgres
