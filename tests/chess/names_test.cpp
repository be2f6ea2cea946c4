#include "chess/names.h"

#include <gtest/gtest.h>

#include "chess/bitboard.h"

namespace tarnfold {
namespace {

TEST(Names, DirectionAndSquareNames) {
    EXPECT_EQ(directionName(SouthEast), "southeast");
    EXPECT_EQ(directionName(MainDiagonal), "maindiagonal");
    EXPECT_EQ(directionName(Direction(15)), "Invalid Direction");
    EXPECT_EQ(squareName(A1), "a1");
    EXPECT_EQ(squareName(E4), "e4");
    EXPECT_EQ(squareName(H8), "h8");
}

TEST(Names, SquareColorsAgreeWithTheMasks) {
    for (Square s = A1; s < NoSquare; ++s)
        EXPECT_EQ(contains(darkSquares, s), squareColor(s) == dark) << squareName(s);
    EXPECT_EQ(lightSquares | darkSquares, ~Bitboard(0));
}

TEST(Names, ParseSquare) {
    for (Square s = A1; s < NoSquare; ++s) EXPECT_EQ(parseSquare(squareName(s)), s);
    EXPECT_EQ(parseSquare("e4 x"), E4);
    EXPECT_EQ(parseSquare("h8\t"), H8);
    EXPECT_EQ(parseSquare("e4x"), NoSquare);
    EXPECT_EQ(parseSquare("E4"), NoSquare);
    EXPECT_EQ(parseSquare("e"), NoSquare);
    EXPECT_EQ(parseSquare(""), NoSquare);
    EXPECT_EQ(parseSquare("i1"), NoSquare);
    EXPECT_EQ(parseSquare("a9"), NoSquare);
    EXPECT_EQ(parseSquare("a0"), NoSquare);
}

TEST(Names, PieceLettersAndSymbols) {
    for (Piece p = BlackPawn; p <= NoPiece; ++p) {
        EXPECT_EQ(pieceFromChar(pieceChar(p)), p);
        if (p != NoPiece) {
            EXPECT_EQ(makePiece(pieceType(p), pieceColor(p)), p);
        }
    }
    EXPECT_EQ(pieceColor(WhiteRook), White);
    EXPECT_EQ(pieceType(BlackQueen), Queen);
    EXPECT_EQ(makePiece(Knight, White), WhiteKnight);
    EXPECT_EQ(pieceChar(Piece(200)), '.');
    EXPECT_EQ(pieceFromChar('x'), NoPiece);
    EXPECT_EQ(pieceFromChar('.'), NoPiece);
    EXPECT_EQ(pieceTypeFromChar('Q'), Queen);
    EXPECT_EQ(pieceTypeFromChar('P'), Pawn);
    EXPECT_EQ(pieceTypeFromChar('q'), NoPieceType);
    EXPECT_EQ(pieceTypeFromChar('\0'), NoPieceType);
    EXPECT_EQ(pieceTypeChar(King), 'K');
    EXPECT_EQ(pieceTypeChar(NoPieceType), '?');
    EXPECT_EQ(pieceSymbol(WhitePawn), "\xE2\x99\x99");
    EXPECT_EQ(pieceSymbol(BlackPawn), "\xE2\x99\x9F");
    EXPECT_EQ(pieceSymbol(WhiteKing), "\xE2\x99\x94");
    EXPECT_EQ(pieceSymbol(BlackKing), "\xE2\x99\x9A");
    EXPECT_EQ(pieceSymbol(NoPiece), ".");
}

TEST(Names, DirectionOrder) {
    for (int d = 0; d < rayDirectionCount; ++d) {
        const Direction ray = Direction(d), back = oppositeDirection(ray);
        EXPECT_EQ(rayFileStep[back], -rayFileStep[ray]);
        EXPECT_EQ(rayRankStep[back], -rayRankStep[ray]);
        // Upward rays raise the square number.
        EXPECT_EQ(runsUpward(ray), rayRankStep[ray] * 8 + rayFileStep[ray] > 0) << directionName(ray);
    }
}

TEST(Names, SetTexts) {
    EXPECT_EQ(squareListText(0, true), "");
    EXPECT_EQ(squareListText(squareBit(E4), true), "e4");
    const Bitboard set = squareBit(H8) | squareBit(A1) | squareBit(C2);
    EXPECT_EQ(squareListText(set, true), "a1, c2, h8");
    EXPECT_EQ(squareListText(set, false), "a1,c2,h8");
    EXPECT_EQ(bitboardDiagram(set),
              " . . . . . . . X\n"
              " . . . . . . . .\n"
              " . . . . . . . .\n"
              " . . . . . . . .\n"
              " . . . . . . . .\n"
              " . . . . . . . .\n"
              " . . X . . . . .\n"
              " X . . . . . . .\n");
}

TEST(Names, BitHelpers) {
    Bitboard set = squareBit(C2) | squareBit(G7) | squareBit(D5);
    EXPECT_EQ(highestSquare(set), G7);
    EXPECT_EQ(popLowest(set), C2);
    EXPECT_EQ(popLowest(set), D5);
    EXPECT_FALSE(moreThanOne(set));
    EXPECT_EQ(popCount(set), 1);
    EXPECT_EQ(popLowest(set), G7);
    EXPECT_EQ(set, 0u);
    EXPECT_EQ(makeSquare(4, 3), E4);
    EXPECT_EQ(fileOf(E4), 4);
    EXPECT_EQ(rankOf(E4), 3);
    EXPECT_EQ(otherColor(Black), White);
}

}  // namespace
}  // namespace tarnfold
