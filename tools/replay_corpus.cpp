// Developer tool: replays every move of the PGN files given through the SAN
// reader and writer (see san_replay.h) and reports what failed.
//
//   replay_corpus FILE...

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "tools/san_replay.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: replay_corpus FILE...\n", stderr);
        return 2;
    }
    int status = 0;
    for (int i = 1; i < argc; ++i) {
        std::ifstream file(argv[i], std::ios::binary);
        if (!file) {
            std::fprintf(stderr, "replay_corpus: cannot read %s\n", argv[i]);
            return 2;
        }
        std::stringstream content;
        content << file.rdbuf();
        const auto start = std::chrono::steady_clock::now();
        const tarnfold::replay::ReplayResult result = tarnfold::replay::replayPgn(content.str());
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        std::printf("%s: %d games, %llu moves, %d games failed (%.2f s)\n", argv[i], result.games,
                    static_cast<unsigned long long>(result.moves), result.failedGames, seconds);
        for (const std::string& failure : result.failures) std::printf("  %s\n", failure.c_str());
        if (result.failedGames) status = 1;
    }
    return status;
}
