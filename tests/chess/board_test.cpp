#include "chess/board.h"

#include <gtest/gtest.h>

#include "chess/keys.h"

namespace tarnfold {
namespace {

TEST(Board, SetPieceKeepsEveryViewInStep) {
    Board board;
    board.setPiece(E4, WhiteKnight, 7, true);
    EXPECT_EQ(board.pieces[White][Knight], squareBit(E4));
    EXPECT_EQ(board.byType[Knight], squareBit(E4));
    EXPECT_EQ(board.byColor[White], squareBit(E4));
    EXPECT_EQ(board.occupied, squareBit(E4));
    EXPECT_EQ(board.promoted, squareBit(E4));
    EXPECT_EQ(board.pieceIds[E4], 7);
    EXPECT_EQ(board.key, sideKey ^ pieceSquareKey(WhiteKnight, E4));

    // Replacing takes the old piece off everything, the promoted mark included.
    board.setPiece(E4, BlackQueen, 9);
    EXPECT_EQ(board.pieces[White][Knight], 0u);
    EXPECT_EQ(board.byType[Knight], 0u);
    EXPECT_EQ(board.byColor[White], 0u);
    EXPECT_EQ(board.pieces[Black][Queen], squareBit(E4));
    EXPECT_EQ(board.promoted, 0u);
    EXPECT_EQ(board.pieceIds[E4], 9);
    EXPECT_EQ(board.key, sideKey ^ pieceSquareKey(BlackQueen, E4));
    EXPECT_EQ(board.key, board.fullKey());

    board.setPiece(E4, NoPiece, 5);
    EXPECT_EQ(board.squares[E4], NoPiece);
    EXPECT_EQ(board.occupied, 0u);
    EXPECT_EQ(board.byColor[Black], 0u);
    EXPECT_EQ(board.pieceIds[E4], 0);
    EXPECT_EQ(board.key, sideKey);
}

// Published book keys of a short sequence of positions; they cover side,
// castling rights and en passant with and without a capturing pawn.
TEST(BoardKeys, PublishedBookKeys) {
    struct Case {
        const char* fen;
        uint64_t key;
    };
    const Case cases[] = {
        {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 0x463B96181691FC9CULL},
        {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1", 0x823C9B50FD114196ULL},
        {"rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 2", 0x0756B94461C50FB0ULL},
        {"rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR b KQkq - 0 2", 0x662FAFB965DB29D4ULL},
        {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", 0x22A48B5A8E47FF78ULL},
        {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR b kq - 0 3", 0x652A607CA3F242C1ULL},
        {"rnbq1bnr/ppp1pkpp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR w - - 0 4", 0x00FDD303C946BDD9ULL},
        {"rnbqkbnr/p1pppppp/8/8/PpP4P/8/1P1PPPP1/RNBQKBNR b KQkq c3 0 3", 0x3C8123EA7B067637ULL},
        {"rnbqkbnr/p1pppppp/8/8/P6P/R1p5/1P1PPPP1/1NBQKBNR b Kkq - 0 4", 0x5C3F9B829B279560ULL},
    };
    for (const Case& c : cases) {
        Board board;
        ASSERT_TRUE(board.setFen(c.fen)) << c.fen;
        EXPECT_EQ(board.key, c.key) << c.fen;
        EXPECT_EQ(board.fullKey(), c.key) << c.fen;
    }
}

TEST(BoardKeys, PartsOfTheKey) {
    Board board;
    board.setStartPosition();
    EXPECT_EQ(board.pieceKey(), 0xC5D79D196E37D67CULL);
    EXPECT_EQ(board.stateKey(), sideKey ^ castlingKey[0] ^ castlingKey[1] ^ castlingKey[2] ^ castlingKey[3]);
    EXPECT_EQ(board.maskedKey(~Bitboard(0)), board.key);
    EXPECT_EQ(board.maskedKey(0), board.stateKey());
    EXPECT_EQ(board.maskedKey(0, false), 0u);
    uint64_t whiteRooks = pieceSquareKey(WhiteRook, A1) ^ pieceSquareKey(WhiteRook, H1);
    EXPECT_EQ(board.maskedKey(squareBit(A1) | squareBit(H1) | squareBit(E4), false), whiteRooks);
    EXPECT_EQ(board.maskedKey(squareBit(A1) | squareBit(H1)), whiteRooks ^ board.stateKey());
}

TEST(BoardKeys, CastlingBitsUseTheirOwnKeys) {
    Board board;
    board.setCastlingRights(BlackShort);
    EXPECT_EQ(board.key, sideKey ^ castlingKey[2]);
    board.setCastlingRights(WhiteLong | BlackShort);
    EXPECT_EQ(board.key, sideKey ^ castlingKey[1] ^ castlingKey[2]);
    board.setCastlingRights(BlackLong);
    EXPECT_EQ(board.key, sideKey ^ castlingKey[3]);
    board.setSideToMove(Black);
    EXPECT_EQ(board.key, castlingKey[3]);
    board.setSideToMove(Black);
    EXPECT_EQ(board.key, castlingKey[3]);
}

TEST(BoardKeys, EnPassantFileOnlyWhenCapturable) {
    Board board;
    board.setPiece(E4, WhitePawn);
    const uint64_t placed = board.key;
    board.setEnPassant(E3);  // no black pawn beside e4
    EXPECT_EQ(board.enPassantSquare, E3);
    EXPECT_FALSE(board.enPassantCapturable);
    EXPECT_EQ(board.key, placed);

    board.setPiece(D4, BlackPawn);
    const uint64_t withCapturer = board.key;
    board.setEnPassant(E3);
    EXPECT_TRUE(board.enPassantCapturable);
    EXPECT_EQ(board.key, withCapturer ^ enPassantKey(4));
    board.setEnPassant(NoSquare);
    EXPECT_FALSE(board.enPassantCapturable);
    EXPECT_EQ(board.key, withCapturer);

    // Rank 6: a white pawn beside the black pawn captures.
    board.setPiece(C5, BlackPawn);
    board.setPiece(B5, WhitePawn);
    const uint64_t before = board.key;
    board.setEnPassant(C6);
    EXPECT_TRUE(board.enPassantCapturable);
    EXPECT_EQ(board.key, before ^ enPassantKey(2));
    EXPECT_EQ(board.key, board.fullKey());
}

TEST(BoardKeys, PocketsCountOnlyInCrazyhouse) {
    Board house(Crazyhouse);
    house.addPocket(WhiteKnight);
    house.addPocket(WhiteKnight);
    house.addPocket(BlackPawn);
    EXPECT_EQ(house.key, sideKey ^ (2 * pocketKey[WhiteKnight]) ^ pocketKey[BlackPawn]);
    EXPECT_EQ(house.key, house.fullKey());
    house.removePocket(WhiteKnight);
    house.setPocketCount(BlackPawn, 5);
    EXPECT_EQ(house.key, sideKey ^ pocketKey[WhiteKnight] ^ (5 * pocketKey[BlackPawn]));
    EXPECT_EQ(house.pocketCount(BlackPawn), 5);

    Board standard;
    standard.addPocket(WhiteKnight);
    EXPECT_EQ(standard.key, sideKey);
    EXPECT_EQ(standard.fullKey(), sideKey);
}

TEST(VariantRules, ResetKeepsTheVariant) {
    Board board(ThreeCheck);
    board.checksRemaining = {1, 2};
    board.reset();
    EXPECT_EQ(board.variant, ThreeCheck);
    EXPECT_TRUE(board.variantRules.countsChecks);
    EXPECT_EQ(board.checksRemaining, (std::array<uint8_t, 2>{3, 3}));
    board.setVariant(KingOfTheHill);
    board.reset();
    EXPECT_EQ(board.goalSquares, 0x1818000000ULL);
    EXPECT_EQ(board.checksRemaining, (std::array<uint8_t, 2>{0, 0}));
}

}  // namespace
}  // namespace tarnfold
