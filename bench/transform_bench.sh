#!/bin/sh
# What transforms cost. Parsing: `shift` and `flip` over a body of a dozen
# designators (225 and 8 entries; the copies that stay on the board are
# kept), each read with --parse, against the body
# alone. Running: a three-pawn chain under `shift` over the standard corpus
# repeated (20 copies, about 50,000 games), against the explicit `or` of the
# same copies written out by hand, and against pgn-extract reading and
# writing the same file.
#
#   bench/transform_bench.sh [ZMFI] [COPIES] [REPEAT]
#
# Needs /usr/bin/time (Debian package time).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-20}
repeat=${3:-3}
. "$here/bench_common.sh"

body='{Kd4 Re4 Nd5 Be5 Qc4 Pf4 kc5 rf5 nd3 be3 qc6 pf6}'
printf 'Parsing (--parse, 20 runs timed together, medians of %s)\n' "$repeat"
printf '%-8s %8s %8s\n' filter copies ms/run
for filter in "" "flip " "shift "; do
    echo "$filter$body" > "$work/q.zmf"
    median_time sh -c 'i=0; while [ $i -lt 20 ]; do "$1" --parse --noconsoleunicode --noansicolors \
        --expandtransforms "$2" > /dev/null || exit 1; i=$((i + 1)); done' sh "$zmfi" "$work/q.zmf"
    "$zmfi" --parse --noconsoleunicode --noansicolors --expandtransforms "$work/q.zmf" > "$work/dump"
    copiesMade=$(sed -n 's/.*Transform ([a-z]*) copies: \([0-9]*\).*/\1/p' "$work/dump")
    printf '%-8s %8s %8.1f\n' "${filter:-body}" "${copiesMade:-1}" "$(echo "$seconds * 1000 / 20" | bc -l)"
done

# Every placement of a pawn chain b2-c3-d4 on the board, written out.
explicit=$(awk 'BEGIN {
    files = "abcdefgh"; text = ""
    for (f = 0; f <= 5; f++) for (r = 0; r <= 5; r++) {
        copy = sprintf("{P%s%d P%s%d P%s%d}", substr(files, f + 1, 1), r + 1, substr(files, f + 2, 1), r + 2,
                       substr(files, f + 3, 1), r + 3)
        text = text (text == "" ? "" : " or ") copy
    }
    print text }')

echo
describe_corpus "medians of $repeat runs, single-threaded"
time_extract
printf '%-9s %8s %10s %8s %9s\n' query seconds matches games x-extract
while IFS='|' read -r name query; do
    [ "$name" = explicit ] && query=$explicit
    median_time "$zmfi" --zmf "$query" -i "$work/big.pgn" -o "$work/out.pgn"
    matches=$(sed -n 's/^\([0-9]*\) ZMF matches.*/\1/p' "$work/stdout")
    games=$(sed -n 's/.*ZMF matches (in \([0-9]*\) game.*/\1/p' "$work/stdout")
    ratio=-
    [ -n "$extract" ] && ratio=$(printf '%.2f' "$(echo "$extract / $seconds" | bc -l)")
    printf '%-9s %8.2f %10s %8s %9s\n' "$name" "$seconds" "$matches" "$games" "$ratio"
done <<'EOF'
false|false
shift|shift {Pb2 Pc3 Pd4}
explicit|
EOF
