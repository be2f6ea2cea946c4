#include "chess/attacks.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "chess/names.h"

namespace tarnfold {
namespace {

// Reference answers from coordinates alone, deliberately unlike the tables'
// own construction.
Bitboard walk(Square from, int fileStep, int rankStep, Bitboard occupied) {
    Bitboard reached = 0;
    int file = from % 8, rank = from / 8;
    while (true) {
        file += fileStep;
        rank += rankStep;
        if (file < 0 || file > 7 || rank < 0 || rank > 7) return reached;
        reached |= Bitboard(1) << (rank * 8 + file);
        if (occupied >> (rank * 8 + file) & 1) return reached;
    }
}

Bitboard lineWalk(LineKind kind, Square from, Bitboard occupied) {
    static const int steps[4][2] = {{0, 1}, {1, 0}, {1, 1}, {-1, 1}};
    const int* step = steps[static_cast<int>(kind)];
    return walk(from, step[0], step[1], occupied) | walk(from, -step[0], -step[1], occupied);
}

Bitboard targetsWhere(Square from, bool (*accept)(int fileDelta, int rankDelta)) {
    Bitboard set = 0;
    for (int to = 0; to < 64; ++to)
        if (accept(to % 8 - from % 8, to / 8 - from / 8)) set |= Bitboard(1) << to;
    return set;
}

TEST(Attacks, LeapersMatchCoordinateRules) {
    for (Square s = A1; s < NoSquare; ++s) {
        SCOPED_TRACE(squareName(s));
        EXPECT_EQ(knightAttacks[s], targetsWhere(s, [](int df, int dr) { return std::abs(df * dr) == 2; }));
        EXPECT_EQ(kingAttacks[s],
                  targetsWhere(s, [](int df, int dr) { return std::max(std::abs(df), std::abs(dr)) == 1; }));
        EXPECT_EQ(pawnAttacks[White][s],
                  targetsWhere(s, [](int df, int dr) { return dr == 1 && std::abs(df) == 1; }));
        EXPECT_EQ(pawnAttacks[Black][s],
                  targetsWhere(s, [](int df, int dr) { return dr == -1 && std::abs(df) == 1; }));
    }
    EXPECT_EQ(pawnAttacks[Black][A1], 0u);
    EXPECT_EQ(pawnAttacks[White][A1], squareBit(B2));
    EXPECT_EQ(pawnAttacks[White][H1], squareBit(G2));
    for (Square s = A8; s <= H8; ++s) EXPECT_EQ(pawnAttacks[White][s], 0u);
    EXPECT_EQ(popCount(knightAttacks[A1]), 2);
    EXPECT_EQ(popCount(knightAttacks[E4]), 8);
    EXPECT_EQ(squareListText(kingAttacks[H8], false), "g7,h7,g8");
}

TEST(Attacks, RaysRunToTheEdgeInTableOrder) {
    for (int d = 0; d < rayDirectionCount; ++d)
        for (Square s = A1; s < NoSquare; ++s)
            EXPECT_EQ(rayAttacks[d][s], walk(s, rayFileStep[d], rayRankStep[d], 0))
                << directionName(Direction(d));
    EXPECT_EQ(squareListText(rayAttacks[Right][E4], false), "f4,g4,h4");
    EXPECT_EQ(squareListText(rayAttacks[NorthWest][E4], false), "d5,c6,b7,a8");
    EXPECT_EQ(squareListText(rayAttacks[SouthEast][E4], false), "h1,g2,f3");
    EXPECT_EQ(rayAttacks[Down][E1], 0u);
    // Upward rays find their nearest piece at the lowest bit, the others at the highest.
    const Bitboard occupied = squareBit(E6) | squareBit(E7) | squareBit(E2) | squareBit(E1);
    EXPECT_EQ(lowestSquare(rayAttacks[Up][E4] & occupied), E6);
    EXPECT_EQ(highestSquare(rayAttacks[oppositeDirection(Up)][E4] & occupied), E2);
}

TEST(Attacks, BetweenInclusiveMatchesWalks) {
    EXPECT_EQ(popCount(betweenInclusive[A1][H8]), 8);
    EXPECT_EQ(betweenInclusive[A1][B3], 0u);
    EXPECT_EQ(betweenInclusive[E4][E4], squareBit(E4));
    EXPECT_EQ(squareListText(betweenInclusive[C1][F4], false), "c1,d2,e3,f4");
    for (Square a = A1; a < NoSquare; ++a) {
        for (Square b = A1; b < NoSquare; ++b) {
            Bitboard expected = a == b ? squareBit(a) : 0;
            for (int d = 0; d < rayDirectionCount; ++d) {
                Bitboard path = walk(a, rayFileStep[d], rayRankStep[d], squareBit(b));
                if (contains(path, b)) expected = path | squareBit(a);
            }
            EXPECT_EQ(betweenInclusive[a][b], expected) << squareName(a) << "-" << squareName(b);
            EXPECT_EQ(betweenInclusive[a][b], betweenInclusive[b][a]);
        }
    }
}

TEST(Attacks, MasksLeaveOutTheSquareAndBothEdges) {
    EXPECT_EQ(squareListText(lineLookups[E4][int(LineKind::File)].mask, false), "e2,e3,e5,e6,e7");
    EXPECT_EQ(squareListText(lineLookups[A1][int(LineKind::File)].mask, false), "a2,a3,a4,a5,a6,a7");
    EXPECT_EQ(lineLookups[A1][int(LineKind::AntiDiagonal)].mask, 0u);
    for (Square s = A1; s < NoSquare; ++s)
        for (int kind = 0; kind < lineKindCount; ++kind) EXPECT_LE(popCount(lineLookups[s][kind].mask), 6);
    // A blocker on the edge square is reached although the mask leaves it out,
    // and a piece beyond a blocker is not.
    EXPECT_EQ(lineAttacks(LineKind::File, E4, squareBit(E8) | squareBit(E1)),
              lineWalk(LineKind::File, E4, 0));
    EXPECT_EQ(squareListText(rookAttacks(A1, squareBit(A8) | squareBit(H1)), false),
              "b1,c1,d1,e1,f1,g1,h1,a2,a3,a4,a5,a6,a7,a8");
    EXPECT_EQ(squareListText(bishopAttacks(C1, squareBit(E3) | squareBit(F4)), false), "b2,d2,a3,e3");
    EXPECT_EQ(lineAttacks(LineKind::AntiDiagonal, A1, ~Bitboard(0)), 0u);
}

TEST(Attacks, SliderLookupsMatchWalksForRandomOccupancies) {
    std::mt19937_64 random(20240611);
    for (Square s = A1; s < NoSquare; ++s) {
        for (int trial = 0; trial < 3000; ++trial) {
            // Vary the density from nearly full to nearly empty boards.
            Bitboard occupied = random();
            for (int thin = trial % 4; thin > 0; --thin) occupied &= random();
            Bitboard expected[lineKindCount];
            for (int kind = 0; kind < lineKindCount; ++kind) {
                expected[kind] = lineWalk(LineKind(kind), s, occupied);
                ASSERT_EQ(lineAttacks(LineKind(kind), s, occupied), expected[kind])
                    << squareName(s) << " kind " << kind << " occupancy " << std::hex << occupied;
            }
            const Bitboard rook = expected[0] | expected[1], bishop = expected[2] | expected[3];
            ASSERT_EQ(rookAttacks(s, occupied), rook);
            ASSERT_EQ(bishopAttacks(s, occupied), bishop);
            ASSERT_EQ(queenAttacks(s, occupied), rook | bishop);
        }
    }
}

}  // namespace
}  // namespace tarnfold
