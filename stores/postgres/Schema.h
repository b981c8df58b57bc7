#pragma once

#include <bit>
#include <cstdint>

namespace lumivard::platform::stores::pq {

/// How stores lie in a database.
///
/// A store is a row, whose lock is its guard. `epoch` counts the commits, and `writer` is the token of the last one;
/// `low_epoch` says from where on `lvp_change` tells what each commit has changed, whose key is a fence as well, since
/// no epoch can be made twice. `format` is `kFormat`, and `layout` that of the machine that has written first.
///
/// Offsets are `bigint`, since 32 bits without a sign fit no smaller type. A record of up to `kChunk` bytes is one row,
/// chunk 0, also an empty one. A longer one is cut into full chunks, so that appending rewrites the last of them and
/// adds others.
inline constexpr const char* kTables[] = {
    "CREATE TABLE IF NOT EXISTS lvp_store(id bigserial PRIMARY KEY, name text UNIQUE NOT NULL, "
    "format int NOT NULL DEFAULT 1, layout bigint NOT NULL DEFAULT 0, epoch bigint NOT NULL DEFAULT 0, "
    "writer bigint NOT NULL DEFAULT 0, low_epoch bigint NOT NULL DEFAULT 0, next_off bigint NOT NULL DEFAULT 0, "
    "version bigint NOT NULL DEFAULT 0) WITH (fillfactor = 20)",
    "CREATE TABLE IF NOT EXISTS lvp_record(store bigint, off bigint, chunk int, body bytea NOT NULL, "
    "PRIMARY KEY(store, off, chunk)) WITH (fillfactor = 70)",
    "CREATE TABLE IF NOT EXISTS lvp_change(store bigint, epoch bigint, writer bigint NOT NULL, offs bigint[] NOT NULL, "
    "PRIMARY KEY(store, epoch))",
    // Only where it is not so: it waits for everybody who is at work on any store, and holds up all who come after.
    "/* PostgreSQL */ DO $$ BEGIN IF (SELECT attstorage <> 'e' FROM pg_attribute WHERE attrelid = "
    "'lvp_record'::regclass "
    "AND attname = 'body') THEN ALTER TABLE lvp_record ALTER COLUMN body SET STORAGE EXTERNAL; END IF; END $$",
};

/// How a statement begins that is for PostgreSQL itself, and not for other databases that speak its language.
inline constexpr char kOwn[] = "/* PostgreSQL */";

inline constexpr unsigned int kChunk = 8192;  ///< bytes
inline constexpr int kFormat = 1;

/// How records lie in the memory of this machine.
inline constexpr std::int64_t kLayout = 2 * sizeof(wchar_t) + (std::endian::native == std::endian::big ? 1 : 0);

}  // namespace lumivard::platform::stores::pq
