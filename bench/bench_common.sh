# Shared by the benchmark scripts: a work folder, the scaled corpus and
# timing by median. Sourced after setting here and copies; leaves the
# corpus repeated `copies` times in $work/big.pgn, and its size in bytes.

corpus=$here/../../shared/corpus/standard.pgn
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The standard corpus repeated `copies` times, in $work/big.pgn.
make_big_file() {
    i=0
    while [ $i -lt "$copies" ]; do cat "$corpus" >> "$work/big.pgn"; echo >> "$work/big.pgn"; i=$((i + 1)); done
    size=$(wc -c < "$work/big.pgn")
}

# Runs a command `repeat` times; sets seconds to the median wall time and
# peak to the median run's peak memory in MB. Its output is in $work/stdout.
median_time() {
    : > "$work/runs"
    rep=0
    while [ $rep -lt "$repeat" ]; do
        /usr/bin/time -f '%e %M' -o "$work/time" "$@" > "$work/stdout" 2>&1 || { cat "$work/stdout" "$work/time"; exit 1; }
        tail -n 1 "$work/time" >> "$work/runs"
        rep=$((rep + 1))
    done
    set -- $(sort -n "$work/runs" | awk '{t[NR] = $1; m[NR] = $2} END {i = int((NR + 1) / 2); print t[i], m[i]}')
    seconds=$1
    peak=$(($2 / 1024))
}

make_big_file

# The line that opens a report: the corpus, its copies and size, and `$1`.
describe_corpus() {
    printf '%s games of the standard corpus repeated %s times, %.1f MB; %s\n' \
        "$(grep -c '^\[Event ' "$corpus")" "$copies" "$(echo "$size / 1000000" | bc -l)" "$1"
}

# pgn-extract reading and writing big.pgn, the peer every ratio is against:
# sets extract to its median time, empty when it is not installed.
time_extract() {
    extract=
    if [ -x /usr/games/pgn-extract ]; then
        median_time /usr/games/pgn-extract -s -o "$work/extract.pgn" "$work/big.pgn"
        extract=$seconds
        printf 'pgn-extract -s -o (read and write): %.2f s\n' "$extract"
    else
        printf 'pgn-extract not found at /usr/games/pgn-extract: no comparison\n'
    fi
}
