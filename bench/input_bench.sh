#!/bin/sh
# What compressed and piped input costs: `false` (every game read, none
# written) over the standard corpus repeated (20 copies, about 50,000
# games) as a plain file, as .gz, .bz2, .xz, .zst and .zip, and piped in on
# standard input (plain, and gz through zcat), single-threaded and with two
# worker threads; pgn-extract reading the same games (plain, and from zcat)
# in the same run.
#
#   bench/input_bench.sh [ZMFI] [COPIES] [REPEAT]
#
# Needs /usr/bin/time, gzip, bzip2, xz-utils, zstd and zip.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
zmfi=${1:-$here/../build/release/zmfi}
copies=${2:-20}
repeat=${3:-3}
. "$here/bench_common.sh"

gzip -kc "$work/big.pgn" > "$work/big.pgn.gz"
bzip2 -kc "$work/big.pgn" > "$work/big.pgn.bz2"
xz -T1 -kc "$work/big.pgn" > "$work/big.pgn.xz"
zstd -q -c "$work/big.pgn" > "$work/big.pgn.zst"
(cd "$work" && zip -q big.zip big.pgn)

describe_corpus "medians of $repeat runs"
echo
printf '%-24s %8s %8s\n' input threads seconds
run() {
    label=$1 threads=$2
    shift 2
    median_time sh -c "$*"
    printf '%-24s %8s %8.2f\n' "$label" "$threads" "$seconds"
}
for threads in single 2; do
    flag=
    [ $threads = 2 ] && flag='--threads 2'
    for input in big.pgn big.pgn.gz big.pgn.bz2 big.pgn.xz big.pgn.zst big.zip; do
        run "$input" $threads "'$zmfi' $flag --zmf false -i '$work/$input' -o '$work/out.pgn'"
    done
    run "stdin (plain)" $threads "'$zmfi' $flag --zmf false -i stdin -o '$work/out.pgn' < '$work/big.pgn'"
    run "stdin (zcat big.pgn.gz)" $threads "zcat '$work/big.pgn.gz' | '$zmfi' $flag --zmf false -i stdin -o '$work/out.pgn'"
done
if [ -x /usr/games/pgn-extract ]; then
    run "pgn-extract plain" single "/usr/games/pgn-extract -s -o '$work/extract.pgn' '$work/big.pgn'"
    run "pgn-extract from zcat" single "zcat '$work/big.pgn.gz' | /usr/games/pgn-extract -s -o '$work/extract.pgn'"
fi
