# Three servers, of which any one standby has to have a commit before it counts: what is recommended for work that must
# not be lost. Sourced by test-postgres.sh, behind the campaigns with two. `primary` takes changes, and the other one of
# the two may have died.

# others_of SERVER: the two that are left.
others_of() {
    local server
    for server in 1 2 3; do [ $server -eq "$1" ] || echo $server; done
}

# fuller_of SERVER SERVER: which of two standbys whose primary is dead has more of the log, when each has read all that
# had been sent to it.
fuller_of() {
    local server place
    for server in "$@"; do
        wait_until 10 "server$server has read all" holds "$server" \
            "count(*) = 0 FROM pg_stat_wal_receiver WHERE status = 'streaming'"
    done
    place=$(sql "$2" "SELECT pg_last_wal_receive_lsn()")
    if holds "$1" "pg_last_wal_receive_lsn() >= '$place'"; then echo "$1"; else echo "$2"; fi
}

# Returns when both standbys have the log up to now.
await_standbys() {
    local place
    place=$(sql $primary "SELECT pg_current_wal_lsn()")
    wait_until 30 "both standbys have it all" holds $primary \
        "count(*) = 2 FROM pg_stat_replication WHERE state = 'streaming' AND flush_lsn >= '$place'"
}

make_quorum() {
    local server
    bring_back "$(other $primary)"
    "${as_server[@]}" $programs/pg_basebackup -h 127.0.0.1 -p "$(port $primary)" -U tester -D "$folder/3" -c fast \
        -X stream --no-sync
    for server in 1 2 3; do
        "${as_server[@]}" tee -a "$folder/$server/postgresql.conf" >/dev/null \
            <<<"synchronous_standby_names = 'ANY 1 (server1, server2, server3)'"
    done
    follow 3 $primary
    start_server 3
    sql $primary "ALTER SYSTEM RESET synchronous_standby_names" "SELECT pg_reload_conf()" CHECKPOINT >/dev/null
    await_standbys
    holds $primary "count(*) = 2 FROM pg_stat_replication WHERE sync_state = 'quorum'" || fail "there is no quorum"
}

# check_quorum FOLDER SINCE WORDS
check_quorum() {
    hold_workers "$1" 3
    check_store $primary quorum "$1" "$2"
    echo "Three servers, $3: $(figure acknowledged) flushes acknowledged, $(figure lost) lost, $(figure unknown)" \
        "unknown, $(figure given_up) given up, longest gap $(figure gap) ms"
    [ "$(figure refused)$(figure failed)" = 00 ] || fail "errors in place of waiting: $figures $(errors_of "$1")"
    release_workers "$1"
    require_no_fault "$1"
}

# three_servers ROUNDS: a standby dies; the primary does, while a standby stalls, and the fuller one takes over; of a
# primary the first process dies alone, and the rest with it. In the end both standbys hang.
three_servers() {
    local notes=$folder/quorum where number round begin
    mkdir "$notes"
    make_quorum
    make_store $primary quorum 3
    where=$(location quorum "&deadline=30000" 3 1 2)
    for number in 0 1 2; do start_worker write "$where" "$notes" $number 0; done
    wait_until 20 "all writers have begun" has_notes "$notes" 3
    sql $primary CHECKPOINT
    for ((round = 1; round <= $1; ++round)); do
        local standbys dead
        mapfile -t standbys < <(others_of $primary)
        begin=$(now)
        each_goes_on "$notes" 100
        kill_server "${standbys[0]}"
        each_goes_on "$notes" 100
        start_server "${standbys[0]}"
        await_standbys
        check_quorum "$notes" "$begin" "a standby killed, round $round"

        begin=$(now)
        each_goes_on "$notes" 100
        freeze_server "${standbys[round % 2]}"
        sleep 0.3
        dead=$primary
        kill_server $dead
        thaw_server "${standbys[round % 2]}"
        primary=$(fuller_of "${standbys[@]}")
        promote $primary
        for number in "${standbys[@]}"; do
            [ "$number" -eq $primary ] || {
                follow "$number" $primary
                sql "$number" "SELECT pg_reload_conf()" >/dev/null
            }
        done
        each_goes_on "$notes" 100
        check_quorum "$notes" "$begin" "the primary killed, round $round"
        rewind "$dead" $primary
        await_standbys

        begin=$(now)
        each_goes_on "$notes" 100
        kill -s KILL "$(head -n 1 "$folder/$primary/postmaster.pid")"
        wait_until 10 "all processes of server $primary are gone" is_gone $primary
        rm "$folder/$primary/postmaster.pid"
        start_server $primary
        each_goes_on "$notes" 100
        await_standbys
        check_quorum "$notes" "$begin" "the primary's first process killed, round $round"
    done
    end_workers "$notes"
    check_store $primary quorum "$notes" 0
    lost_quorum "$(location quorum "&deadline=2000" 1 2 3)"
}

# lost_quorum LOCATION: while no standby answers, nothing is said to be stored, and who wants to write waits no longer
# than the deadline; what was not known then is found when it is asked for again.
lost_quorum() {
    local tally server
    start_client writer "$1" w
    ask writer write
    tally=${answer#wrote }
    for server in $(others_of $primary); do freeze_server "$server"; done
    expect writer write "error: *it is not known whether it was done*"
    expect writer read "read *"
    expect writer write "error: *it is not known whether it was done*"
    for server in $(others_of $primary); do thaw_server "$server"; done
    end_client writer
    start_client writer "$1" w
    expect writer write "wrote $((tally + 2))"
    end_client writer
    echo "Three servers, both standbys frozen: a flush was not known after the deadline, and was there when they went" \
        "on"
}
