#pragma once

// A board set up from FEN for a test; a FEN that does not read fails the test.

#include <gtest/gtest.h>

#include "chess/board.h"

namespace tarnfold {

inline Board boardFrom(const char* fen, Variant variant = Standard) {
    Board board(variant);
    EXPECT_TRUE(board.setFen(fen)) << fen;
    return board;
}

}  // namespace tarnfold
