// SAN throughput: main-line moves of the standard corpus read with parseSan
// and made, single thread; then the same moves written with moveToText.
//
//   san_bench [--repeat N] [FILE.pgn]

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "chess/notation.h"

using namespace tarnfold;

namespace {

using Clock = std::chrono::steady_clock;

// The main line of each game as SAN words: tags, comments, variations,
// numbers, NAGs and results left out. Games with a FEN are skipped, so that
// every game starts from the initial position.
std::vector<std::vector<std::string>> mainLines(std::string_view pgn) {
    std::vector<std::vector<std::string>> games;
    bool setUp = false, inGame = false;
    int depth = 0;
    size_t i = 0;
    while (i < pgn.size()) {
        const char c = pgn[i];
        if ((i == 0 || pgn[i - 1] == '\n') && c == '[') {
            const size_t end = pgn.find('\n', i);
            const std::string_view line = pgn.substr(i, end - i);
            if (line.starts_with("[Event ")) setUp = inGame = false;
            if (line.starts_with("[FEN ")) setUp = true;
            i = end == std::string_view::npos ? pgn.size() : end + 1;
        } else if (c == '{') {
            i = pgn.find('}', i);
            i = i == std::string_view::npos ? pgn.size() : i + 1;
        } else if (c == ';') {
            i = pgn.find('\n', i);
            i = i == std::string_view::npos ? pgn.size() : i + 1;
        } else if (c == '(' || c == ')') {
            depth += c == '(' ? 1 : -1;
            ++i;
        } else if (c == ' ' || c == '\n' || c == '\r' || c == '\t') {
            ++i;
        } else {
            size_t end = i;
            while (end < pgn.size() &&
                   std::string_view(" \n\r\t{}();").find(pgn[end]) == std::string_view::npos)
                ++end;
            std::string_view word = pgn.substr(i, end - i);
            i = end;
            const size_t dots = word.find_last_of('.');
            if (dots != std::string_view::npos) word.remove_prefix(dots + 1);
            if (word.empty() || word[0] == '$' || word == "1-0" || word == "0-1" || word == "1/2-1/2" ||
                word == "*")
                continue;
            if (depth > 0 || setUp) continue;
            if (!inGame) {
                games.emplace_back();
                inGame = true;
            }
            games.back().emplace_back(word);
        }
    }
    return games;
}

struct Run {
    double seconds;
    uint64_t moves;
};

// Every move read and made; with writing, also written back as SAN.
Run replay(const std::vector<std::vector<std::string>>& games, bool writing) {
    Board board;
    uint64_t moves = 0;
    size_t characters = 0;
    const auto start = Clock::now();
    for (const auto& game : games) {
        board.setStartPosition();
        for (const std::string& text : game) {
            Move move;
            size_t position = 0;
            if (parseSan(board, text, move, position) != MoveSuccess) {
                std::fprintf(stderr, "san_bench: cannot read %s in %s\n", text.c_str(),
                             board.toFen().c_str());
                std::exit(1);
            }
            if (writing) characters += moveToText(board, move).size();
            board.makeMove(move);
            ++moves;
        }
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    // Using the written length keeps the writing from being optimised away.
    if (writing && characters == 0) std::exit(1);
    return {seconds, moves};
}

template <typename Measure>
Run best(int repeat, Measure measure) {
    Run result{1e30, 0};
    for (int i = 0; i < repeat; ++i) {
        const Run run = measure();
        if (run.seconds < result.seconds) result = run;
    }
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    int repeat = 3;
    std::string path = ZMFI_CORPUS_DIR "/standard.pgn";
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (arg == "--repeat" && i + 1 < argc) {
            repeat = std::max(1, std::atoi(argv[++i]));
        } else if (!arg.starts_with("--")) {
            path = arg;
        } else {
            std::fputs("usage: san_bench [--repeat N] [FILE.pgn]\n", stderr);
            return 2;
        }
    }
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "san_bench: cannot read %s\n", path.c_str());
        return 2;
    }
    std::stringstream content;
    content << file.rdbuf();
    const auto games = mainLines(content.str());

    const Run read = best(repeat, [&] { return replay(games, false); });
    const Run written = best(repeat, [&] { return replay(games, true); });
    std::printf("%zu games, %llu main-line moves, best of %d, single thread\n", games.size(),
                static_cast<unsigned long long>(read.moves), repeat);
    std::printf("parseSan + makeMove:             %7.3f s  %6.2f M moves/s\n", read.seconds,
                read.moves / read.seconds / 1e6);
    std::printf("parseSan + moveToText + makeMove: %6.3f s  %6.2f M moves/s\n", written.seconds,
                written.moves / written.seconds / 1e6);
    return 0;
}
