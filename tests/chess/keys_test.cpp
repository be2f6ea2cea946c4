#include "chess/keys.h"

#include <gtest/gtest.h>

namespace tarnfold {
namespace {

TEST(Keys, PublishedConstantsAtTheirIndices) {
    EXPECT_EQ(random64[0], 0x9D39247E33776D41ULL);
    EXPECT_EQ(random64[1], 0x2AF7398005AAA5C7ULL);
    EXPECT_EQ(random64[2], 0x44DB015024623547ULL);
    EXPECT_EQ(random64[3], 0x9C15F73E62A76AE2ULL);
    EXPECT_EQ(pieceSquareKey(BlackPawn, A1), 0x9D39247E33776D41ULL);
    EXPECT_EQ(pieceSquareKey(BlackPawn, D1), 0x9C15F73E62A76AE2ULL);
    EXPECT_EQ(castlingKey[0], 0x31D71DCE64B2C310ULL);
    EXPECT_EQ(sideKey, 0xF8D626AAAF278509ULL);
    EXPECT_EQ(enPassantKey(7), random64[779]);
    EXPECT_EQ(pieceSquareKey(WhiteKing, H8), random64[767]);
    EXPECT_EQ(pocketKey[BlackPawn], 0x4C553B8FB462A6BAULL);
    EXPECT_EQ(pocketKey[WhiteKing], 0x6001660EBEDDD046ULL);
}

TEST(Keys, WholeTableMatchesTheReferenceData) {
    // Checksums of the 781 numbers of the reference list, taken in index order;
    // the second also catches numbers that trade places.
    uint64_t folded = 0, chained = 0;
    for (uint64_t value : random64) {
        folded ^= value;
        chained = chained * 0x100000001B3ULL ^ value;
    }
    EXPECT_EQ(folded, 0xEAA4DC0DD06542B6ULL);
    EXPECT_EQ(chained, 0xCEDA46E0371ABD1AULL);
}

}  // namespace
}  // namespace tarnfold
