// Developer tool: counts move paths from a position.
//
//   perft [--variant NAME] [--divide] [--bench] FEN DEPTH
//
// --divide prints the count below each legal move, --bench adds the time
// and nodes per second.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "chess/board.h"
#include "chess/perft.h"
#include "chess/variant.h"

using namespace tarnfold;

namespace {

int usage() {
    std::fputs("usage: perft [--variant NAME] [--divide] [--bench] FEN DEPTH\n", stderr);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    Variant variant = Standard;
    bool divide = false, bench = false;
    std::vector<std::string> positional;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (arg == "--variant" && i + 1 < argc) {
            variant = variantFromName(argv[++i]);
            if (variant == Unknown) {
                std::fprintf(stderr, "perft: unknown variant '%s'\n", argv[i]);
                return 2;
            }
        } else if (arg == "--divide") {
            divide = true;
        } else if (arg == "--bench") {
            bench = true;
        } else if (arg.starts_with("--")) {
            return usage();
        } else {
            positional.emplace_back(arg);
        }
    }
    if (positional.size() != 2) return usage();
    char* end = nullptr;
    const long depth = std::strtol(positional[1].c_str(), &end, 10);
    if (*end || depth < 0 || depth > 20) return usage();

    Board board(variant);
    std::vector<FenError> errors;
    if (!board.setFen(positional[0], &errors)) {
        for (FenError error : errors) std::fputs(fenErrorMessage(positional[0], error).c_str(), stderr);
        return 1;
    }

    const auto start = std::chrono::steady_clock::now();
    uint64_t total = 0;
    if (divide && depth > 0) {
        MoveList moves;
        board.generateLegalMoves(moves);
        for (Move move : moves) {
            board.makeMove(move);
            const uint64_t nodes = perft(board, int(depth) - 1);
            board.unmakeMove();
            std::printf("%s: %llu\n", moveToCoordinates(move).c_str(),
                        static_cast<unsigned long long>(nodes));
            total += nodes;
        }
        std::printf("\n");
    } else {
        total = perft(board, int(depth));
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("nodes %llu\n", static_cast<unsigned long long>(total));
    if (bench)
        std::printf("time %.3f s, %.1f Mnodes/s\n", seconds, seconds > 0 ? total / seconds / 1e6 : 0.0);
    return 0;
}
