#include "query/transform.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "chess/bitboard.h"
#include "chess/names.h"
#include "query/piece_designator.h"

namespace tarnfold::zmf {
namespace {

std::vector<TransformEntry> boardSymmetries() {
    std::vector<TransformEntry> entries = transformFamily(TransformKind::Flip);
    std::vector<TransformEntry> colour = transformFamily(TransformKind::FlipColor);
    entries.insert(entries.end(), colour.begin(), colour.end());
    return entries;
}

Square mapOne(const TransformEntry& entry, Square square) {
    bool voided = false;
    Bitboard mapped = applyTransformSquares(std::vector<TransformEntry>{entry}, squareBit(square), voided);
    return mapped == 0 ? NoSquare : lowestSquare(mapped);
}

TEST(Transform, FamiliesHaveTheirSizesAndTheIdentityFirst) {
    const std::pair<TransformKind, std::size_t> sizes[] = {
        {TransformKind::Flip, 8},           {TransformKind::FlipColor, 2},   {TransformKind::FlipHorizontal, 2},
        {TransformKind::FlipVertical, 2},   {TransformKind::ReverseColor, 1}, {TransformKind::Rotate45, 8},
        {TransformKind::Rotate90, 4},       {TransformKind::Shift, 225},     {TransformKind::ShiftHorizontal, 15},
        {TransformKind::ShiftVertical, 15}, {TransformKind::NoTransform, 1},
    };
    for (auto [kind, size] : sizes) {
        std::vector<TransformEntry> family = transformFamily(kind);
        EXPECT_EQ(family.size(), size) << int(kind);
        bool identityFirst = kind != TransformKind::ReverseColor && kind != TransformKind::NoTransform;
        if (identityFirst) {
            EXPECT_EQ(transformName(family.front()), "identity") << int(kind);
        }
    }
    // rotate90 turns a1 to every corner, once each.
    Bitboard corners = 0;
    for (const TransformEntry& entry : transformFamily(TransformKind::Rotate90)) corners |= squareBit(mapOne(entry, A1));
    EXPECT_EQ(corners, squareBit(A1) | squareBit(H1) | squareBit(A8) | squareBit(H8));
}

TEST(Transform, NamesOfEveryFlipAndOfShifts) {
    std::vector<std::string> names;
    for (const TransformEntry& entry : transformFamily(TransformKind::Flip))
        names.push_back(transformName(entry) + "=" + std::string(squareName(mapOne(entry, B1))));
    // The name must say where the mapping really takes b1.
    EXPECT_EQ(names, (std::vector<std::string>{"identity=b1", "reflect_h=b8", "reflect_v=g1", "rotate180=g8",
                                               "reflect_a1h8=a2", "counterclockwise90=h2", "clockwise90=a7",
                                               "reflect_a8h1=h7"}));
    TransformEntry entry;
    entry.fileShift = -2;
    entry.rankShift = 3;
    entry.colorSwap = 1;
    EXPECT_EQ(transformName(entry), "left^2 up^3 invertcolor");
    entry = TransformEntry{};
    entry.rankShift = -1;
    entry.rotate45 = 3;
    EXPECT_EQ(transformName(entry), "down^1 rotate45^3");
}

TEST(Transform, ShiftsKeepWholeLinesAndVoidWhatLeavesTheBoard) {
    TransformEntry right2;
    right2.fileShift = 2;
    std::vector<TransformEntry> stack{right2};
    bool voided = false;
    // A whole rank does not move sideways; a file does.
    EXPECT_EQ(applyTransformSquares(stack, rankMask[0], voided), rankMask[0]);
    EXPECT_EQ(applyTransformSquares(stack, fileMask[0], voided), fileMask[2]);
    EXPECT_FALSE(voided);
    // g1 and h1 fall off: dropped, and without restrict the copy lives.
    EXPECT_EQ(applyTransformSquares(stack, squareBit(F1) | squareBit(G1) | squareBit(H1), voided), squareBit(H1));
    EXPECT_FALSE(voided);
    stack[0].restrict = 1;
    EXPECT_EQ(applyTransformSquares(stack, squareBit(F1) | squareBit(G1), voided), squareBit(H1));
    EXPECT_TRUE(voided);
    // Everything lost is void even without restrict.
    voided = false;
    stack[0].restrict = 0;
    EXPECT_EQ(applyTransformSquares(stack, squareBit(H4), voided), Bitboard(0));
    EXPECT_TRUE(voided);
    // notransform shields what is read inside it from the entries below.
    TransformEntry stop;
    stop.stop = 1;
    voided = false;
    EXPECT_EQ(applyTransformSquares(std::vector<TransformEntry>{right2, stop}, squareBit(H4), voided), squareBit(H4));
    EXPECT_FALSE(voided);
}

TEST(Transform, PiecesSquareColoursAndDirectionsAgreeWithTheSquares) {
    for (const TransformEntry& entry : boardSymmetries()) {
        const std::vector<TransformEntry> stack{entry};
        const std::string name = transformName(entry);
        // Square colours swap exactly when the mapping moves a square to the other colour.
        for (Square square = A1; square <= H8; ++square)
            ASSERT_EQ(squareColor(mapOne(entry, square)) != squareColor(square), squareColoursSwapped(stack))
                << name << " " << squareName(square);
        // A ray from d4 lands, mapped, on the ray the direction mapping names.
        for (int ray = 0; ray < rayDirectionCount; ++ray) {
            const int fileStep[] = {1, 0, 1, -1, -1, 0, -1, 1}, rankStep[] = {0, 1, 1, 1, 0, -1, -1, -1};
            Square from = mapOne(entry, D4), to = mapOne(entry, makeSquare(3 + fileStep[ray], 3 + rankStep[ray]));
            std::array<bool, rayDirectionCount> one{};
            one[ray] = true;
            std::array<bool, rayDirectionCount> mapped = applyTransformRays(stack, one);
            int turned = 0;
            while (!mapped[turned]) ++turned;
            EXPECT_EQ(fileOf(to) - fileOf(from), fileStep[turned]) << name << " ray " << ray;
            EXPECT_EQ(rankOf(to) - rankOf(from), rankStep[turned]) << name << " ray " << ray;
        }
        // Piece letters change colour with the colour swap alone.
        std::uint16_t mapped = applyTransformPieces(stack, 0x1001 | (1u << 14));  // P, A, _
        EXPECT_EQ(mapped, entry.colorSwap ? std::uint16_t(0x2040 | (1u << 14)) : std::uint16_t(0x1001 | (1u << 14)));
    }
    // Composite directions map onto keywords; eight turns of 45 degrees come back.
    const std::vector<TransformEntry> quarter{transformFamily(TransformKind::Rotate45)[2]};
    EXPECT_EQ(applyTransformDirection(quarter, Vertical), Horizontal);
    EXPECT_EQ(applyTransformDirection(quarter, MainDiagonal), OffDiagonal);
    EXPECT_EQ(applyTransformDirection(quarter, Orthogonal), Orthogonal);
    const std::vector<TransformEntry> eighth{transformFamily(TransformKind::Rotate45)[1]};
    EXPECT_EQ(applyTransformDirection(eighth, Up), NorthWest);
    EXPECT_EQ(applyTransformDirection(eighth, Orthogonal), Diagonal);
    // Two swaps cancel.
    const std::vector<TransformEntry> twice{transformFamily(TransformKind::ReverseColor)[0],
                                            transformFamily(TransformKind::ReverseColor)[0]};
    EXPECT_FALSE(coloursSwapped(twice));
}

TEST(Transform, FoldedDesignatorTextReadsBackAsTheSameSets) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 3000; ++round) {
        std::optional<Bitboard> squares;
        std::optional<std::uint16_t> mask;
        if (round % 3 != 0) {
            // Sparse, dense and line-shaped sets.
            Bitboard bits = random();
            if (round % 5 == 1) bits &= random();
            if (round % 7 == 2) bits = rankMask[round % 8] | fileMask[(round / 8) % 8];
            if (bits != 0) squares = bits;
        }
        if (round % 4 != 0) mask = std::uint16_t(random() & 0x7FFF);
        if (!squares && !mask) continue;
        std::string text = designatorText(squares, mask);
        DesignatorScan scan = scanPieceDesignator(text, 0);
        ASSERT_EQ(scan.length, text.size()) << text;
        EXPECT_EQ(scan.squares, squares) << text;
        EXPECT_EQ(scan.pieceMask, mask) << text;
    }
    EXPECT_EQ(designatorText(squareBit(A8), std::uint16_t(1u << 9)), "ra8");
    EXPECT_EQ(designatorText(rankMask[0] | rankMask[1], std::nullopt), "a-h1-2");
    EXPECT_EQ(designatorText(squareBit(A1) | squareBit(C3), std::uint16_t(0x3000)), "[Aa][a1,c3]");
}

}  // namespace
}  // namespace tarnfold::zmf
