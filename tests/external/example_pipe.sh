#!/bin/sh
# The command-pipe example of examples/ finds, through its program, the same
# positions as the query language finds by itself, single-threaded and with
# two workers sharing the program.
#   example_pipe.sh ZMFI SCRATCH SOURCE-FOLDER
set -u
zmfi=$1 scratch=$2 source=$3
mkdir -p "$scratch" || exit 1
cd "$source" || exit 1
"$zmfi" --zmf 'balance = power A - power a balance >= 5 comment ("White is " str(balance) " pawns ahead")' \
    -i examples/games.pgn -o "$scratch/own.pgn" > "$scratch/own.log" || exit 1
status=0
for threads in 0 2; do
    # Generous waits: python's start alone can pass the default second on
    # a loaded machine, and this test is about answers, not timing.
    "$zmfi" --threads $threads --pipetimeout 20000 10000 -i examples/games.pgn -o "$scratch/pipe.pgn" examples/pipe_material.zmf \
        > "$scratch/pipe.log" || { cat "$scratch/pipe.log"; exit 1; }
    if ! cmp -s "$scratch/own.pgn" "$scratch/pipe.pgn"; then
        echo "the example's games differ with --threads $threads"
        status=1
    fi
done
grep -q '^2761 ZMF matches (in 127 games)' "$scratch/own.log" || { echo "unexpected count"; cat "$scratch/own.log"; status=1; }
exit $status
