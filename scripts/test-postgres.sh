#!/usr/bin/env bash
# Runs the tests of the engine over a database with a server of their own: on the loopback, as a user without rights, in
# a folder that goes with it.
#   scripts/test-postgres.sh            with the development build
#   scripts/test-postgres.sh PRESET     with another one
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

preset=${1:-dev}
install_packages "${build_packages[@]}" "${test_packages[@]}" "${postgres_packages[@]}"
cmake --preset "$preset" ${LVP_CONFIGURE:-} >/dev/null
cmake --build --preset "$preset" --target lvp_test_postgres

programs=/usr/lib/postgresql/15/bin
port=15441  # below those that the system gives to connections
folder=$(mktemp -d /tmp/lvp-postgres.XXXXXX)
export LC_ALL=C.UTF-8 TZ=UTC

# The server refuses to run as root.
as_server=()
if [ "$(id -u)" -eq 0 ]; then
    chown postgres: "$folder"
    as_server=(setpriv --reuid=postgres --regid=postgres --clear-groups --)
fi
end() {
    "${as_server[@]}" $programs/pg_ctl -D "$folder/data" -m immediate -w stop >/dev/null 2>&1 || true
    rm -rf "$folder"
}
trap end EXIT

cd "$folder"
"${as_server[@]}" $programs/initdb -D "$folder/data" -U tester -A trust --no-sync --no-instructions -E UTF8 \
    --locale=C.UTF-8 >/dev/null
"${as_server[@]}" tee -a "$folder/data/postgresql.conf" >/dev/null <<END
listen_addresses = '127.0.0.1'
unix_socket_directories = ''
port = $port
fsync = off
END
"${as_server[@]}" $programs/pg_ctl -D "$folder/data" -l "$folder/log" -w start >/dev/null
cd - >/dev/null

LVP_POSTGRES="host=127.0.0.1 port=$port user=tester dbname=postgres" \
    ctest --preset "$preset" --tests-regex '^postgres$'
