#!/bin/sh
# The output file at the end of a run: the games, written beside it while
# the run goes on, take its place by a rename where that cannot be told from
# writing it over (a new file, or a plain file of one's own: its mode is
# kept), and are copied into it otherwise (through a symbolic link, into a
# file with a second name, or appended). A run that fails leaves nothing.
#   output_file.sh ZMFI SCRATCH
set -u
zmfi=$1 scratch=$2
rm -rf "$scratch" && mkdir -p "$scratch/out" || exit 1
cat > "$scratch/games.pgn" << 'PGN'
[Event "one"]
[Result "*"]

1. e4 e5 2. Nf3 *

[Event "two"]
[Result "0-1"]

1. f3 e5 2. g4 Qh4# 0-1
PGN
status=0
fail() { echo "$*"; status=1; }
run() { "$zmfi" --zmf "$1" -i "$scratch/games.pgn" -o "$2" > "$scratch/log" 2>&1; }

run true "$scratch/expected.pgn" || fail "the plain run failed"
grep -c '^\[Event' "$scratch/expected.pgn" | grep -qx 2 || fail "the plain run did not write both games"
for threads in "" "--threads 2"; do
    # A file of one's own, with stale text and a mode of its own.
    printf 'stale text that is longer than the games themselves %0500d\n' 0 > "$scratch/out/games.pgn"
    chmod 640 "$scratch/out/games.pgn"
    "$zmfi" $threads --zmf true -i "$scratch/games.pgn" -o "$scratch/out/games.pgn" > "$scratch/log" 2>&1 ||
        fail "the run over an existing file failed"
    cmp -s "$scratch/expected.pgn" "$scratch/out/games.pgn" || fail "replaced file differs ($threads)"
    [ "$(stat -c %a "$scratch/out/games.pgn")" = 640 ] || fail "the file's mode was not kept ($threads)"
    [ "$(ls -A "$scratch/out")" = games.pgn ] || fail "files left beside the output: $(ls -A "$scratch/out")"
done

# Through a symbolic link the link stays and its target gets the games.
echo old > "$scratch/target.pgn"
ln -sf "$scratch/target.pgn" "$scratch/out/link.pgn"
run true "$scratch/out/link.pgn" || fail "the run through a link failed"
[ -L "$scratch/out/link.pgn" ] || fail "the link was replaced"
cmp -s "$scratch/expected.pgn" "$scratch/target.pgn" || fail "the link's target did not get the games"

# A file with a second name is written in place: both names see the games.
echo old > "$scratch/out/first.pgn"
ln -f "$scratch/out/first.pgn" "$scratch/second.pgn"
run true "$scratch/out/first.pgn" || fail "the run into a file with two names failed"
cmp -s "$scratch/expected.pgn" "$scratch/second.pgn" || fail "the second name did not see the games"

# Appending keeps what was there.
echo '[Event "before"]' > "$scratch/appended.pgn"
"$zmfi" --zmf true -i "$scratch/games.pgn" -a "$scratch/appended.pgn" > "$scratch/log" 2>&1 || fail "append failed"
{ echo '[Event "before"]'; cat "$scratch/expected.pgn"; } | cmp -s - "$scratch/appended.pgn" || fail "append lost text"

# The first game is written, the second ends the run: no output, nothing left.
rm -rf "$scratch/out" && mkdir "$scratch/out"
run 'assert not mate' "$scratch/out/failed.pgn" && fail "the failing run succeeded"
grep -q 'assert condition failed at game number 2' "$scratch/log" || fail "the run did not fail at game 2"
[ -z "$(ls -A "$scratch/out")" ] || fail "a failed run left: $(ls -A "$scratch/out")"
exit $status
