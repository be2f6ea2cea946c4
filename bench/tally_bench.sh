#!/bin/sh
# What tabulating costs: a persistent dictionary keyed by a tag (games per
# White player, counted up), over the standard corpus repeated (20 copies,
# about 50,000 games), single-threaded and with two worker threads, with
# the time and peak memory of each; once writing every game (the query
# matches the first position of each) and once writing none (it ends in
# false, which keeps the tally: persistent writes are not taken back).
# The two runs must print the same dictionary.
#
#   bench/tally_bench.sh [ZMFI] [COPIES] [REPEAT]
#
# Needs /usr/bin/time (Debian package time).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-20}
repeat=${3:-3}
. "$here/bench_common.sh"

tally='dictionary (int sum) games initial {who = str(player white) if games[who] games[who] = str(int games[who] + 1) else games[who] = "1"}'
describe_corpus "medians of $repeat runs"
echo
printf '%-8s %-8s %8s %8s %8s\n' games threads seconds peak-MB speedup
for written in all none; do
    query=$tally
    [ $written = none ] && query="$tally false"
    single=
    for threads in single 2; do
        if [ $threads = single ]; then set --; else set -- --threads $threads; fi
        median_time "$zmfi" "$@" --showdictionaries --zmf "$query" -i "$work/big.pgn" -o "$work/out.pgn"
        grep -v '^Analyzed ' "$work/stdout" > "$work/print.$threads"
        speedup=-
        if [ -z "$single" ]; then single=$seconds; else speedup=$(printf '%.2f' "$(echo "$single / $seconds" | bc -l)"); fi
        printf '%-8s %-8s %8.2f %8s %8s\n' "$written" "$threads" "$seconds" "$peak" "$speedup"
    done
    cmp -s "$work/print.single" "$work/print.2" || { echo "the two runs printed different tallies"; exit 1; }
done
