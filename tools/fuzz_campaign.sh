#!/usr/bin/env bash
# A fuzzing campaign: builds the fuzz preset, makes each target's seed corpus
# and token dictionary, and runs the targets one after the other for a given
# time, keeping what they learn between campaigns.
#
#   tools/fuzz_campaign.sh [--seconds N] [--runs N] [--jobs N] [--prepare] [TARGET...]
#
# TARGET is a fuzz target's name (query_parser_fuzz, engine_engine_fuzz,
# chess_fen_fuzz, chess_san_fuzz, pgn_pgn_parser_fuzz, pgn_pgn_reader_fuzz);
# none means all. --seconds is the time for each target (default 600),
# --runs stops a target earlier after that many executions, --jobs runs that
# many fuzzing processes for each target; --prepare only makes the seeds and
# dictionaries.
#
# Everything lands under build/fuzz/campaign/TARGET/: seeds/ (made afresh),
# corpus/ (grows from campaign to campaign), findings/ (an input that failed a
# check, with the crash-, leak- or timeout- prefix libFuzzer gives it) and
# log.txt. A finding is reproduced by running the target on that file; once
# fixed, copy it into the target's tests/<folder>/<name>_regressions/ so
# that the test suite replays it on every build.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=600
runs=0
jobs=1
prepare=0
targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --seconds) seconds="$2"; shift 2 ;;
        --runs) runs="$2"; shift 2 ;;
        --jobs) jobs="$2"; shift 2 ;;
        --prepare) prepare=1; shift ;;
        -h|--help) sed -n '2,20p' "$0"; exit 0 ;;
        *) targets+=("$1"); shift ;;
    esac
done
all=(query_parser_fuzz engine_engine_fuzz chess_fen_fuzz chess_san_fuzz pgn_pgn_parser_fuzz pgn_pgn_reader_fuzz)
[ ${#targets[@]} -eq 0 ] && targets=("${all[@]}")

shared=../shared
root=build/fuzz/campaign
if [ "$prepare" -eq 0 ]; then
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz --target "${targets[@]}"
fi

# One file per seed, named by its content as libFuzzer names its own.
add_seed() {  # add_seed DIR < content
    local temporary
    temporary=$(mktemp)
    cat >"$temporary"
    mv "$temporary" "$1/$(sha1sum <"$temporary" | cut -c1-40)"
}

# Games one by one: the first MAX games of a file, each a seed of its own.
split_games() {  # split_games DIR FILE MAX
    awk -v out="$1/$(basename "$2" .pgn)-" -v max="$3" '
        function flush() {
            if (text != "" && count < max) { count++; printf "%s", text > (out count); close(out count) }
            text = ""
        }
        /^\[Event / { flush() }
        { text = text $0 "\n" }
        END { flush() }' "$2"
}

pgn_seeds() {
    local dir="$1"
    cp tests/data/pgn/*.pgn "$dir"/
    for file in tests/data/corpus_sample/*.pgn; do split_games "$dir" "$file" 5; done
    if [ -d "$shared/corpus" ]; then
        mkdir -p "$dir/shared"
        for file in "$shared"/corpus/*.pgn; do split_games "$dir/shared" "$file" 20; done
    fi
}

query_seeds() {
    local dir="$1"
    cp tests/query/parser_fuzz_seeds/* "$dir"/
    for file in examples/*.zmf; do add_seed "$dir" <"$file"; done
    # The queries of the engine test table and of the golden cases.
    grep -v '^#' tests/data/engine/eval_cases.tsv | cut -f1 | while IFS= read -r query; do
        printf '%s' "$query" | add_seed "$dir"
    done
    grep -rho -e "--zmf '[^']*'" tests/golden/cases | sed "s/^--zmf '//; s/'\$//" | sort -u |
        while IFS= read -r query; do printf '%s' "$query" | add_seed "$dir"; done
    find tests/golden/cases -name '*.case' -print0 | xargs -0 awk '
        /^--- file .*\.zmf$/ { on = 1; n++; next }
        /^--- / { on = 0 }
        on { print > ("'"$dir"'/golden-" n) }'
}

fen_seeds() {
    local dir="$1"
    cp tests/chess/fen_fuzz_seeds/* "$dir"/
    grep -v '^#' tests/data/perft.tsv | cut -f2 | sort -u | while IFS= read -r fen; do
        printf '%s' "$fen" | add_seed "$dir"
    done
}

# Tokens the fuzzer splices in: PGN punctuation and SAN, the query language's
# keywords and operators (read from its token list), FEN pieces.
write_dictionary() {  # write_dictionary FILE KIND
    local file="$1"
    : >"$file"
    case "$2" in
        pgn|san)
            for token in '[' ']' '{' '}' '(' ')' '"' ';' '%' '$1' '$19' '1-0' '0-1' '1/2-1/2' '*' \
                '[Event "' '[FEN "' '[SetUp "1"]' '[Variant "' 'crazyhouse' 'atomic' 'horde' '1.' '1...' \
                'O-O' 'O-O-O' 'x' '+' '#' '=Q' '=N' 'e.p.' 'ep' '@' '~' '--' 'Z0' 'N' 'B' 'R' 'Q' 'K' \
                'P' 'e4' 'exd5' 'Nf3' 'Kt' 'P-K4' 'QxQ' '(N)'; do
                printf '"%s"\n' "$(printf '%s' "$token" | sed 's/\\/\\\\/g; s/"/\\"/g')" >>"$file"
            done ;;
        query)
            grep -o 'X([A-Za-z0-9]*, "[^"]*")' query/token.h | sed 's/^X([A-Za-z0-9]*, //; s/)$//' |
                grep -v '\\' | grep -vx '"text"' >>"$file"
            for token in '"a"' 'Ka1' '[Qq]' 'a-h1-8' '_' 'A' 'x = ' '{' '}' 'function f(i) {' 'f(1)' \
                '-->' '<--' 'zmf(' 'dictionary D' 'D["k"]'; do
                printf '"%s"\n' "$(printf '%s' "$token" | sed 's/\\/\\\\/g; s/"/\\"/g')" >>"$file"
            done ;;
        fen)
            for token in '/' '8' 'rnbqkbnr' 'PPPPPPPP' ' w ' ' b ' 'KQkq' 'HAha' ' - ' '[]' '[Qn]' \
                '+3+3' ' 0 1' '~'; do
                printf '"%s"\n' "$token" >>"$file"
            done ;;
    esac
}

summary=()
for target in "${targets[@]}"; do
    dir="$root/$target"
    rm -rf "$dir/seeds"
    mkdir -p "$dir/seeds" "$dir/corpus" "$dir/findings"
    case "$target" in
        query_parser_fuzz|engine_engine_fuzz) query_seeds "$dir/seeds"; kind=query ;;
        chess_fen_fuzz) fen_seeds "$dir/seeds"; kind=fen ;;
        chess_san_fuzz) cp tests/chess/san_fuzz_seeds/* "$dir/seeds"/; kind=san ;;
        pgn_pgn_parser_fuzz|pgn_pgn_reader_fuzz) pgn_seeds "$dir/seeds"; kind=pgn ;;
        *) echo "unknown target: $target" >&2; exit 1 ;;
    esac
    write_dictionary "$dir/tokens.dict" "$kind"
    [ "$prepare" -eq 1 ] && { echo "$target: $(find "$dir/seeds" -type f | wc -l) seeds"; continue; }
    binary=build/fuzz/tests/$target
    echo "== $target: $(find "$dir/seeds" -type f | wc -l) seeds, $seconds s" >&2
    options=(-max_total_time="$seconds" -dict="$dir/tokens.dict" -artifact_prefix="$dir/findings/"
             -print_final_stats=1 -timeout=20 -rss_limit_mb=4096)
    [ "$runs" -gt 0 ] && options+=(-runs="$runs")
    [ "$jobs" -gt 1 ] && options+=(-jobs="$jobs" -workers="$jobs")
    status=0
    "$binary" "${options[@]}" "$dir/corpus" "$dir/seeds" >"$dir/log.txt" 2>&1 || status=$?
    execs=$(grep -o 'stat::number_of_executed_units: [0-9]*' "$dir/log.txt" | awk '{s += $2} END {print s + 0}')
    coverage=$(grep -o 'cov: [0-9]* ft: [0-9]*' "$dir/log.txt" | tail -1)
    findings=$(ls "$dir/findings" | wc -l)
    summary+=("$target: exit $status, $execs runs, $coverage, corpus $(ls "$dir/corpus" | wc -l), findings $findings")
done
printf '%s\n' "${summary[@]}"
