#pragma once

// Piece designators: the literal for a set of squares, such as Ra1,
// [RQ]a-h1-2, a-h4, P, . and _. The scanner runs twice, once in the token
// reader so that a designator is a single token, and once more when the node
// is built; evaluation is then a handful of bitboard operations.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "chess/types.h"

namespace tarnfold::zmf {

// Bit i of a piece mask stands for letter i of this text: white pawn to king,
// black pawn to king, any white piece, any black piece, empty square.
inline constexpr std::string_view pieceMaskLetters = "PNBRQKpnbrqkAa_";

inline constexpr int anyWhitePieceBit = 12;
inline constexpr int anyBlackPieceBit = 13;
inline constexpr int emptySquareBit = 14;

// What a designator without a piece part stands for: A, a and _ together.
constexpr std::uint16_t anyPieceOrEmptyMask = 0x7000;

struct DesignatorScan {
    std::size_t length = 0;                  // 0: no designator here
    std::optional<Bitboard> squares;         // absent: all 64 squares
    std::optional<std::uint16_t> pieceMask;  // absent: anyPieceOrEmptyMask
};

// Reads the designator that starts at the position. Bytes beyond the end of
// the text read as NUL.
DesignatorScan scanPieceDesignator(std::string_view text, std::size_t position);

// The letters of the set bits in bit order ("RQ", "Aa_"); "" for none.
std::string pieceMaskText(std::uint16_t mask);

// A designator's text for folded sets, as a transformed copy prints:
// "ra8", "[Aa]a-h1-2", "[a1,c3]".
std::string designatorText(std::optional<Bitboard> squares, std::optional<std::uint16_t> pieceMask);

// The squares a designator selects on a board. BoardLike has
// pieces[colour][type], byColor[colour] and occupied.
template <class BoardLike>
Bitboard pieceDesignatorValue(std::optional<Bitboard> squares, std::optional<std::uint16_t> pieceMask,
                              const BoardLike& board) {
    unsigned remaining = pieceMask.value_or(anyPieceOrEmptyMask) & 0x7FFFu;
    Bitboard selected = 0;
    while (remaining != 0) {
        int bit = std::countr_zero(remaining);
        remaining &= remaining - 1;
        if (bit == emptySquareBit) {
            selected |= ~board.occupied;
        } else if (bit == anyWhitePieceBit) {
            selected |= board.byColor[White];
        } else if (bit == anyBlackPieceBit) {
            selected |= board.byColor[Black];
        } else {
            selected |= board.pieces[bit < 6 ? White : Black][bit % 6];
        }
    }
    return selected & squares.value_or(~Bitboard(0));
}

}  // namespace tarnfold::zmf
