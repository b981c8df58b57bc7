# The Debian packages that the project is built with, by what they are for. Sourced by the other scripts:
# `install_packages LIST...` installs what is missing of them, as root or with sudo.

build_packages=(ca-certificates cmake g++ git libcli11-dev libexpat1-dev liblmdb-dev libpq-dev libsparsehash-dev
    libtbb-dev libutfcpp-dev ninja-build pkg-config)
test_packages=(dpkg-dev doxygen file libbenchmark-dev libgmock-dev libgtest-dev librapidcheck-dev)
package_packages=(dpkg-dev doxygen file lintian)
sanitizer_packages=(clang-14 libclang-rt-14-dev)
bench_packages=(libhdf5-dev libocct-ocaf-dev libprotobuf-dev libpugixml-dev libsqlite3-dev libxml2-dev protobuf-compiler
    python3)
postgres_packages=(postgresql-15)
view_packages=(chromium fonts-dejavu-core)
node_packages=(nodejs npm)

install_packages() {
    local missing=()
    local package
    for package in "$@"; do
        dpkg-query --show --showformat='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing, and neither root nor sudo is at hand: ${missing[*]}" >&2
            exit 1
        }
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
