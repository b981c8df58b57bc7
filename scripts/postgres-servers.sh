# Two PostgreSQL servers on the loopback, of which one is the primary and the other one its standby, with all that an
# administrator does to them when one fails. Sourced by test-postgres.sh, which names their folder in `folder`.
#
# A server is named by its number, 1 or 2; there may be a third. They store nothing safely: what is on trial is what
# happens when processes are killed, and not when the power fails.

programs=/usr/lib/postgresql/15/bin
first_port=15441  # below those that the system gives to connections
export LC_ALL=C.UTF-8 TZ=UTC

# The server refuses to run as root.
as_server=()
[ "$(id -u)" -ne 0 ] || as_server=(setpriv --reuid=postgres --regid=postgres --clear-groups --)

fail() {
    echo "test-postgres: $*" >&2
    exit 1
}

# wait_until SECONDS WORDS COMMAND...: fails with these words where the command does not succeed in time.
wait_until() {
    local end=$((SECONDS + $1 + 1)) words=$2
    shift 2
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $end ] || fail "in vain: $words"
        sleep 0.02
    done
}

port() {
    echo $((first_port + $1 - 1))
}
other() {
    echo $((3 - $1))
}

# sql SERVER STATEMENT...: each by itself.
sql() {
    local arguments=()
    local statement
    for statement in "${@:2}"; do arguments+=(-c "$statement"); done
    PGCONNECT_TIMEOUT=5 $programs/psql -h 127.0.0.1 -p "$(port "$1")" -U tester -d postgres -qAtX -v ON_ERROR_STOP=1 \
        "${arguments[@]}"
}
# holds SERVER CONDITION
holds() {
    [ "$(sql "$1" "SELECT $2")" = t ]
}

start_server() {
    "${as_server[@]}" $programs/pg_ctl -D "$folder/$1" -l "$folder/$1.log" -o "-p $(port "$1")" -w -t 60 start \
        >/dev/null || fail "server $1 does not start: $(tail -n 5 "$folder/$1.log")"
}
stop_server() {
    "${as_server[@]}" $programs/pg_ctl -D "$folder/$1" -m immediate -w stop >/dev/null
}

# All processes of a server, which work in its folder.
processes_of() {
    # Others may end meanwhile, of which find complains.
    { find /proc -maxdepth 2 -name cwd -lname "$folder/$1" 2>/dev/null || true; } | cut -d/ -f3
}
# signal_server SERVER SIGNAL
signal_server() {
    local processes
    processes=$(processes_of "$1")
    # One may be gone by now.
    [ -z "$processes" ] || kill -s "$2" $processes 2>/dev/null || true
}
# Stopped as a whole: the process that makes the others comes first.
freeze_server() {
    kill -s STOP "$(head -n 1 "$folder/$1/postmaster.pid")"
    signal_server "$1" STOP
}
thaw_server() {
    signal_server "$1" CONT
}
# All of it dies at once, as when its machine does.
kill_server() {
    freeze_server "$1"
    signal_server "$1" KILL
    wait_until 10 "server $1 is gone" is_gone "$1"
    # Where nobody hears of its end, its number is still taken, and it would be taken for alive.
    rm "$folder/$1/postmaster.pid"
}
is_gone() {
    [ -z "$(processes_of "$1")" ]
}

# The settings that are a server's own: all that a server is told by statements, too, stands in this file.
settings_of() {
    "${as_server[@]}" tee "$folder/$1/postgresql.auto.conf" >/dev/null
}
# follow SERVER PRIMARY
follow() {
    "${as_server[@]}" touch "$folder/$1/standby.signal"
    settings_of "$1" <<END
primary_conninfo = 'host=127.0.0.1 port=$(port "$2") user=tester application_name=server$1'
END
}

# Makes both, of which the first is the primary.
make_servers() {
    "${as_server[@]}" $programs/initdb -D "$folder/1" -U tester -A trust --no-sync --no-instructions --wal-segsize=4 \
        -E UTF8 --locale=C.UTF-8 >/dev/null
    # Who returns after a promotion needs the log since the checkpoint before it, and hints in the log to undo what it
    # had done alone. Nobody shall have to wait long for one who is gone.
    "${as_server[@]}" tee -a "$folder/1/postgresql.conf" >/dev/null <<END
listen_addresses = '127.0.0.1'
unix_socket_directories = ''
fsync = ${fsync:-off}
wal_log_hints = on
wal_keep_size = 128MB
min_wal_size = 32MB
wal_retrieve_retry_interval = 200ms
wal_receiver_timeout = 5s
wal_sender_timeout = 5s
idle_in_transaction_session_timeout = ${idle_timeout}s
END
    start_server 1
    "${as_server[@]}" $programs/pg_basebackup -h 127.0.0.1 -p "$(port 1)" -U tester -D "$folder/2" -c fast -X stream \
        --no-sync
    follow 2 1
    start_server 2
    require_standby 1
}

# The primary waits for its standby from here on. Before the standby is there, that would stop everything.
require_standby() {
    local standby place
    standby=server$(other "$1")
    set_standby "$1" "$standby"
    local streams="FROM pg_stat_replication WHERE application_name = '$standby' AND state = 'streaming'"
    wait_until 30 "server$1 has a synchronous standby" holds "$1" "count(*) = 1 $streams AND sync_state = 'sync'"
    place=$(sql "$1" "SELECT pg_current_wal_lsn()")
    wait_until 30 "the standby has it all" holds "$1" "count(*) = 1 $streams AND flush_lsn >= '$place'"
}

# set_standby SERVER NAME: for whom commits wait; "" for nobody. The process of the server that makes checkpoints tells
# all others of it, and may be busy: it has done so when it has made another one.
set_standby() {
    sql "$1" "ALTER SYSTEM SET synchronous_standby_names = '$2'" "SELECT pg_reload_conf()" CHECKPOINT >/dev/null
}

# It takes changes at once, and waits for nobody until the other one is back.
promote() {
    "${as_server[@]}" $programs/pg_ctl -D "$folder/$1" -w -t 60 promote >/dev/null
    wait_until 30 "server$1 takes changes" holds "$1" "NOT pg_is_in_recovery()"
}

# rewind SERVER PRIMARY: one that was the primary and has died comes back as a standby.
rewind() {
    # Without this the new primary's history does not show yet that it was promoted.
    sql "$2" CHECKPOINT
    "${as_server[@]}" $programs/pg_rewind -D "$folder/$1" --no-sync \
        --source-server="host=127.0.0.1 port=$(port "$2") user=tester dbname=postgres" \
        >"$folder/rewind.log" 2>&1 ||
        fail "server $1 cannot be rewound: $(tail -n 5 "$folder/rewind.log")"
    follow "$1" "$2"
    start_server "$1"
}

# bring_back SERVER: as the standby of the other one of two.
bring_back() {
    local primary
    primary=$(other "$1")
    rewind "$1" "$primary"
    require_standby "$primary"
}

end_servers() {
    local server
    for server in 1 2 3; do signal_server $server KILL; done
}
