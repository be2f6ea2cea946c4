#include "chess/move.h"

#include "chess/names.h"

namespace tarnfold {

std::string moveToCoordinates(Move move) {
    std::string text;
    text.reserve(5);
    text += squareName(move.from());
    text += squareName(move.to());
    if (move.isPromotion()) text += "pnbrqk"[pieceType(move.promotion())];
    return text;
}

}  // namespace tarnfold
