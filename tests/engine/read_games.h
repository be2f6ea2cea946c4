#pragma once
// Games for the engine's tests and fuzz target, read from PGN text and each
// left at its root, as the engine wants them.

#include <filesystem>
#include <fstream>
#include <istream>
#include <memory>
#include <vector>

#include "pgn/pgn_reader.h"

namespace tarnfold::zmf {

using TestGame = PGN::Game<PGN::AnnotatedGameTreeNode>;

// Up to `limit` games of the stream; `clean` turns false if any had errors.
inline std::vector<std::unique_ptr<TestGame>> readGames(std::istream& stream, size_t limit, bool& clean) {
    std::vector<std::unique_ptr<TestGame>> games;
    PGN::PGNReader reader(stream, false);
    while (games.size() < limit) {
        auto game = std::make_unique<TestGame>();
        reader.game = game.get();
        reader.clearGameState();
        const int status = reader.read();
        if (status == 2) break;
        clean &= status == 0;
        game->rewind();
        games.push_back(std::move(game));
    }
    return games;
}

#ifdef ZMFI_TEST_DATA_DIR
// The first games of each file of the corpus sample, one file per rule set.
inline std::vector<std::unique_ptr<TestGame>> sampleGames(size_t perFile) {
    std::vector<std::unique_ptr<TestGame>> games;
    bool clean = true;
    for (const auto& entry : std::filesystem::directory_iterator(ZMFI_TEST_DATA_DIR "/corpus_sample")) {
        std::ifstream stream(entry.path());
        for (auto& game : readGames(stream, perFile, clean)) games.push_back(std::move(game));
    }
    return games;
}
#endif

}  // namespace tarnfold::zmf
