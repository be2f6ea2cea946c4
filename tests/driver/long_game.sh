#!/bin/sh
# A legal game of 100,000 plies (knights out and back) is read, evaluated at
# every position, written, and the written game reads back with every one of
# its positions: nothing on the way recurses as deep as the game.
#   long_game.sh ZMFI SCRATCH
set -u
zmfi=$1 scratch=$2
mkdir -p "$scratch" || exit 1
awk 'BEGIN {
    printf "[Event \"long\"]\n[Result \"*\"]\n\n"
    for (i = 0; i < 25000; i++) printf "Nf3 Nf6 Ng1 Ng8 "
    printf "*\n" }' > "$scratch/long.pgn"
status=0
"$zmfi" --zmf 'terminal' -i "$scratch/long.pgn" -o "$scratch/out.pgn" > "$scratch/first.log" || exit 1
grep -q '^1 ZMF matches (in 1 game)' "$scratch/first.log" || { echo "the last position did not match"; status=1; }
grep -q 'Analyzed 1 games with 100001 positions' "$scratch/first.log" || { echo "not every position was laid out"; status=1; }
tail -n 2 "$scratch/out.pgn" | grep -q '50000\.Ng1 Ng8 {ZMF} \*$' || {
    echo "the written game does not end with its last move marked"
    tail -n 2 "$scratch/out.pgn"
    status=1
}
"$zmfi" --zmf 'true' -i "$scratch/out.pgn" -o "$scratch/again.pgn" > "$scratch/second.log" || exit 1
grep -q '^100001 ZMF matches (in 1 game)' "$scratch/second.log" || { echo "the written game does not read back whole"; status=1; }
exit $status
