# What happens to the processes that share a store when one of them, or a server, dies or hangs. Sourced by
# test-postgres.sh, behind the servers and the clients. `primary` is the number of the server that takes changes; the
# other one is its synchronous standby before each of these, and behind each but the last. Each ends the script where
# something is not as it should be.

primary=1

# many_processes STEPS KEEP: several writers on one store, whose guards are kept for so long, and readers beside them:
# no update is lost, and nobody starves.
many_processes() {
    local steps=$1 keep=$2 store=many$2 notes=$folder/many$2 where begin number took least states
    mkdir "$notes"
    make_store $primary $store 4
    where=$(location $store "&deadline=20000&keep=$keep" $primary)
    begin=$(now)
    for number in 0 1; do start_worker read "$where" "$notes" $number; done
    local readers=("${workers[@]}")
    workers=()
    for number in 0 1 2 3; do start_worker write "$where" "$notes" $number "$steps"; done
    await_workers "$notes"
    took=$((($(now) - begin) / 1000))
    workers=("${readers[@]}")
    end_workers "$notes"
    check_store $primary $store "$notes" "$begin"
    [ "$(figure steps)" -eq $((4 * steps)) ] || fail "updates are lost: $figures"
    least=$(least_when_the_first_was_done "$notes")
    states=$(awk '/^l/ { sum += $2 } END { print sum + 0 }' "$notes"/reader.*)
    echo "4 writers x $steps guards, keep=$keep: $took ms, $(figure steps) steps, no update lost; the slowest had" \
        "$least when the first was done; 2 readers saw $states states"
    [ "$states" -ge 20 ] || fail "the readers have hardly seen anything"
    [ "$least" -ge $((steps / 10)) ] || fail "a writer starves"
}

# How many steps the slowest writer had acknowledged when the first one had all of them.
least_when_the_first_was_done() {
    local notes end
    end=$(for notes in "$1"/writer.*; do grep '^a' "$notes" | tail -n 1 | cut -d' ' -f3; done | sort -n | head -n 1)
    for notes in "$1"/writer.*; do awk -v end="$end" '/^a/ && $3 <= end { ++n } END { print n + 0 }' "$notes"; done |
        sort -n | head -n 1
}

# strike SIGNAL: a client that holds the guard, and has changed something, is struck by a signal while another one waits.
# Sets `took`, in milliseconds, after which that had the guard, and `answer`.
strike() {
    local begin
    expect holder take taken
    expect holder change changed
    tell waiter write
    require_waiter
    begin=$(now)
    signal_client holder "$1"
    hear waiter
    took=$((($(now) - begin) / 1000))
}

# The guard of a process that is killed goes to the next one at once, and what was not stored is not there.
dead_holders() {
    local store=dead where round took longest=0
    make_store $primary $store 1
    where=$(location $store "&deadline=10000" $primary)
    start_client waiter "$where" w
    for round in 1 2 3 4 5; do
        start_client holder "$where" w
        strike KILL
        [ "$answer" = "wrote $round" ] || fail "behind a holder that was killed: $answer"
        [ $took -lt 1000 ] || fail "the guard of a holder that was killed came after $took ms"
        [ $took -lt $longest ] || longest=$took
        end_client holder
    done
    echo "5 holders of the guard killed: the next one had it within $longest ms"
    end_client waiter
}

# One process waits for the row that another one holds.
require_waiter() {
    wait_until 10 "somebody waits for the guard" holds $primary \
        "count(*) = 1 FROM pg_stat_activity WHERE wait_event_type = 'Lock'"
}

# That of one that hangs goes to the next one when the server has lost its patience, and it stores nothing any more.
frozen_holder() {
    local store=frozen where took
    make_store $primary $store 1
    where=$(location $store "&deadline=10000" $primary)
    start_client waiter "$where" w
    start_client holder "$where" w
    strike STOP
    [ "$answer" = "wrote 1" ] || fail "behind a holder that hangs: $answer"
    [ $took -lt $(((idle_timeout + 1) * 1000)) ] || fail "the guard of a holder that hangs came after $took ms"
    signal_client holder CONT
    expect holder give "error: *somebody else has changed the store since*"
    expect holder read "read 1"
    expect holder write "wrote 2"
    expect waiter read "read 2"
    echo "A holder of the guard frozen: the next one had it within $took ms, and it stored nothing when it went on"
    end_client holder
    end_client waiter
}

# A primary dies under load while its standby stalls, the standby takes over, and the dead one comes back as the standby
# of the other one: over and over, with the same processes.
dying_servers() {
    local store=failover notes=$folder/failover number round begin all=0
    mkdir "$notes"
    make_store $primary $store 3
    start_worker write "$(location $store "&deadline=10000" 1 2)" "$notes" 0 0
    start_worker write "$(location $store "&deadline=10000" 2 1)" "$notes" 1 0
    start_worker write "$(location $store "&deadline=10000&keep=0" 1 2)" "$notes" 2 0
    start_worker read "$(location $store "&deadline=10000" 1 2)" "$notes" 0
    wait_until 20 "all writers have begun" has_notes "$notes" 3
    sql $primary CHECKPOINT  # the log that is kept has to reach back to the last one
    for ((round = 1; round <= $1; ++round)); do
        local standby
        standby=$(other $primary)
        begin=$(now)
        each_goes_on "$notes" 100
        freeze_server "$standby"
        sleep 0.3
        # In turns: with a commit for which the standby has stalled, and when that is over.
        [ $((round % 2)) -ne 0 ] || thaw_server "$standby"
        [ $((round % 2)) -ne 0 ] || sleep 0.1
        kill_server $primary
        thaw_server "$standby"
        launch_client newcomer "$(location $store "&deadline=10000" 1 2)" r
        promote "$standby"
        primary=$standby
        each_goes_on "$notes" 100
        hear newcomer
        [ "$answer" = open ] || fail "who comes while there is no primary does not wait for one: $answer"
        end_client newcomer
        hold_workers "$notes" 3
        check_store $primary $store "$notes" "$begin"
        echo "Primary killed, round $round: $(figure acknowledged) flushes acknowledged, $(figure lost) lost," \
            "$(figure unknown) unknown, $(figure given_up) given up, longest gap $(figure gap) ms"
        [ "$(figure refused)$(figure failed)" = 00 ] ||
            fail "errors in place of waiting: $figures $(errors_of "$notes")"
        all=$((all + $(figure acknowledged)))
        release_workers "$notes"
        bring_back "$(other $primary)"
        require_no_fault "$notes"
    done
    end_workers "$notes"
    check_store $primary $store "$notes" 0
    echo "$1 primaries killed: $all flushes acknowledged, none lost, none done twice, none by halves"
}
has_notes() {
    [ "$(find "$1" -name 'writer.*' -size +0 | wc -l)" -eq "$2" ]
}
errors_of() {
    grep -h '^[urge]' "$1"/writer.* | tail -n 5
}

# A primary hangs, the standby takes over, and the old one goes on as if nothing had happened: who has seen the new one
# never uses the old one, and who comes anew finds the new one. Clients name the servers in both orders.
stale_primary() {
    local store=stale old=$primary new where order begin round tally
    new=$(other $primary)
    make_store $primary $store 1
    start_client old_first "$(location $store "&deadline=2000" "$old" "$new")" w
    start_client new_first "$(location $store "&deadline=2000" "$new" "$old")" w
    start_client reader "$(location $store "&deadline=2000" "$old" "$new")" r
    expect old_first write "wrote 1"
    expect new_first write "wrote 2"
    expect reader read "read 2"
    freeze_server "$old"
    promote "$new"
    begin=$(now)
    # Before the deadline the server may only be slow.
    until ask new_first read && [ "$answer" = "read 2" ]; do
        [[ $answer == "error: "* ]] || fail "a client of a primary that hangs: $answer"
        [ $(($(now) - begin)) -lt 10000000 ] || fail "a client does not find the new primary: $answer"
    done
    local took=$((($(now) - begin) / 1000))
    expect new_first write "wrote 3"
    local client
    for client in old_first reader; do
        ask $client read
        [ "$answer" = "read 3" ] || expect $client read "read 3"
    done
    expect old_first write "wrote 4"
    expect reader read "read 4"

    thaw_server "$old"
    # It is there, takes changes, and shows what is no more: else nothing is shown here.
    wait_until 10 "the old primary goes on" holds "$old" "NOT pg_is_in_recovery()"
    start_client deceived "$(location $store "&deadline=2000" "$old")" r
    expect deceived read "read 2"
    end_client deceived
    tally=4
    for round in 1 2 3 4 5; do
        cut_clients "$new"
        expect reader read "read $tally"
        for client in old_first new_first; do
            tally=$((tally + 1))
            expect $client write "wrote $tally"
            cut_clients "$new"
            expect $client read "read $tally"
        done
        for order in "$old $new" "$new $old"; do
            start_client anew "$(location $store "&deadline=2000" $order)" w
            expect anew read "read $tally"
            tally=$((tally + 1))
            expect anew write "wrote $tally"
            end_client anew
        done
    done
    # With the old one alone, which still answers, there is nothing to be had.
    stop_server "$new"
    for client in old_first new_first reader; do expect $client read "error: *"; done
    expect old_first write "error: *"
    start_client deceived "$(location $store "&deadline=2000" "$old")" r
    expect deceived read "read 2"
    end_client deceived
    start_server "$new"
    for client in old_first new_first reader; do
        expect $client read "read $tally"
        end_client $client
    done
    holds "$old" "epoch = 3 FROM lvp_store WHERE name = '$store'" || fail "somebody has written on the old primary"
    echo "Primary frozen and thawed: the other one was found within $took ms; cut off or opened anew 25 times, nobody" \
        "came back to it"
    kill_server "$old"
    primary=$new
    bring_back "$old"
}

# Ends the server's side of all connections of clients.
cut_clients() {
    local statement="SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity WHERE application_name = 'lvp_data'"
    sql "$1" "$statement" >/dev/null
}

# What can be lost is seen when it is lost: with a standby that nobody waits for. Whoever has seen more than the new
# primary has refuses it.
asynchronous_standby() {
    local store=control notes=$folder/control number standby
    standby=$(other $primary)
    mkdir "$notes"
    set_standby $primary ""
    make_store $primary $store 3
    for number in 0 1 2; do
        start_worker write "$(location $store "&deadline=2000" $primary)" "$notes" $number 0
    done
    start_client witness "$(location $store "&deadline=2000" 1 2)" r
    wait_until 20 "all writers have begun" has_notes "$notes" 3
    each_goes_on "$notes" 20
    stop_server "$standby"
    each_goes_on "$notes" 150
    ask witness read
    require_no_fault "$notes"
    for number in "${workers[@]}"; do kill -s KILL "$number"; done
    wait "${workers[@]}" 2>/dev/null || true
    workers=()
    kill_server $primary
    start_server "$standby"
    promote "$standby"
    primary=$standby
    if figures=$("$load" check "$(location $store "" $primary)" $store "$notes" 0 2>"$notes/faults"); then
        fail "a standby that nobody waits for loses nothing: the checks see nothing, either"
    fi
    [ "$(figure lost)" -ge 100 ] || fail "a standby that nobody waits for loses too little: $figures"
    expect witness read "error: *"
    end_client witness
    echo "Standby that nobody waits for: $(figure lost) of $(figure acknowledged) acknowledged flushes are lost, and" \
        "seen to be; who has seen them refuses the server"
}
