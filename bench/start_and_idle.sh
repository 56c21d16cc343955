#!/usr/bin/env bash
# Time from start to the first mapped window and resident memory of the program over those of an empty main
# window, alternating in one run under Xvfb; then what the idle program does in ten seconds.
# Needs xvfb and x11-utils. Exit 1 if a ratio is above the limit or the idle program is not idle.
set -euo pipefail
cd "$(dirname "$0")/.."
bin=build/bench/bin
rounds=${1:-15}
export LC_ALL=C

if [ -z "${UNDER_XVFB:-}" ]; then
    UNDER_XVFB=1 exec xvfb-run -a -s "-screen 0 1280x1024x24 -noreset" "$0" "$@"
fi

now_us() { local t=${EPOCHREALTIME/./}; echo "$t"; }

# Hears every window that is mapped, as it happens.
coproc maps { exec xev -root -event substructure 2>/dev/null; }

# start PROGRAM [OPTION...]: prints "microseconds resident-kB"
start() {
    local pid begin line
    while read -r -t 0.2 -u "${maps[0]}" line; do :; done
    begin=$(now_us)
    "$@" >/dev/null 2>&1 &
    pid=$!
    until [[ ${line:-} == MapNotify* ]]; do
        read -r -t 10 -u "${maps[0]}" line || { echo "no window of $*" >&2; exit 1; }
    done
    echo "$(($(now_us) - begin)) $(sleep 1; awk '/^VmRSS/ {print $2}' "/proc/$pid/status")"
    kill "$pid"
    wait "$pid" 2>/dev/null || true
}

median() { sort -n | awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'; }

folder=$(mktemp -d)
for ((i = 0; i < rounds; ++i)); do
    start $bin/bench_empty_window >>"$folder/empty"
    start $bin/telvox --simulator >>"$folder/telvox"
done
for what in empty telvox; do
    cut -d' ' -f1 "$folder/$what" | median >"$folder/$what.us"
    cut -d' ' -f2 "$folder/$what" | median >"$folder/$what.kb"
done
ratio() { awk -v a="$(cat "$1")" -v b="$(cat "$2")" 'BEGIN {printf "%.3f", a / b}'; }
time_ratio=$(ratio "$folder/telvox.us" "$folder/empty.us")
memory_ratio=$(ratio "$folder/telvox.kb" "$folder/empty.kb")
echo "first window: $(cat "$folder/telvox.us") us over $(cat "$folder/empty.us") us, ratio $time_ratio"
echo "resident:     $(cat "$folder/telvox.kb") kB over $(cat "$folder/empty.kb") kB, ratio $memory_ratio"

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
awk -v t="$time_ratio" -v m="$memory_ratio" 'BEGIN {exit !(t <= 1.5 && m <= 1.5)}'
[ "$before" = "$after" ]
