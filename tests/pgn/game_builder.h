#pragma once

// Building game trees for tests by playing SAN moves.

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "chess/notation.h"
#include "pgn/game.h"

namespace tarnfold::PGN {

using AnnotatedGame = Game<AnnotatedGameTreeNode>;

// Plays the SAN moves from the node `from` on, each as a new child, and
// returns the last node; the game is left rewound.
inline AnnotatedGameTreeNode* addLine(AnnotatedGame& game, AnnotatedGameTreeNode* from,
                                      std::initializer_list<const char*> sans) {
    std::vector<uint32_t> path;
    from->pathFromRoot(path);
    game.rewind();
    for (uint32_t index : path) game.forward(game.current->childAnnotated(index));
    for (const char* san : sans) {
        Move move;
        size_t position = 0;
        EXPECT_EQ(parseSan(game.board, san, move, position), MoveSuccess) << san;
        game.forward(game.current->addChild(move));
    }
    AnnotatedGameTreeNode* last = game.current;
    game.rewind();
    return last;
}

}  // namespace tarnfold::PGN
