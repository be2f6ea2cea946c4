#pragma once
// Transforms of the board: the flips, rotations, colour swaps and shifts by
// which one filter stands for a family of filters. Nothing here runs while
// games are read: the parser reads a transform's body once per entry of its
// family with the entry on a stack, and every designator, colour, square
// colour and direction read in the body is mapped through that stack at once.

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "chess/types.h"

namespace tarnfold::zmf {

// One mapping of board and colours. An entry of all zeros is the identity.
struct TransformEntry {
    std::uint8_t colorSwap = 0;    // swap the colours of piece letters
    std::uint8_t mirrorRanks = 0;  // rank r becomes 7 - r
    std::uint8_t mirrorFiles = 0;  // file f becomes 7 - f
    std::uint8_t transpose = 0;    // swap file and rank, after the flips
    std::int32_t fileShift = 0;
    std::int32_t rankShift = 0;
    std::uint8_t restrict = 0;   // a designator losing a square to a shift voids the copy
    std::uint32_t rotate45 = 0;  // 45-degree turns, for directions only
    std::uint8_t stop = 0;       // notransform: entries below do not apply through this one
    std::uint8_t reporting = 0;  // the first copy of a filter: its messages are shown

    bool isPureShift() const {
        return (fileShift != 0 || rankShift != 0) && !colorSwap && !mirrorRanks && !mirrorFiles && !transpose &&
               rotate45 == 0;
    }
    bool isShift() const { return fileShift != 0 || rankShift != 0; }
};

enum class TransformKind : std::uint8_t {
    Flip = 1,
    FlipColor = 2,
    FlipHorizontal = 3,
    FlipVertical = 4,
    ReverseColor = 5,
    Rotate45 = 6,
    Rotate90 = 7,
    Shift = 8,
    ShiftHorizontal = 9,
    ShiftVertical = 10,
    NoTransform = 11,
};

bool isShiftKind(TransformKind kind);

// The entries of a keyword's family, in the order their copies are read:
// the identity first wherever the family has one.
std::vector<TransformEntry> transformFamily(TransformKind kind);

// The entries that act on what is read now: from the innermost outward, up
// to and including the first that stops transformation.
std::span<const TransformEntry> activeEntries(std::span<const TransformEntry> stack);

// Maps a designator's squares through the stack, innermost entry first.
// Squares shifted off the board are dropped; `voided` is set when one is
// dropped under restrict, or when a non-empty set comes out empty.
Bitboard applyTransformSquares(std::span<const TransformEntry> stack, Bitboard squares, bool& voided);
// Maps a designator's piece letters: each colour swap on the stack trades
// white letters for black ones (P for p, A for a); the empty square stays.
std::uint16_t applyTransformPieces(std::span<const TransformEntry> stack, std::uint16_t mask);

// The eight rays that a direction keyword stands for, indexed by Direction.
std::array<bool, rayDirectionCount> directionRays(Direction direction);

// Whether the stack swaps the colours an odd number of times.
bool coloursSwapped(std::span<const TransformEntry> stack);
// Whether the stack turns light squares into dark ones.
bool squareColoursSwapped(std::span<const TransformEntry> stack);
// A direction keyword's direction turned and flipped by the stack; the
// composite directions (diagonal, vertical, ...) map onto each other.
Direction applyTransformDirection(std::span<const TransformEntry> stack, Direction direction);
// The same for a set of the eight rays, indexed by Direction.
std::array<bool, rayDirectionCount> applyTransformRays(std::span<const TransformEntry> stack,
                                                       std::array<bool, rayDirectionCount> rays);

// The name of an entry for currenttransform: "identity", "rotate180",
// "right^2 up^1 invertcolor", ...
std::string transformName(const TransformEntry& entry);

}  // namespace tarnfold::zmf
