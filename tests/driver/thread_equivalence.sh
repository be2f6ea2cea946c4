#!/bin/sh
# Every query writes exactly the same games in the same order whether the run
# is single-threaded or uses a pool of one or two workers.
#   thread_equivalence.sh ZMFI GAMES.pgn SCRATCH
set -u
zmfi=$1 games=$2 scratch=$3
mkdir -p "$scratch" || exit 1
status=0
for query in true check mate 'wtm and #P < #p' 'btm and #[QR] > #[qr]'; do
    for flags in "" "--variations"; do
        "$zmfi" $flags --zmf "$query" -i "$games" -o "$scratch/single.pgn" > "$scratch/single.log" || exit 1
        for threads in 1 2; do
            "$zmfi" $flags --threads $threads --zmf "$query" -i "$games" -o "$scratch/pool.pgn" > "$scratch/pool.log" ||
                exit 1
            if ! cmp -s "$scratch/single.pgn" "$scratch/pool.pgn"; then
                echo "differs: $flags --threads $threads '$query'"
                status=1
            fi
        done
        # The output must not be empty, or the comparison proves nothing.
        [ -s "$scratch/single.pgn" ] || { echo "no games matched '$query'"; status=1; }
    done
done
exit $status
