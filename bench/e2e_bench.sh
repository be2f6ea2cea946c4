#!/bin/sh
# End-to-end speed of zmfi over the standard corpus repeated to about 200,000
# games: the queries true (every game written), check and mate, single-threaded
# and with two worker threads; games/s, positions/s and peak memory. In the
# same run pgn-extract reads and writes the same file, for comparison, and
# the query false over a quarter of the file shows whether memory grows with
# games that do not match.
#
#   bench/e2e_bench.sh [ZMFI] [COPIES]
#
# Needs /usr/bin/time (Debian package time) and, for the comparison,
# pgn-extract (Debian package pgn-extract).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-80}
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
printf '%-8s %-8s %10s %10s %12s %14s %9s\n' query threads seconds games/s positions/s matching-games peak-MB

single_mate=0
for query in true check mate; do
    for threads in 0 2; do
        # Without --threads the run is single-threaded; "--threads 0" would ask
        # for one worker per core.
        if [ $threads = 0 ]; then set -- ; else set -- --threads $threads; fi
        measure "$zmfi" "$@" --zmf "$query" -i "$work/big.pgn" -o "$work/out.pgn"
        summary=$(grep '^Analyzed' "$work/stdout")
        games=$(echo "$summary" | awk '{print $2}')
        positions=$(echo "$summary" | awk '{print $5}')
        matching=$(grep 'ZMF matches' "$work/stdout" | sed 's/.*(in \([0-9]*\) game.*/\1/')
        printf '%-8s %-8s %10.2f %10.0f %12.0f %14s %9s\n' "$query" "$([ $threads = 0 ] && echo single || echo $threads)" \
            "$seconds" "$(echo "$games / $seconds" | bc -l)" "$(echo "$positions / $seconds" | bc -l)" "$matching" "$peak"
        eval "time_${query}_$threads=$seconds"
    done
done

if [ -x /usr/games/pgn-extract ]; then
    measure /usr/games/pgn-extract -s -o "$work/extract.pgn" "$work/big.pgn"
    extract=$seconds
    printf '\npgn-extract -s -o (read and write): %.2f s, peak %s MB\n' "$extract" "$peak"
    printf 'mate single-threaded / pgn-extract time = %.2f (target <= 1)\n' "$(echo "$time_mate_0 / $extract" | bc -l)"
else
    printf '\npgn-extract not found at /usr/games/pgn-extract: no comparison\n'
fi
for query in true check mate; do
    eval "one=\$time_${query}_0 two=\$time_${query}_2"
    printf '%-6s --threads 2 speed-up = %.2f (target >= 1.7)\n' "$query" "$(echo "$one / $two" | bc -l)"
done

# Games that do not match are not kept: peak memory should not depend on
# how many of them there are.
measure "$zmfi" --zmf false -i "$work/quarter.pgn" -o "$work/out.pgn"
quarter_peak=$peak
measure "$zmfi" --zmf false -i "$work/big.pgn" -o "$work/out.pgn"
printf '\nquery false, peak memory: %s MB over a quarter of the file, %s MB over all of it\n' "$quarter_peak" "$peak"
