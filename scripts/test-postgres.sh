#!/usr/bin/env bash
# Runs the tests of the stores in databases, with servers of their own: on the loopback, as a user without rights, in a
# folder that goes with them. First the tests that need a server, on one with a synchronous standby; then what happens to
# several processes when one of them, or a server, dies or hangs.
#   scripts/test-postgres.sh [PRESET] [--long | --tests] [--required]
# PRESET is that of the development if none is named. With --long more servers die; with --tests none does, and the
# tests of the engine are all that runs. Where no server can be had that is said, and is a failure with --required.
set -Eeuo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

preset=dev
long='' tests_alone='' required=''
for argument in "$@"; do
    case $argument in
        --long) long=yes ;;
        --tests) tests_alone=yes ;;
        --required) required=yes ;;
        *) preset=$argument ;;
    esac
done
install_packages "${build_packages[@]}" "${test_packages[@]}"
if ! (install_packages "${postgres_packages[@]}"); then
    echo "test-postgres: SKIPPED, since the packages of a PostgreSQL server cannot be had: ${postgres_packages[*]}"
    [ ! "$required" ] || exit 1
    exit 0
fi
cmake --preset "$preset" ${LVP_CONFIGURE:-} >/dev/null
targets=(lvp_test_postgres)
tests=postgres
if [ "$tests_alone" ]; then
    # Processes that share a tree have one thread each, and take the guard before the front end's mutex.
    export GTEST_FILTER='-TreeProcesses*'
else
    targets+=(lvp_test_tools lvp_postgres_load)
    tests+='|tools'
fi
cmake --build --preset "$preset" --target "${targets[@]}"

idle_timeout=3  # seconds, after which a server ends a transaction whose client does nothing
root=$PWD
load=$root/build/$preset/tests/postgres/lvp_postgres_load
folder=$(mktemp -d /tmp/lvp-postgres.XXXXXX)
source scripts/postgres-servers.sh
source scripts/postgres-clients.sh
source scripts/postgres-campaigns.sh
source scripts/postgres-quorum.sh

end() {
    end_clients
    end_servers
    rm -rf "$folder"
}
trap end EXIT
trap 'echo "test-postgres: failed in ${BASH_SOURCE[0]}, line $LINENO: $BASH_COMMAND" >&2' ERR

# The user that the servers run as may not be allowed to be anywhere else.
[ ${#as_server[@]} -eq 0 ] || chown postgres: "$folder"
cd "$folder"
make_servers
(cd "$root" && LVP_POSTGRES="host=127.0.0.1 port=$(port 1) user=tester dbname=postgres" \
    ctest --preset "$preset" --parallel 1 --tests-regex "^($tests)\$")
[ ! "$tests_alone" ] || exit 0
many_processes 2000 50
many_processes "$([ "$long" ] && echo 2000 || echo 500)" 0
dead_holders
frozen_holder
dying_servers "$([ "$long" ] && echo 30 || echo 10)"
stale_primary
asynchronous_standby
three_servers "$([ "$long" ] && echo 10 || echo 1)"
