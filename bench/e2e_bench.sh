#!/bin/sh
# End-to-end speed of zmfi over the standard corpus repeated to about 200,000
# games: the queries true (every game written), check and mate, single-threaded
# and with two worker threads; games/s, positions/s and peak memory. In the
# same run pgn-extract reads and writes the same file, for comparison, and
# the query false over a quarter of the file shows whether memory grows with
# games that do not match.
#
#   bench/e2e_bench.sh [ZMFI] [COPIES] [REPEAT]
#
# Shared machines slow a run down by up to half now and then, and on this
# kind of host one of the two cores at times runs half again slower than the
# other for a minute or more (another guest on the same physical core), so
# every configuration runs REPEAT times (default 5), single-threaded and
# two-thread runs alternating, and the fastest run, the least disturbed, is
# what is compared; every time is printed beside it. Before and after the
# timings the same small run on each core in turn shows whether the cores
# were even.
#
# Needs /usr/bin/time (Debian package time) and, for the comparison,
# pgn-extract (Debian package pgn-extract).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-80}
repeat=${3:-5}
corpus=$here/../../shared/corpus/standard.pgn
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

make_file() { # copies, file
    : > "$2"
    i=0
    while [ $i -lt "$1" ]; do cat "$corpus" >> "$2"; echo >> "$2"; i=$((i + 1)); done
}
make_file "$copies" "$work/big.pgn"
make_file $((copies / 4)) "$work/quarter.pgn"
size=$(wc -c < "$work/big.pgn")

# Runs a command under /usr/bin/time; sets seconds and peak (MB).
measure() {
    /usr/bin/time -v "$@" > "$work/stdout" 2> "$work/time" || { cat "$work/stdout" "$work/time"; exit 1; }
    seconds=$(awk -F': ' '/Elapsed \(wall clock\)/ {n = split($2, t, ":"); s = 0;
        for (i = 1; i <= n; i++) s = s * 60 + t[i]; print s}' "$work/time")
    peak=$(awk -F': ' '/Maximum resident set size/ {printf "%.0f", $2 / 1024}' "$work/time")
}

printf '%s games of the standard corpus repeated %s times, %.1f MB\n\n' \
    "$(grep -c '^\[Event ' "$corpus")" "$copies" "$(echo "$size / 1000000" | bc -l)"

# Runs zmfi once with the query and thread count; appends the time to the
# configuration's list and keeps the summary figures.
run_zmfi() { # query threads
    # Without --threads the run is single-threaded; "--threads 0" would ask
    # for one worker per core.
    runs=$work/runs_$1_$2
    if [ "$2" = 0 ]; then set -- "$1"; else set -- "$1" --threads "$2"; fi
    query=$1
    shift
    measure "$zmfi" "$@" --zmf "$query" -i "$work/big.pgn" -o "$work/out.pgn"
    echo "$seconds $peak" >> "$runs"
    summary=$(grep '^Analyzed' "$work/stdout")
    games=$(echo "$summary" | awk '{print $2}')
    positions=$(echo "$summary" | awk '{print $5}')
    matching=$(grep 'ZMF matches' "$work/stdout" | sed 's/.*(in \([0-9]*\) game.*/\1/')
}

# The fastest of a file of runs: its time and peak.
fastest_run() {
    sort -n "$1" | head -n 1
}

# The same run of mate over a tenth of the file, pinned to each core in turn.
core_balance() {
    command -v taskset > /dev/null || return 0
    head -c $((size / 10)) "$work/big.pgn" > "$work/probe.pgn"
    printf 'seconds on each core:'
    for core in 0 1; do
        measure taskset -c $core "$zmfi" --zmf mate -i "$work/probe.pgn" -o "$work/out.pgn"
        printf ' %s' "$seconds"
    done
    printf '\n\n'
}

printf 'each figure is the fastest of %s runs; single-threaded and --threads 2 runs alternate\n' "$repeat"
core_balance
printf '%-8s %-8s %10s %10s %12s %14s %9s %s\n' query threads seconds games/s positions/s matching-games peak-MB all-seconds

for query in true check mate; do
    rep=0
    while [ $rep -lt "$repeat" ]; do
        for threads in 0 2; do run_zmfi "$query" "$threads"; done
        rep=$((rep + 1))
    done
    for threads in 0 2; do
        set -- $(fastest_run "$work/runs_${query}_${threads}")
        all=$(awk '{printf "%s%.2f", (NR > 1 ? "," : ""), $1}' "$work/runs_${query}_${threads}")
        printf '%-8s %-8s %10.2f %10.0f %12.0f %14s %9s %s\n' "$query" "$([ $threads = 0 ] && echo single || echo $threads)" \
            "$1" "$(echo "$games / $1" | bc -l)" "$(echo "$positions / $1" | bc -l)" "$matching" "$2" "$all"
        eval "time_${query}_$threads=$1"
    done
done

if [ -x /usr/games/pgn-extract ]; then
    rm -f "$work/runs_extract"
    rep=0
    while [ $rep -lt "$repeat" ]; do
        measure /usr/games/pgn-extract -s -o "$work/extract.pgn" "$work/big.pgn"
        echo "$seconds $peak" >> "$work/runs_extract"
        rep=$((rep + 1))
    done
    set -- $(fastest_run "$work/runs_extract")
    extract=$1
    printf '\npgn-extract -s -o (read and write): %.2f s, peak %s MB\n' "$extract" "$2"
    # How many times faster than pgn-extract's plain copy, single-threaded.
    printf 'pgn-extract time / true single-threaded = %.2f (target >= 3)\n' "$(echo "$extract / $time_true_0" | bc -l)"
    printf 'pgn-extract time / mate single-threaded = %.2f (target >= 4)\n' "$(echo "$extract / $time_mate_0" | bc -l)"
else
    printf '\npgn-extract not found at /usr/games/pgn-extract: no comparison\n'
fi
for query in true check mate; do
    eval "one=\$time_${query}_0 two=\$time_${query}_2"
    printf '%-6s --threads 2 speed-up = %.2f (target >= 1.8)\n' "$query" "$(echo "$one / $two" | bc -l)"
done

core_balance

# Games that do not match are not kept: peak memory should not depend on
# how many of them there are.
measure "$zmfi" --zmf false -i "$work/quarter.pgn" -o "$work/out.pgn"
quarter_peak=$peak
measure "$zmfi" --zmf false -i "$work/big.pgn" -o "$work/out.pgn"
printf '\nquery false, peak memory: %s MB over a quarter of the file, %s MB over all of it\n' "$quarter_peak" "$peak"
# Nor may games written, alone or through the two workers' reorder window.
for threads in "" "--threads 2"; do
    measure "$zmfi" $threads --zmf true -i "$work/quarter.pgn" -o "$work/out.pgn"
    quarter_peak=$peak
    measure "$zmfi" $threads --zmf true -i "$work/big.pgn" -o "$work/out.pgn"
    printf 'query true%s, peak memory: %s MB over a quarter of the file, %s MB over all of it\n' \
        "${threads:+ $threads}" "$quarter_peak" "$peak"
done
