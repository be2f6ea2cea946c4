#pragma once

// Constants from which position keys are built. The piece, castling, en
// passant and side keys are those of the PolyGlot book format, so a standard
// position's key is its book key; the pocket keys are this system's own.

#include <array>
#include <cstdint>

#include "chess/random64.h"
#include "chess/types.h"

namespace tarnfold {

constexpr uint64_t pieceSquareKey(Piece piece, Square square) { return random64[64 * piece + square]; }

// White short, White long, Black short, Black long.
inline constexpr std::array<uint64_t, 4> castlingKey = {random64[768], random64[769], random64[770],
                                                        random64[771]};

constexpr uint64_t enPassantKey(int file) { return random64[772 + file]; }

inline constexpr uint64_t sideKey = random64[780];

// One key per Piece for the pocket counts of crazyhouse.
inline constexpr std::array<uint64_t, 12> pocketKey = {
    0x4C553B8FB462A6BAULL, 0x8FD57ADA6B6A36B5ULL, 0xE42AA40A2D24726EULL, 0xCEDBA7C6CAD1B707ULL,
    0xC05F02DAAFE52784ULL, 0xDADEB31504402F14ULL, 0x8C5F08FAD730AE79ULL, 0x76C23F0556AB8AE3ULL,
    0x0E281AAEB8B83525ULL, 0xEEC73B6FF443FA1FULL, 0xDF2244BBDC993D2BULL, 0x6001660EBEDDD046ULL,
};

}  // namespace tarnfold
