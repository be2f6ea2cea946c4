#!/bin/sh
# Every query writes exactly the same games in the same order whether the run
# is single-threaded or uses a pool of one or two workers, lists the same
# parse errors with the same file lines, and prints the same persistent
# variables and dictionaries, folded by each merge strategy; sorted output
# merged from many small runs equals output sorted at once. (A query that
# only overwrites a dictionary entry prints the last game's value when run
# alone but a fold of the workers' last values with two: these accumulate.)
#   thread_equivalence.sh ZMFI SCRATCH GAMES.pgn...
# The game files are read as one input, in the order given.
set -u
zmfi=$1 scratch=$2
shift 2
mkdir -p "$scratch" || exit 1
cat "$@" > "$scratch/input.pgn" || exit 1
games=$scratch/input.pgn

# The log without the summary line, whose time and thread count differ, and
# without the output file's name.
log_body() { grep -v '^Analyzed ' "$1" | sed 's/ written to .*$//'; }

status=0
for query in true check mate 'wtm and #P < #p' 'btm and #[QR] > #[qr]' 'sort "material" #A - #a' \
    'sort min "first check" {check ply}' 'line --> move capture . {3,}' \
    'persistent (sum) checks = 0 check checks += 1' \
    'persistent (max) longest = 0 terminal {if ply > longest longest = ply}' \
    'persistent (min) first = "zzzz" initial {if str(player white) < first first = str(player white)}' \
    'persistent (sum) kingsquares = [] check kingsquares |= K' \
    'dictionary (int sum) games initial {who = str(player black) if games[who] games[who] = str(int games[who] + 1) else games[who] = "1"}' \
    'dictionary (max) best initial {who = str(player white) if best[who] >= str(elo white) true else best[who] = str(elo white)}' \
    'dictionary (min) firsteco initial {who = str(player white) if firsteco[who] <= str(eco) true else firsteco[who] = str(eco)}' \
    'dictionary (int min) shortest terminal {who = str(player white) if int shortest[who] <= ply true else shortest[who] = str(ply)}' \
    'dictionary (int max) longest terminal {who = str(player black) if int longest[who] >= ply true else longest[who] = str(ply)}'; do
    for flags in "" "--variations"; do
        "$zmfi" $flags --showdictionaries --zmf "$query" -i "$games" -o "$scratch/single.pgn" > "$scratch/single.log" || exit 1
        log_body "$scratch/single.log" > "$scratch/single.body"
        for threads in 1 2; do
            "$zmfi" $flags --showdictionaries --threads $threads --zmf "$query" -i "$games" -o "$scratch/pool.pgn" > "$scratch/pool.log" ||
                exit 1
            if ! cmp -s "$scratch/single.pgn" "$scratch/pool.pgn"; then
                echo "output differs: $flags --threads $threads '$query'"
                status=1
            fi
            # One worker lists errors in file order; two workers print the
            # same lines in an order of their own.
            log_body "$scratch/pool.log" > "$scratch/pool.body"
            if [ $threads = 1 ]; then
                cmp -s "$scratch/single.body" "$scratch/pool.body"
            else
                [ "$(sort "$scratch/single.body")" = "$(sort "$scratch/pool.body")" ]
            fi || {
                echo "log differs: $flags --threads $threads '$query'"
                diff "$scratch/single.body" "$scratch/pool.body" | head -5
                status=1
            }
        done
        # Sorted games spilled in runs of a few games each and merged come
        # out as those sorted in memory, alone and from two workers.
        for threads in "" "--threads 2"; do
            ZMFI_SPOOL_RUN_BYTES=3000 "$zmfi" $flags $threads --zmf "$query" -i "$games" \
                -o "$scratch/runs.pgn" > /dev/null || exit 1
            cmp -s "$scratch/single.pgn" "$scratch/runs.pgn" || {
                echo "merged runs differ: $flags $threads '$query'"
                status=1
            }
        done
        # The output must not be empty, or the comparison proves nothing.
        [ -s "$scratch/single.pgn" ] || { echo "no games matched '$query'"; status=1; }
    done
    # Nor may the error listing be, once the damaged games are in the input.
    grep -q '^  line [0-9]*: col [0-9]*: ' "$scratch/single.log" || { echo "no parse errors listed"; status=1; }
done

# Workers take several games at a turn: a range still analyses exactly its
# games, and a limit still writes exactly its number of games, whatever a
# worker had taken when the run stopped.
summary() { sed -n 's/ in [0-9.e+-]* seconds.*//p' "$1" | grep '^Analyzed '; }
"$zmfi" --gamenumber 5 12 --zmf check -i "$games" -o "$scratch/single.pgn" > "$scratch/single.log" || exit 1
for threads in 1 2 3; do
    "$zmfi" --threads $threads --gamenumber 5 12 --zmf check -i "$games" -o "$scratch/pool.pgn" > "$scratch/pool.log" ||
        exit 1
    cmp -s "$scratch/single.pgn" "$scratch/pool.pgn" && [ "$(summary "$scratch/single.log")" = "$(summary "$scratch/pool.log")" ] || {
        echo "range differs with --threads $threads: $(summary "$scratch/pool.log")"
        status=1
    }
    "$zmfi" --threads $threads --limit 3 --zmf check -i "$games" -o "$scratch/pool.pgn" > "$scratch/pool.log" || exit 1
    [ "$(grep -c '^\[Event ' "$scratch/pool.pgn")" = 3 ] && grep -q '(in 3 games)' "$scratch/pool.log" ||
        { echo "--limit 3 with --threads $threads wrote $(grep -c '^\[Event ' "$scratch/pool.pgn") games"; status=1; }
done
exit $status
