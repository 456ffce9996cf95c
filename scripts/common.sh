# SPDX-License-Identifier: Apache-2.0
# Sourced by the scripts beside it: what they say, what they install, how they build.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
converter="$root/apps/ifchost/converter"

# Debian packages by purpose; each is installed only when it is missing.
build_packages=(
    g++ cmake ninja-build pkg-config ccache
    libboost-dev libboost-filesystem-dev libpugixml-dev libicu-dev libhwy-dev
    nlohmann-json3-dev libcli11-dev libssl-dev
)
test_packages=(
    libgtest-dev libgmock-dev libbenchmark-dev clang clang-format clang-tidy
    libclang-rt-14-dev libxml2-utils locales valgrind libc6-dbg
)
# For the controls and the desktop host; without them both are left out.
ui_packages=(
    qt6-base-dev libqt6opengl6-dev qt6-l10n-tools libgl1-mesa-dri fonts-dejavu-core fonts-wqy-zenhei
)
# A display for their tests.
ui_test_packages=(xvfb xauth)

say() { printf '\n== %s\n' "$*"; }

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# install_packages NAME... : installs what is missing, and says what that is.
install_packages() {
    local name missing=()
    for name in "$@"; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' ||
            missing+=("$name")
    done
    [ ${#missing[@]} = 0 ] && return 0
    say "installing Debian packages: ${missing[*]}"
    as_root apt-get update -qq
    DEBIAN_FRONTEND=noninteractive as_root apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}

# The IFC reader runs under Node 18 or newer; one that is there already is used as it is.
install_node() {
    if ! command -v node >/dev/null; then install_packages nodejs npm; fi
    command -v npm >/dev/null || install_packages npm
    if [ ! -e "$converter/node_modules/.package-lock.json" ] ||
        [ "$converter/package-lock.json" -nt "$converter/node_modules/.package-lock.json" ]; then
        say "installing the IFC reader's npm packages into $converter/node_modules"
        npm ci --prefix "$converter" --no-audit --no-fund --loglevel=error
        touch "$converter/node_modules/.package-lock.json"
    fi
}

# build PRESET [TARGET...] : configures and builds one preset with every core.
build() {
    local preset=$1
    shift
    say "building preset $preset"
    (
        cd "$root"
        export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=1
        cmake --preset "$preset" -DCMAKE_CXX_COMPILER_LAUNCHER=ccache --log-level=WARNING
        cmake --build --preset "$preset" ${1:+--target "$@"}
    )
}
