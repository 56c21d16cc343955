# Shared by ./run and ./check: installs what is missing and builds a preset. Sourced, with bash.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '== %s\n' "$*"; }

# need PACKAGE...: installs those that are missing, and does nothing when none is.
need() {
    local missing=() package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing; as root: apt-get install ${missing[*]}" >&2
            exit 1
        }
        root=(sudo)
    fi
    local log
    log=$(mktemp)
    say "installing packages (once, some minutes): ${missing[*]}"
    if ! { "${root[@]}" apt-get update && DEBIAN_FRONTEND=noninteractive \
        "${root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        echo "The packages could not be installed; the end of apt's output stands above." >&2
        exit 1
    fi
    rm -f "$log"
}

# What building and showing the program takes.
program_packages=(g++ cmake ninja-build qt6-base-dev qt6-serialport-dev libgl1 libxkbcommon-x11-0
    qt6-translations-l10n fonts-dejavu-core iputils-ping iproute2)

# build PRESET [OPTION...]: configures it once, with these options, then builds what changed.
build() {
    local preset=$1
    shift
    if [ ! -f "build/$preset/build.ninja" ]; then
        say "configuring ($preset)"
        cmake --preset "$preset" "$@" >/dev/null
    fi
    if ninja -C "build/$preset" -n | grep -q 'no work to do'; then
        return
    fi
    say "building ($preset)"
    ninja -C "build/$preset" | awk '
        /No space left on device/ {full = 1}
        !/^\[[0-9]+\/[0-9]+\]|^-- |^ninja: Entering/ {print; fflush()}
        END {if (full) print "The disk is full. A new call goes on from here."}'
}
