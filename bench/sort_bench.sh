#!/bin/sh
# What sort costs: over the standard corpus repeated (20 copies, about
# 50,000 games), each query with its sort and without it, single-threaded
# and with two worker threads, with the time and peak memory of each: mate
# with the longest game first, and every game ordered by its material.
#
#   bench/sort_bench.sh [ZMFI] [COPIES] [REPEAT]
#
# Needs /usr/bin/time (Debian package time).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-20}
repeat=${3:-3}
. "$here/bench_common.sh"

printf '%s games of the standard corpus repeated %s times, %.1f MB; medians of %s runs\n\n' \
    "$(grep -c '^\[Event ' "$corpus")" "$copies" "$(echo "$size / 1000000" | bc -l)" "$repeat"
printf '%-8s %8s %8s %-40s\n' threads seconds peak-MB query
while IFS='|' read -r plain sorted; do
    for threads in single 2; do
        for query in "$plain" "$sorted"; do
            # Without --threads the run is single-threaded.
            if [ $threads = single ]; then set --; else set -- --threads $threads; fi
            median_time "$zmfi" "$@" --zmf "$query" -i "$work/big.pgn" -o "$work/out.pgn"
            printf '%-8s %8.2f %8s %-40s\n' "$threads" "$seconds" "$peak" "$query"
        done
    done
done <<'QUERIES'
mate|mate sort max "plies" ply
#A >= 0|sort "material" #A - #a
QUERIES
