#!/bin/sh
# What a command-pipe round trip costs: the 200 example games repeated
# (5 copies, about 105,000 positions), every position sending its FEN to
# `cat` and reading it back, single-threaded and with two workers sharing
# the one program, against the same query without the pipe. Prints the
# round trips per second and the cost of one round trip over the query
# without it.
#
#   bench/pipe_bench.sh [ZMFI] [COPIES] [REPEAT]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-5}
repeat=${3:-3}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

i=0
while [ $i -lt "$copies" ]; do cat "$here/../examples/games.pgn" >> "$work/games.pgn"; i=$((i + 1)); done

# Median wall time of `repeat` runs, from zmfi's own summary; sets seconds
# and positions.
median_run() {
    : > "$work/runs"
    rep=0
    while [ $rep -lt "$repeat" ]; do
        "$zmfi" --lineincrement 0 "$@" -i "$work/games.pgn" -o "$work/out.pgn" > "$work/log" || { cat "$work/log"; exit 1; }
        grep '^Analyzed ' "$work/log" | awk '{print $8, $5}' >> "$work/runs"
        rep=$((rep + 1))
    done
    set -- $(sort -g "$work/runs" | awk '{t[NR] = $1; p[NR] = $2} END {i = int((NR + 1) / 2); print t[i], p[i]}')
    seconds=$1
    positions=$2
}

printf '%s copies of examples/games.pgn; medians of %s runs\n\n' "$copies" "$repeat"
printf '%-8s %10s %9s %14s %12s  %s\n' threads positions seconds round-trips/s us/trip query
base='x = currentfen false'
pipe='x = commandpipe ("cat" currentfen) false'
for threads in single 2; do
    if [ $threads = single ]; then set --; else set -- --threads $threads; fi
    median_run "$@" --zmf "$base"
    base_seconds=$seconds
    printf '%-8s %10s %9.3f %14s %12s  %s\n' $threads "$positions" "$seconds" - - "$base"
    median_run "$@" --zmf "$pipe"
    printf '%-8s %10s %9.3f %14.0f %12.2f  %s\n' $threads "$positions" "$seconds" \
        "$(echo "$positions / $seconds" | bc -l)" \
        "$(echo "($seconds - $base_seconds) * 1000000 / $positions" | bc -l)" "$pipe"
done
