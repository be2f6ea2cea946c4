#!/bin/sh
# The cost of the filters that real queries use most, over the standard
# corpus repeated (20 copies, about 50,000 games): board geometry (a knight
# fork, an x-ray through a piece to the king, passed pawns), generated
# moves (a position with one legal move, a mate in one found by trying
# every move) and the tags (a player's name, a rating, a pattern over a
# name, read from the tags once per game), each single-threaded. In the same run pgn-extract reads and
# writes the same file; its time over a query's is the speed-up (target at
# least 2). Each query runs twice: as written, writing the games it
# matches, and as {QUERY false}, which evaluates it at every position and
# writes nothing. The second, less the time of false (reading the games and
# laying out their positions), over the number of positions, is the
# filter's own cost.
#
#   bench/filter_bench.sh [ZMFI] [COPIES] [REPEAT]
#
# Every configuration runs REPEAT times (default 3) and the median counts.
# Needs /usr/bin/time (Debian package time) and, for the comparison,
# pgn-extract (Debian package pgn-extract).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-20}
repeat=${3:-3}
. "$here/bench_common.sh"

describe_corpus "medians of $repeat runs, single-threaded"
echo
time_extract
echo

printf '%-10s %8s %12s %8s %8s %12s %8s  %s\n' name seconds positions/s games x-extract filter-ns/pos x-extract query
base=
while IFS='|' read -r name query; do
    # Alone, the filter is evaluated at every position and nothing is written.
    median_time "$zmfi" --zmf "{$query false}" -i "$work/big.pgn" -o "$work/out.pgn"
    alone=$seconds
    [ -z "$base" ] && base=$alone
    median_time "$zmfi" --zmf "$query" -i "$work/big.pgn" -o "$work/out.pgn"
    positions=$(awk '/^Analyzed/ {print $5}' "$work/stdout")
    games=$(sed -n 's/.*ZMF matches (in \([0-9]*\) game.*/\1/p' "$work/stdout")
    cost=$(echo "($alone - $base) * 1000000000 / $positions" | bc -l)
    ratio=- aloneRatio=-
    if [ -n "$extract" ]; then
        ratio=$(printf '%.2f' "$(echo "$extract / $seconds" | bc -l)")
        aloneRatio=$(printf '%.2f' "$(echo "$extract / $alone" | bc -l)")
    fi
    printf '%-10s %8.2f %12.0f %8s %8s %12.0f %8s  %s\n' "$name" "$seconds" \
        "$(echo "$positions / $seconds" | bc -l)" "$games" "$ratio" "$cost" "$aloneRatio" "$query"
done <<'EOF'
false|false
fork|square s in n {#([KQR] attackedby s) >= 2}
xray-pin|xray (R a k)
passed|#passedpawns >= 3
one-legal|move legal count == 1
mate-in-1|move legal : mate
player|player white "Smith"
elo|elo white > 2500
name-regex|player black ~~ "^Z\w*, [A-M]"
EOF
