#pragma once

// Constant attack tables. Leapers and rays are plain tables; sliders are
// looked up per line (file, rank, diagonal, anti-diagonal) with one six-bit
// multiplicative index each, so a single line's reach is as cheap as a
// piece's and pin tests can ask for one line alone.

#include <array>
#include <cstddef>

#include "chess/bitboard.h"
#include "chess/types.h"

namespace tarnfold {

namespace detail {

// Squares from (file, rank) stepping by (fileStep, rankStep) up to the edge,
// stopping after the first occupied square; the start square is excluded.
constexpr Bitboard slide(int file, int rank, int fileStep, int rankStep, Bitboard occupied) {
    Bitboard reached = 0;
    for (file += fileStep, rank += rankStep; onBoard(file, rank); file += fileStep, rank += rankStep) {
        Square square = makeSquare(file, rank);
        reached |= squareBit(square);
        if (contains(occupied, square)) break;
    }
    return reached;
}

template <std::size_t N>
constexpr std::array<Bitboard, 64> leaperTable(const int (&steps)[N][2]) {
    std::array<Bitboard, 64> table{};
    for (int square = 0; square < 64; ++square) {
        for (const auto& step : steps) {
            int file = fileOf(Square(square)) + step[0], rank = rankOf(Square(square)) + step[1];
            if (onBoard(file, rank)) table[square] |= squareBit(makeSquare(file, rank));
        }
    }
    return table;
}

constexpr int knightSteps[8][2] = {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
constexpr int kingSteps[8][2] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};
constexpr int whitePawnSteps[2][2] = {{-1, 1}, {1, 1}};
constexpr int blackPawnSteps[2][2] = {{-1, -1}, {1, -1}};

constexpr std::array<std::array<Bitboard, 64>, rayDirectionCount> rayTable() {
    std::array<std::array<Bitboard, 64>, rayDirectionCount> table{};
    for (int ray = 0; ray < rayDirectionCount; ++ray)
        for (int square = 0; square < 64; ++square)
            table[ray][square] =
                slide(fileOf(Square(square)), rankOf(Square(square)), rayFileStep[ray], rayRankStep[ray], 0);
    return table;
}

}  // namespace detail

// Capture targets of a pawn of the colour on the square, defined on every
// rank. Read with the other colour it gives the squares that attack the square.
inline constexpr std::array<std::array<Bitboard, 64>, 2> pawnAttacks = {
    detail::leaperTable(detail::whitePawnSteps), detail::leaperTable(detail::blackPawnSteps)};
inline constexpr std::array<Bitboard, 64> knightAttacks = detail::leaperTable(detail::knightSteps);
inline constexpr std::array<Bitboard, 64> kingAttacks = detail::leaperTable(detail::kingSteps);

// rayAttacks[direction 0..7][square]: everything up to the edge, square excluded.
inline constexpr std::array<std::array<Bitboard, 64>, rayDirectionCount> rayAttacks = detail::rayTable();

// All squares from a to b, both included, when they share a line; {a} when
// a == b; otherwise empty.
extern const std::array<std::array<Bitboard, 64>, 64> betweenInclusive;

enum class LineKind : uint8_t { File = 0, Rank = 1, Diagonal = 2, AntiDiagonal = 3 };

inline constexpr int lineKindCount = 4;

// The mask leaves out the square itself and the edge square at each end: an
// edge square is always reached whether occupied or not, so it cannot change
// the result. That keeps every mask at six bits or fewer.
struct LineLookup {
    Bitboard mask;
    uint64_t multiplier;
    std::array<Bitboard, 64> attacks;
};

// Indexed [square][kind] so that the two lines of a rook or bishop lookup sit
// next to each other. Filled at start-up by a static initializer that runs
// before all initializers of default priority, so those may use the slider
// lookups; an initializer given an explicit priority of 101 or less may not.
extern const std::array<std::array<LineLookup, lineKindCount>, 64> lineLookups;

inline Bitboard lineAttacks(LineKind kind, Square square, Bitboard occupancy) {
    const LineLookup& line = lineLookups[square][static_cast<std::size_t>(kind)];
    return line.attacks[((occupancy & line.mask) * line.multiplier) >> 58];
}

inline Bitboard rookAttacks(Square square, Bitboard occupancy) {
    return lineAttacks(LineKind::File, square, occupancy) | lineAttacks(LineKind::Rank, square, occupancy);
}

inline Bitboard bishopAttacks(Square square, Bitboard occupancy) {
    return lineAttacks(LineKind::Diagonal, square, occupancy) |
           lineAttacks(LineKind::AntiDiagonal, square, occupancy);
}

inline Bitboard queenAttacks(Square square, Bitboard occupancy) {
    return rookAttacks(square, occupancy) | bishopAttacks(square, occupancy);
}

}  // namespace tarnfold
