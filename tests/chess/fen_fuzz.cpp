// libFuzzer target: any text given to setFen ends in a board or in errors; a
// board that was set up writes a FEN that reads back to the same key; and
// whatever placement results, even from a rejected text, every rule set
// generates, makes and takes back its moves and reverse moves exactly.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "chess/board.h"

namespace {

using namespace tarnfold;

void check(bool condition) {
    if (!condition) std::abort();
}

void makeAndTakeBack(Board& board, const MoveList& moves) {
    for (Move move : moves) {
        const Board before = board;
        board.makeMove(move);
        check(board.key == board.fullKey());
        board.unmakeMove();
        check(board == before);
    }
}

void exerciseMoves(Board& board) {
    MoveList moves;
    board.generateLegalMoves(moves);
    makeAndTakeBack(board, moves);
    for (Move move : moves) {
        board.makeMove(move);
        MoveList replies;
        board.generateLegalMoves(replies);
        board.unmakeMove();
    }
    board.generatePseudoLegalMoves(moves);
    for (Move move : moves) board.isLegalMove(move);
    board.generateLegalReverseMoves(moves);
    makeAndTakeBack(board, moves);
    board.isCheckmate();
    board.isStalemate();
    board.isVariantWin();
    board.isVariantLoss();
    board.isVariantDraw();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    for (uint32_t variant = Standard; variant < Unknown; ++variant) {
        Board board{Variant(variant)};
        std::vector<FenError> errors;
        bool ok = board.setFen(text, &errors);
        check(ok == errors.empty());
        check(board.key == board.fullKey());
        exerciseMoves(board);
        if (!ok) continue;
        Board again{Variant(variant)};
        check(again.setFen(board.toFen()) && again.key == board.key);
    }
    return 0;
}
