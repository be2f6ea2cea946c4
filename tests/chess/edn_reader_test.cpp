#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "chess/notation.h"

namespace tarnfold {
namespace {

constexpr std::string_view afterE4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1";
// White pawns c4 and e4 both take on d5.
constexpr std::string_view twoPawnsTake = "rnbqkbnr/ppp2ppp/8/3pp3/2P1P3/8/PP1P1PPP/RNBQKBNR w KQkq - 0 3";
// Nb3 takes the bishop on c5, Ng3 the one on f5.
constexpr std::string_view twoKnights = "4k3/8/8/2b2b2/8/1N4N1/8/4K3 w - - 0 1";
// Knights on d2 and g1 both reach f3.
constexpr std::string_view knightsToF3 = "4k3/8/8/8/8/8/3N4/4K1N1 w - - 0 1";
constexpr std::string_view castling = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
constexpr std::string_view pawnOnE7 = "7k/4P3/8/8/8/8/8/K7 w - - 0 1";
// e5 takes f6 or, en passant, d5.
constexpr std::string_view enPassant = "4k3/8/5p2/3pP3/8/8/8/4K3 w - d6 0 2";
// Ra7 reaches c7 (check) and f7 (no check).
constexpr std::string_view rookOnSeventh = "8/R7/8/8/2k5/8/8/4K3 w - - 0 1";
constexpr std::string_view backRank = "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1";
// The knight on e2 is pinned; the one on b1 is free.
constexpr std::string_view pinnedKnight = "4r1k1/8/8/8/8/8/4N3/1N2K3 w - - 0 1";

constexpr uint32_t reverse = Move::ReverseBit;

struct Case {
    std::string_view fen;
    std::string_view text;
    size_t start;
    MoveError error;
    Move expected;  // only for MoveSuccess
    size_t end;
};

Move pawn(Square from, Square to, Piece captured = NoPiece, Piece promotion = NoPiece, uint32_t flags = 0) {
    return Move::make(WhitePawn, from, to, captured, promotion, flags);
}

TEST(EdnReader, ReadsMovesAndRejectsBadTexts) {
    const std::string start(startFen);
    const Case cases[] = {
        {start, "P-K4", 0, MoveSuccess, pawn(E2, E4, NoPiece, NoPiece, Move::DoubleStepBit), 4},
        {start, "P-Q4 P-Q4", 0, MoveSuccess, pawn(D2, D4, NoPiece, NoPiece, Move::DoubleStepBit), 4},
        {start, "1. N-KB3", 2, MoveSuccess, Move::make(WhiteKnight, G1, F3), 8},
        {start, "  Kt-QB3!", 0, MoveSuccess, Move::make(WhiteKnight, B1, C3), 8},
        {afterE4, "P-K4", 0, MoveSuccess,
         Move::make(BlackPawn, E7, E5, NoPiece, NoPiece, Move::DoubleStepBit), 4},
        {start, "P-K5", 0, MoveIllegal, {}, 4},
        {start, "P-K4+", 0, MoveIllegal, {}, 5},

        {twoPawnsTake, "PxP", 0, MoveAmbiguous, {}, 3},
        {twoPawnsTake, "PxQP", 0, MoveAmbiguous, {}, 4},
        {twoPawnsTake, "KPxP", 0, MoveSuccess, pawn(E4, D5, BlackPawn), 4},
        {twoPawnsTake, "BPxP", 0, MoveSuccess, pawn(C4, D5, BlackPawn), 4},
        {twoPawnsTake, "PxKP", 0, MoveIllegal, {}, 4},
        {twoKnights, "NxB", 0, MoveAmbiguous, {}, 3},
        {twoKnights, "QKtxB", 0, MoveSuccess, Move::make(WhiteKnight, B3, C5, BlackBishop), 5},
        {twoKnights, "KNxB", 0, MoveSuccess, Move::make(WhiteKnight, G3, F5, BlackBishop), 4},
        {twoKnights, "KtxKB", 0, MoveSuccess, Move::make(WhiteKnight, G3, F5, BlackBishop), 5},
        {twoKnights, "QNXKB", 0, MoveIllegal, {}, 5},
        {twoKnights, "N-QB5", 0, MoveIllegal, {}, 5},

        {knightsToF3, "N-KB3", 0, MoveAmbiguous, {}, 5},
        {knightsToF3, "N/Q2-KB3", 0, MoveSuccess, Move::make(WhiteKnight, D2, F3), 8},
        {knightsToF3, "N(KKt1)-KB3", 0, MoveSuccess, Move::make(WhiteKnight, G1, F3), 11},
        {knightsToF3, "KKt-KB3", 0, MoveSuccess, Move::make(WhiteKnight, G1, F3), 7},
        {knightsToF3, "N(Q2-KB3", 0, MoveInvalidCharacter, {}, 4},
        {knightsToF3, "N/-KB3", 0, MoveMalformed, {}, 2},
        {pinnedKnight, "N-QB3", 0, MoveSuccess, Move::make(WhiteKnight, B1, C3), 5},
        {pinnedKnight, "N-Q4", 0, MoveIllegal, {}, 4},

        {castling, "O-O", 0, MoveSuccess,
         Move::make(WhiteKing, E1, G1, NoPiece, NoPiece, Move::ShortCastleBit), 3},
        {castling, "O-O-O+", 0, MoveSuccess,
         Move::make(WhiteKing, E1, C1, NoPiece, NoPiece, Move::LongCastleBit), 6},
        {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "O-O-O", 0, MoveSuccess,
         Move::make(BlackKing, E8, C8, NoPiece, NoPiece, Move::LongCastleBit), 5},
        {"r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1", "O-O", 0, MoveBadCastlingPermission, {}, 3},
        {"r3k2r/8/8/8/8/8/8/R3KB1R w KQkq - 0 1", "O-O", 0, MoveIllegal, {}, 3},
        {castling, "O-X", 0, MoveInvalidCastling, {}, 2},

        {pawnOnE7, "P-K8=Q", 0, MoveSuccess, pawn(E7, E8, NoPiece, WhiteQueen), 6},
        {pawnOnE7, "P-K8=Kt", 0, MoveSuccess, pawn(E7, E8, NoPiece, WhiteKnight), 7},
        {"7k/8/8/8/8/8/4p3/K7 b - - 0 1", "P-K8=R", 0, MoveSuccess,
         Move::make(BlackPawn, E2, E1, NoPiece, BlackRook), 6},
        {pawnOnE7, "P-K8=K", 0, MoveIllegalPromotionPiece, {}, 5},
        {pawnOnE7, "P-K8=P", 0, MoveIllegalPromotionPiece, {}, 5},
        {pawnOnE7, "P-K8", 0, MoveIllegal, {}, 4},

        {enPassant, "PxP", 0, MoveSuccess, pawn(E5, F6, BlackPawn), 3},
        {enPassant, "PxP e.p.", 0, MoveSuccess, pawn(E5, D6, NoPiece, NoPiece, Move::EnPassantBit), 8},
        {enPassant, "PxQP e.p.+", 0, MoveIllegal, {}, 10},
        {enPassant, "P-Q6 e.p.", 0, MoveMalformed, {}, 5},

        {rookOnSeventh, "R-B7", 0, MoveAmbiguous, {}, 4},
        {rookOnSeventh, "R-B7+", 0, MoveSuccess, Move::make(WhiteRook, A7, C7), 5},
        {rookOnSeventh, "R-B7 ch", 0, MoveSuccess, Move::make(WhiteRook, A7, C7), 7},
        {rookOnSeventh, "R-B7check", 0, MoveSuccess, Move::make(WhiteRook, A7, C7), 9},
        {rookOnSeventh, "R-B7#", 0, MoveIllegal, {}, 5},
        {backRank, "R-R8#", 0, MoveSuccess, Move::make(WhiteRook, A1, A8), 5},
        {backRank, "R-R8++", 0, MoveSuccess, Move::make(WhiteRook, A1, A8), 6},
        {backRank, "R-R7ch", 0, MoveIllegal, {}, 6},

        {start, "--", 0, MoveSuccess, Move::null(WhiteKing, E1), 2},
        {"4k3/8/8/8/8/8/8/K6K w - - 0 1", "--", 0, MoveSuccess, Move::null(WhiteKing, A1), 2},
        {"4k3/8/8/8/8/8/8/8 w - - 0 1", "--", 0, MoveIllegal, {}, 2},
        {afterE4, "~P-K4", 0, MoveSuccess, pawn(E2, E4, NoPiece, NoPiece, Move::DoubleStepBit | reverse), 5},
        {"4k3/8/8/3N4/8/8/8/4K3 b - - 0 1", "~N(QB3)xP", 0, MoveSuccess,
         Move::make(WhiteKnight, C3, D5, BlackPawn, NoPiece, reverse), 9},
        {"4k3/8/8/8/8/8/8/5RK1 b - - 0 1", "~O-O", 0, MoveSuccess,
         Move::make(WhiteKing, E1, G1, NoPiece, NoPiece, Move::ShortCastleBit | reverse), 4},

        {start, "P-", 0, MoveMalformed, {}, 2},
        {start, "P-K9", 0, MoveMalformed, {}, 2},
        {start, "Px", 0, MoveMalformed, {}, 2},
        {start, "P", 0, MoveMalformed, {}, 1},
        {start, "", 0, MoveMalformed, {}, 0},
        {start, "P*K4", 0, MoveInvalidCharacter, {}, 1},
        {start, "p-k4", 0, MoveInvalidCharacter, {}, 0},
        {start, "P-K4", 9, MoveMalformed, {}, 4},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(std::string(test.fen) + " \"" + std::string(test.text) + "\"");
        Board board;
        ASSERT_TRUE(board.setFen(test.fen));
        const std::string fenBefore = board.toFen();
        const uint64_t keyBefore = board.key;
        Move move;
        size_t position = test.start;
        const MoveError error = parseEdn(board, test.text, move, position);
        EXPECT_EQ(error, test.error);
        if (test.error == MoveSuccess && error == MoveSuccess) {
            EXPECT_EQ(move, test.expected) << moveToCoordinates(move);
        }
        EXPECT_EQ(position, test.end);
        EXPECT_EQ(board.toFen(), fenBefore);
        EXPECT_EQ(board.key, keyBefore);
        EXPECT_TRUE(board.moveStack.empty());
    }
}

}  // namespace
}  // namespace tarnfold
