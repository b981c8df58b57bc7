#!/usr/bin/env bash
# Builds the benchmark of stores in databases (build/release) and runs it with servers of its own: a primary and a
# synchronous standby on this machine, that write to its disk as usual.
set -Eeuo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" libbenchmark-dev "${postgres_packages[@]}"
cmake --preset release -DLVP_DATA_TESTS=OFF ${LVP_CONFIGURE:-} >/dev/null
cmake --build --preset release --target lvp_bench_postgres

idle_timeout=30  # seconds, after which a server ends a transaction whose client does nothing
fsync=on
root=$PWD
folder=$(mktemp -d /tmp/lvp-postgres.XXXXXX)
source scripts/postgres-servers.sh
end() {
    end_servers
    rm -rf "$folder"
}
trap end EXIT

[ ${#as_server[@]} -eq 0 ] || chown postgres: "$folder"
cd "$folder"
make_servers
"$root/build/release/bench/lvp_bench_postgres" "postgresql://tester@127.0.0.1:$(port 1)/postgres"
