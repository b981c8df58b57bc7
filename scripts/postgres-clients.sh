# Processes that use a store in a database: workers, which run by themselves, and clients, which take orders. Sourced by
# test-postgres.sh, which names the program in `load`. A folder holds what workers note.

workers=()  # the processes

# location STORE PARAMETERS SERVER...: that may be on any of these.
location() {
    local hosts='' server
    for server in "${@:3}"; do hosts+=,127.0.0.1:$(port "$server"); done
    echo "postgresql://tester@${hosts#,}/postgres?store=$1$2"
}

# make_store SERVER STORE WRITERS
make_store() {
    "$load" create "$(location "$2" "" "$1")" "$3"
}

# start_worker KIND LOCATION FOLDER NUMBER [STEPS]
start_worker() {
    "$load" "$@" 2>>"$3/faults" &
    workers+=($!)
}

# Those that wait for SIGTERM end by themselves; a status tells of a fault.
end_workers() {
    local worker
    for worker in "${workers[@]}"; do kill -s TERM "$worker" 2>/dev/null || true; done
    await_workers "$1"
}
await_workers() {
    local worker failed=
    for worker in "${workers[@]}"; do wait "$worker" || failed=yes; done
    workers=()
    [ ! "$failed" ] || fail "$(cat "$1/faults")"
}
require_no_fault() {
    [ ! -s "$1/faults" ] || fail "$(cat "$1/faults")"
}

# hold_workers FOLDER COUNT: returns when so many have nothing under way.
hold_workers() {
    touch "$1/hold"
    wait_until 30 "$2 workers have nothing under way" are_held "$1" "$2"
}
are_held() {
    [ "$(find "$1" -name 'held.*' | wc -l)" -eq "$2" ]
}
release_workers() {
    rm "$1/hold"
    wait_until 30 "all workers go on" are_held "$1" 0
}

acknowledged() {
    grep -c '^a' "$1"
}
has_more() {
    [ "$(acknowledged "$1")" -gt "$2" ]
}
# each_goes_on FOLDER STEPS: each writer takes so many steps from here on.
each_goes_on() {
    local notes before=()
    for notes in "$1"/writer.*; do before+=("$(acknowledged "$notes" || true)"); done
    for notes in "$1"/writer.*; do
        wait_until 60 "$notes goes on: $(tail -n 1 "$notes")" has_more "$notes" $((before[0] + $2))
        before=("${before[@]:1}")
    done
}

# check_store SERVER STORE FOLDER SINCE: sets `figures`. Nobody may work on the store meanwhile.
check_store() {
    figures=$("$load" check "$(location "$2" "" "$1")" "$2" "$3" "$4") ||
        fail "the store is not as it should be: $figures"
    local changes
    changes=$(sql "$1" "
        SELECT s.epoch - s.low_epoch - count(*), count(*) - count(DISTINCT c.writer), min(c.epoch) - s.low_epoch - 1,
            max(c.epoch) - s.epoch, count(*) FILTER (WHERE c.epoch = s.epoch AND c.writer = s.writer) - 1
        FROM lvp_store s JOIN lvp_change c ON c.store = s.id AND c.epoch > s.low_epoch
        WHERE s.name = '$2' GROUP BY s.id")
    [ "$changes" = "0|0|0|0|0" ] || fail "the epochs have gaps, or a token came twice: $changes"
}
# figure NAME: one of those that were set.
figure() {
    local words=" $figures" rest
    rest=${words##* "$1"=}
    echo "${rest%% *}"
}

# Microseconds since 1970.
now() {
    echo "${EPOCHREALTIME/[^0-9]/}"
}

# --- Clients that take orders, each by a name

declare -A client_process client_in client_out

# start_client NAME LOCATION r|w: returns when it has opened the store, or not: see `answer`.
start_client() {
    launch_client "$@"
    hear "$1"
}
launch_client() {
    local in out
    mkfifo "$folder/$1.in" "$folder/$1.out"
    # Open at both ends, so that nobody waits for the other one to come.
    exec {in}<>"$folder/$1.in" {out}<>"$folder/$1.out"
    rm "$folder/$1.in" "$folder/$1.out"
    "$load" client "$2" "$3" <&"$in" >&"$out" &
    disown  # its end is no news
    client_process[$1]=$! client_in[$1]=$in client_out[$1]=$out
}
# tell NAME ORDER
tell() {
    echo "$2" >&"${client_in[$1]}"
}
# Sets `answer`.
hear() {
    read -r -t 60 -u "${client_out[$1]}" answer || fail "client $1 does not answer"
}
ask() {
    tell "$@"
    hear "$1"
}
# expect NAME ORDER PATTERN
expect() {
    ask "$1" "$2"
    [[ $answer == $3 ]] || fail "client $1 was told to $2, and answers \"$answer\" in place of \"$3\""
}
signal_client() {
    kill -s "$2" "${client_process[$1]}"
}
end_client() {
    kill -s KILL "${client_process[$1]}" 2>/dev/null || true
    eval "exec ${client_in[$1]}>&- ${client_out[$1]}>&-"
    unset "client_process[$1]" "client_in[$1]" "client_out[$1]"
}

end_clients() {
    local process
    disown -a
    for process in "${workers[@]}" "${client_process[@]}"; do kill -s KILL "$process" 2>/dev/null || true; done
}
