#pragma once

/// What the engine says to the server. Each text is prepared once on each connection.
namespace lumivard::platform::stores::pq::sql {

// Who the server is.
inline constexpr char kReadOnly[] = "SELECT current_setting('transaction_read_only')";
inline constexpr char kVersion[] = "SELECT version()";
inline constexpr char kTimeline[] =
    "SELECT ('x' || substr(pg_walfile_name(pg_current_wal_lsn()), 1, 8))::bit(32)::bigint";
inline constexpr char kWaitAtMost[] = "SELECT set_config('lock_timeout', $1, false)";
inline constexpr char kFind[] =
    "SELECT id, epoch, writer, low_epoch, next_off, version, format::bigint, layout FROM lvp_store WHERE name = $1";
inline constexpr char kWriter[] = "SELECT writer FROM lvp_change WHERE store = $1 AND epoch = $2";

// Transactions. With READ COMMITTED, what comes behind the lock sees what was done while it was waited for.
inline constexpr char kBegin[] = "BEGIN ISOLATION LEVEL READ COMMITTED READ WRITE";
inline constexpr char kBeginReading[] = "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY";
inline constexpr char kLock[] =
    "SELECT epoch, writer, low_epoch, next_off, version, layout FROM lvp_store WHERE id = $1 FOR UPDATE";
inline constexpr char kPeek[] =
    "SELECT epoch, writer, low_epoch, next_off, version, layout FROM lvp_store WHERE id = $1";
inline constexpr char kCommit[] = "COMMIT";
inline constexpr char kRollBack[] = "ROLLBACK";

// What others have changed since an epoch, and the first of these records as they are now.
inline constexpr char kChanged[] =
    "SELECT DISTINCT unnest(offs) FROM lvp_change WHERE store = $1 AND epoch > $2 ORDER BY 1";
inline constexpr char kRenewed[] =
    "SELECT off, body FROM lvp_record WHERE store = $1 AND chunk = 0 AND octet_length(body) < 8192 AND off = ANY(ARRAY("
    "SELECT DISTINCT unnest(offs) FROM lvp_change WHERE store = $1 AND epoch > $2 ORDER BY 1 LIMIT 256)) ORDER BY off";

// Records: one of any length, and several, of which only short ones come, that are a single row.
inline constexpr char kLoad[] =
    "SELECT chunk::bigint, body FROM lvp_record WHERE store = $1 AND off = $2 ORDER BY chunk";
inline constexpr char kNear[] =
    "SELECT off, CASE WHEN octet_length(body) < 8192 THEN body END FROM lvp_record WHERE store = $1 AND off > $2 "
    "AND off <= $3 AND chunk = 0 ORDER BY off";
inline constexpr char kSeveral[] =
    "SELECT off, CASE WHEN octet_length(body) < 8192 THEN body END FROM lvp_record WHERE store = $1 AND off = ANY($2) "
    "AND chunk = 0 ORDER BY off";

// A commit.
inline constexpr char kErase[] = "DELETE FROM lvp_record WHERE store = $1 AND off = ANY($2)";
inline constexpr char kCut[] = "DELETE FROM lvp_record WHERE store = $1 AND off = $2 AND chunk >= $3";
inline constexpr char kPut[] =
    "INSERT INTO lvp_record(store, off, chunk, body) SELECT $1, * FROM unnest($2::bigint[], $3::int[], $4::bytea[]) ON "
    "CONFLICT(store, off, chunk) DO UPDATE SET body = EXCLUDED.body";
inline constexpr char kNote[] = "INSERT INTO lvp_change(store, epoch, writer, offs) VALUES($1, $2, $3, $4)";
inline constexpr char kMove[] =
    "UPDATE lvp_store SET epoch = $2, writer = $3, next_off = $4, version = $5, layout = $6 WHERE id = $1";
inline constexpr char kTrim[] = "DELETE FROM lvp_change WHERE store = $1 AND epoch <= $2";
inline constexpr char kRaise[] = "UPDATE lvp_store SET low_epoch = greatest(low_epoch, $2) WHERE id = $1";
inline constexpr char kTouch[] = "UPDATE lvp_store SET writer = writer WHERE id = $1";

}  // namespace lumivard::platform::stores::pq::sql
