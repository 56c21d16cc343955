#!/usr/bin/env bash
# Time from start to the first mapped window and resident memory of the program over those of an empty main
# window and of a serial terminal of the same toolkit, alternating in one run under Xvfb; then what the idle
# program does in ten seconds. Needs xvfb, x11-utils and cutecom. Exit 1 if a ratio is above the limit or the idle program
# is not idle. With "windows" before the number of rounds: the Windows program under wine over an empty window of its build.
set -euo pipefail
cd "$(dirname "$0")/.."
bin=build/bench/bin
run=()
if [ "${1:-}" = windows ]; then
    bin=build/windows-bench/bin
    run=(wine)
    export WINEPREFIX=$PWD/build/windows-bench/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
    set -- "${2:-15}" windows
fi
rounds=${1:-15}
export LC_ALL=C

if [ -z "${UNDER_XVFB:-}" ]; then
    UNDER_XVFB=1 exec xvfb-run -a -s "-screen 0 1280x1024x24 -noreset" "$0" ${2:-} "$rounds"
fi
if [ -n "${run[*]}" ]; then
    wine cmd /c ver >/dev/null 2>&1 # makes the system where there is none
    wineserver -k >/dev/null 2>&1 || true
    wineserver -p >/dev/null 2>&1
    trap 'wineserver -k >/dev/null 2>&1' EXIT
    wine cmd /c ver >/dev/null 2>&1 # its own programs run from now on
fi

now_us() { local t=${EPOCHREALTIME/./}; echo "$t"; }

# Hears every window that is mapped, as it happens.
coproc maps { exec xev -root -event substructure 2>/dev/null; }

# start PROGRAM [OPTION...]: prints "microseconds resident-kB"
start() {
    local pid begin line
    while read -r -t 0.2 -u "${maps[0]}" line; do :; done
    begin=$(now_us)
    "${run[@]}" "$@" >/dev/null 2>&1 &
    pid=$!
    until [[ ${line:-} == MapNotify* ]]; do
        read -r -t 10 -u "${maps[0]}" line || { echo "no window of $*" >&2; exit 1; }
    done
    local took=$(($(now_us) - begin))
    [ -z "${run[*]}" ] || pid=$(pgrep -n -f "$(basename "$1")")
    echo "$took $(sleep 1; awk '/^VmRSS/ {print $2}' "/proc/$pid/status")"
    kill "$pid"
    wait "$pid" 2>/dev/null || true
}

median() { sort -n | awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'; }

folder=$(mktemp -d)
ends=${run:+.exe}
for ((i = 0; i < rounds; ++i)); do
    start $bin/bench_empty_window$ends >>"$folder/empty"
    start $bin/telvox$ends --simulator >>"$folder/telvox"
    [ -n "$ends" ] || start cutecom >>"$folder/cutecom"
done
of() { cut -d' ' -f"$2" "$folder/$1" | median; }
met=true
# compare OTHER LIMIT: time and memory of the program over those of another
compare() {
    local field=0 what
    for what in "first window, us" "resident, kB"; do
        field=$((field + 1))
        awk -v what="$what" -v other="$1" -v limit="$2" -v a="$(of telvox $field)" -v b="$(of "$1" $field)" 'BEGIN {
            printf "%-16s %7d over %7d of %s: %.3f, limit %s\n", what, a, b, other, a / b, limit
            exit !(a / b <= limit)}' || met=false
    done
}
compare empty 1.5
if [ -n "$ends" ]; then
    $met
    exit
fi
compare cutecom 0.5

$bin/telvox --simulator >/dev/null 2>&1 &
pid=$!
sleep 3
activity() {
    cut -d' ' -f14,15 "/proc/$pid/stat"
    cat /proc/$pid/task/*/status | awk '/ctxt_switches/ {n += $2} END {print n}'
}
before=$(activity)
sleep 10
after=$(activity)
kill $pid
echo "idle 10 s:    ticks and wake-ups before: $(echo $before), after: $(echo $after)"
rm -r "$folder"
$met && [ "$before" = "$after" ]
