#pragma once

// Masks and bit helpers for Bitboard. The scans and the population count are
// undefined in meaning for an empty set: every caller tests for empty first.

#include <array>
#include <bit>

#include "chess/types.h"

namespace tarnfold {

inline constexpr std::array<Bitboard, 8> fileMask = {
    0x0101010101010101ULL << 0, 0x0101010101010101ULL << 1, 0x0101010101010101ULL << 2,
    0x0101010101010101ULL << 3, 0x0101010101010101ULL << 4, 0x0101010101010101ULL << 5,
    0x0101010101010101ULL << 6, 0x0101010101010101ULL << 7,
};

inline constexpr std::array<Bitboard, 8> rankMask = {
    0xFFULL << 0,  0xFFULL << 8,  0xFFULL << 16, 0xFFULL << 24,
    0xFFULL << 32, 0xFFULL << 40, 0xFFULL << 48, 0xFFULL << 56,
};

constexpr Bitboard squareBit(Square square) { return Bitboard(1) << square; }
constexpr bool contains(Bitboard set, Square square) { return (set >> square) & 1; }

constexpr Square lowestSquare(Bitboard set) { return Square(std::countr_zero(set)); }
constexpr Square highestSquare(Bitboard set) { return Square(std::bit_width(set) - 1); }
constexpr Bitboard clearLowest(Bitboard set) { return set & (set - 1); }
constexpr int popCount(Bitboard set) { return std::popcount(set); }
constexpr bool moreThanOne(Bitboard set) { return clearLowest(set) != 0; }

// Removes the lowest square from the set and returns it.
constexpr Square popLowest(Bitboard& set) {
    Square square = lowestSquare(set);
    set = clearLowest(set);
    return square;
}

}  // namespace tarnfold
