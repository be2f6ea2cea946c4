#!/bin/sh
# What the legality analysis costs per position, over the standard corpus
# repeated (20 copies, about 50,000 games), single-threaded: the full
# analysis (reachableposition) and the basic one (legalposition) against
# false, which only reads the games and lays out their positions; against
# mate, which tests for check and generates the legal moves where there is
# one; and against the legal moves generated and counted at every position.
# Each query runs twice: as written (`not reachableposition` holds at no
# position of a real game, so nothing is written) and as {QUERY false},
# which evaluates it at every position and writes nothing. The second, less
# the time of false, over the number of positions, is the filter's own
# cost; the last two columns set it against mate's and against the move
# generation's (target: below 1 against mate).
#
#   bench/analysis_bench.sh [ZMFI] [COPIES] [REPEAT]
#
# Every configuration runs REPEAT times (default 3) and the median counts.
# Needs /usr/bin/time (Debian package time).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-20}
repeat=${3:-3}
. "$here/bench_common.sh"

describe_corpus "medians of $repeat runs, single-threaded"
echo

printf '%-14s %8s %12s %8s %13s %7s %8s  %s\n' name seconds positions/s matches filter-ns/pos x-mate x-moves query
base=
mate=
moves=
while IFS='|' read -r name query; do
    # Alone, the filter is evaluated at every position and nothing is written.
    median_time "$zmfi" --zmf "{$query false}" -i "$work/big.pgn" -o "$work/out.pgn"
    alone=$seconds
    [ -z "$base" ] && base=$alone
    median_time "$zmfi" --zmf "$query" -i "$work/big.pgn" -o "$work/out.pgn"
    positions=$(awk '/^Analyzed/ {print $5}' "$work/stdout")
    matches=$(sed -n 's/^\([0-9]*\) ZMF matches.*/\1/p' "$work/stdout")
    cost=$(echo "($alone - $base) * 1000000000 / $positions" | bc -l)
    [ "$name" = mate ] && mate=$cost
    [ "$name" = moves ] && moves=$cost
    toMate=- toMoves=-
    case $name in
        false | mate | moves) ;;
        *)
            toMate=$(printf '%.2f' "$(echo "$cost / $mate" | bc -l)")
            toMoves=$(printf '%.2f' "$(echo "$cost / $moves" | bc -l)")
            ;;
    esac
    printf '%-14s %8.2f %12.0f %8s %13.0f %7s %8s  %s\n' "$name" "$seconds" \
        "$(echo "$positions / $seconds" | bc -l)" "$matches" "$cost" "$toMate" "$toMoves" "$query"
done <<'QUERIES'
false|false
mate|mate
moves|move legal count == 1
reachable|not reachableposition
legal|not legalposition
reachable-text|not reachableposition comment (reachableposition)
QUERIES
