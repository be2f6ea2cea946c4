#include "query/piece_designator.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>

#include "chess/bitboard.h"

namespace tarnfold::zmf {
namespace {

constexpr Bitboard allSquares = ~Bitboard(0);

Bitboard squaresOf(std::initializer_list<Square> squares) {
    Bitboard set = 0;
    for (Square square : squares) set |= squareBit(square);
    return set;
}

std::uint16_t maskOf(std::string_view letters) {
    std::uint16_t mask = 0;
    for (char letter : letters) mask |= static_cast<std::uint16_t>(1u << pieceMaskLetters.find(letter));
    return mask;
}

struct ScanCase {
    std::string text;
    std::size_t position;
    std::size_t length;
    std::optional<Bitboard> squares;
    std::optional<std::uint16_t> mask;
};

TEST(PieceDesignator, ScansTheGrammar) {
    const std::nullopt_t none = std::nullopt;
    const ScanCase cases[] = {
        {"a1-8", 0, 4, fileMask[0], none},
        {"a-h1", 0, 4, rankMask[0], none},
        {"a-h1-8", 0, 6, allSquares, none},
        {"h-a8-1", 0, 6, allSquares, none},
        {"c-e5-3", 0, 6,
         (fileMask[2] | fileMask[3] | fileMask[4]) & (rankMask[2] | rankMask[3] | rankMask[4]), none},
        {"a", 0, 1, none, maskOf("a")},
        {"a1", 0, 2, squaresOf({A1}), none},
        // A piece part needs a whole range behind it: a lone rank digit is none.
        {"A1", 0, 0, none, none},
        {"Aa1", 0, 3, squaresOf({A1}), maskOf("A")},
        {"Ra", 0, 0, none, none},
        {"Rh", 0, 0, none, none},
        {"Rh4", 0, 3, squaresOf({H4}), maskOf("R")},
        {"b", 0, 1, none, maskOf("b")},
        {"[]", 0, 2, none, std::uint16_t(0)},
        {"[a1,b2,c3]", 0, 10, squaresOf({A1, B2, C3}), none},
        {"[a1,b2", 0, 0, none, none},
        {"[a1,]", 0, 0, none, none},
        {"[a1]b", 0, 4, squaresOf({A1}), none},
        {"[RQ", 0, 0, none, none},
        {"[RX]", 0, 0, none, none},
        {"x[b]", 1, 3, none, maskOf("b")},
        {"a1-", 0, 2, squaresOf({A1}), none},
        {"a1-9", 0, 2, squaresOf({A1}), none},
        {"e4-e5", 0, 2, squaresOf({E4}), none},
        {"a-1", 0, 1, none, maskOf("a")},
        {"a1b", 0, 0, none, none},
        {"a9", 0, 0, none, none},
        {"_", 0, 1, none, maskOf("_")},
        {"_a1", 0, 3, squaresOf({A1}), maskOf("_")},
        {"_x", 0, 0, none, none},
        {".", 0, 1, none, none},
        {".a1", 0, 1, none, none},
        {".a1", 1, 2, squaresOf({A1}), none},
        {"[RQ]a-h1-2", 0, 10, rankMask[0] | rankMask[1], maskOf("RQ")},
        {"[Aa_][a1,h8]", 0, 12, squaresOf({A1, H8}), anyPieceOrEmptyMask},
        {"K[e1,g1-2]", 0, 10, squaresOf({E1, G1, G2}), maskOf("K")},
        {"[RQ]a1b", 0, 4, none, maskOf("RQ")},
        {"Rook", 0, 0, none, none},
        {"Ab", 0, 0, none, none},
        {"A$", 0, 0, none, none},
        {"A)", 0, 1, none, maskOf("A")},
        {"x", 0, 0, none, none},
        {"", 0, 0, none, none},
    };
    for (const ScanCase& c : cases) {
        SCOPED_TRACE(c.text + " at " + std::to_string(c.position));
        DesignatorScan scan = scanPieceDesignator(c.text, c.position);
        EXPECT_EQ(scan.length, c.length);
        if (c.length == 0) continue;
        EXPECT_EQ(scan.squares, c.squares);
        EXPECT_EQ(scan.pieceMask, c.mask);
    }
}

TEST(PieceDesignator, MaskTextFollowsBitOrder) {
    EXPECT_EQ(pieceMaskText(maskOf("QR")), "RQ");
    EXPECT_EQ(pieceMaskText(anyPieceOrEmptyMask), "Aa_");
    EXPECT_EQ(pieceMaskText(maskOf("kP")), "Pk");
    EXPECT_EQ(pieceMaskText(0), "");
}

struct TestBoard {
    Bitboard pieces[2][6] = {};
    Bitboard byColor[2] = {};
    Bitboard occupied = 0;

    void put(Color color, PieceType type, Square square) {
        pieces[color][type] |= squareBit(square);
        byColor[color] |= squareBit(square);
        occupied |= squareBit(square);
    }
};

TEST(PieceDesignator, ValueOnABoard) {
    TestBoard board;
    board.put(White, Rook, A1);
    board.put(White, Queen, D1);
    board.put(White, King, E1);
    board.put(White, Pawn, E2);
    board.put(Black, King, E8);
    board.put(Black, Queen, D8);
    board.put(Black, Pawn, D7);
    const Bitboard white = squaresOf({A1, D1, E1, E2});
    const Bitboard black = squaresOf({E8, D8, D7});
    const std::nullopt_t none = std::nullopt;

    EXPECT_EQ(pieceDesignatorValue(none, maskOf("_"), board), allSquares & ~(white | black));
    EXPECT_EQ(pieceDesignatorValue(none, maskOf("A"), board), white);
    EXPECT_EQ(pieceDesignatorValue(none, maskOf("a"), board), black);
    EXPECT_EQ(pieceDesignatorValue(none, maskOf("RQ"), board), squaresOf({A1, D1}));
    EXPECT_EQ(pieceDesignatorValue(none, maskOf("Pp"), board), squaresOf({E2, D7}));
    EXPECT_EQ(pieceDesignatorValue(none, maskOf("qK"), board), squaresOf({D8, E1}));
    EXPECT_EQ(pieceDesignatorValue(none, maskOf("NBnbrk"), board), squaresOf({E8}));
    EXPECT_EQ(pieceDesignatorValue(squaresOf({A1}), maskOf("R"), board), squaresOf({A1}));
    EXPECT_EQ(pieceDesignatorValue(squaresOf({H1}), maskOf("R"), board), 0u);
    EXPECT_EQ(pieceDesignatorValue(rankMask[0], maskOf("_a"), board), rankMask[0] & ~white);
    // No piece part: anything or nothing, so the squares themselves.
    EXPECT_EQ(pieceDesignatorValue(none, none, board), allSquares);
    EXPECT_EQ(pieceDesignatorValue(fileMask[4], none, board), fileMask[4]);
    // [] selects nothing, whatever the squares.
    EXPECT_EQ(pieceDesignatorValue(none, std::uint16_t(0), board), 0u);
    EXPECT_EQ(pieceDesignatorValue(rankMask[0], std::uint16_t(0), board), 0u);
}

}  // namespace
}  // namespace tarnfold::zmf
