#pragma once

// Move-path enumeration counts, the standard check of a move generator.

#include <cstdint>

#include "chess/board.h"

namespace tarnfold {

// Leaves at the depth, the last ply counted from the size of the legal move
// list without making its moves.
uint64_t perft(Board& board, int depth);

// The same count with every move made and unmade, the last ply included.
uint64_t perftMakingEveryMove(Board& board, int depth);

}  // namespace tarnfold
