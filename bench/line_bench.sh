#!/bin/sh
# The line filter over the standard corpus repeated (20 copies, about 50,000
# games) with its variations walked, single-threaded: a counted repetition
# (four or more captures in a row) and a check, a check and a mate by one
# side. Each line's own cost per position (its time as {LINE false}, less
# that of false, over the positions) is compared with the cost of
# evaluating its constituents once at every position (target: at most 3
# times that). The peak memory of the line as written, over a quarter of
# the file and over all of it, shows whether memory grows with the games.
#
#   bench/line_bench.sh [ZMFI] [COPIES] [REPEAT]
#
# Needs /usr/bin/time (Debian package time).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-20}
repeat=${3:-3}
. "$here/bench_common.sh"
head -c $((size / 4)) "$work/big.pgn" | sed '$d' > "$work/quarter.pgn"

printf '%s games of the standard corpus repeated %s times, %.1f MB; --variations; medians of %s runs, single-threaded\n\n' \
    "$(grep -c '^\[Event ' "$corpus")" "$copies" "$(echo "$size / 1000000" | bc -l)" "$repeat"

run() { median_time "$zmfi" --variations --zmf "$1" -i "$2" -o "$work/out.pgn"; }

run false "$work/big.pgn"
base=$seconds
positions=$(awk '/^Analyzed/ {print $5}' "$work/stdout")
printf 'false: %.2f s, %.0f positions/s\n\n' "$base" "$(echo "$positions / $base" | bc -l)"
printf '%-10s %12s %10s %14s %8s %9s %9s  %s\n' name positions/s line-ns/pos constituent-ns/pos ratio peak-1/4 peak-all query
while IFS='|' read -r name line constituents; do
    run "{$line false}" "$work/big.pgn"
    lineCost=$(echo "($seconds - $base) * 1000000000 / $positions" | bc -l)
    run "{$constituents false}" "$work/big.pgn"
    constituentCost=$(echo "($seconds - $base) * 1000000000 / $positions" | bc -l)
    run "$line" "$work/quarter.pgn"
    quarterPeak=$peak
    run "$line" "$work/big.pgn"
    printf '%-10s %12.0f %10.0f %14.0f %8.2f %9s %9s  %s\n' "$name" "$(echo "$positions / $seconds" | bc -l)" \
        "$lineCost" "$constituentCost" "$(echo "$lineCost / $constituentCost" | bc -l)" "$quarterPeak" "$peak" "$line"
done <<'QUERIES'
captures|line --> move capture . {4,}|move capture .
mate|line singlecolor --> check --> check --> mate|(check or true) (mate or true)
QUERIES
