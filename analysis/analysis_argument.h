#pragma once

// The typed arguments of an analysis finding. A finding carries numbers, not
// text, so that the analysis never formats anything unless a query asks for
// the explanation; the type tag says how the number is to be read.

#include <cstdint>

#include "chess/types.h"

namespace tarnfold {

// The tag values are fixed: the last one covers every kind of value whose
// text the placeholder word alone decides (square colour, lateral side, a
// choice, a set of files).
enum class AnalysisArgumentType : uint8_t {
    Color = 0,
    Piece = 1,
    PieceType = 2,
    Bitboard = 3,
    Square = 4,
    Count = 5,
    Other = 6,
};

struct AnalysisArgument {
    AnalysisArgumentType type = AnalysisArgumentType::Other;
    uint64_t value = 0;

    bool operator==(const AnalysisArgument&) const = default;
};

// The wing a confined piece started on.
enum class Lateral : uint8_t { Queenside = 0, Kingside = 1 };

// A set of files, bit 0 being the a-file.
using FileSet = uint8_t;

constexpr AnalysisArgument arg(Color color) { return {AnalysisArgumentType::Color, color}; }
constexpr AnalysisArgument arg(Piece piece) { return {AnalysisArgumentType::Piece, piece}; }
constexpr AnalysisArgument arg(PieceType type) { return {AnalysisArgumentType::PieceType, type}; }
constexpr AnalysisArgument arg(Square square) { return {AnalysisArgumentType::Square, square}; }
constexpr AnalysisArgument arg(SquareColor color) { return {AnalysisArgumentType::Other, color}; }
constexpr AnalysisArgument arg(Lateral side) { return {AnalysisArgumentType::Other, uint64_t(side)}; }
constexpr AnalysisArgument arg(bool choice) { return {AnalysisArgumentType::Other, choice}; }
// Bitboards, counts and file sets are all plain integers, and an int would
// otherwise slip into the bool overload: they have makers of their own.
template <typename T>
AnalysisArgument arg(T) = delete;

constexpr AnalysisArgument bitboardArg(Bitboard squares) { return {AnalysisArgumentType::Bitboard, squares}; }
constexpr AnalysisArgument countArg(int64_t count) { return {AnalysisArgumentType::Count, uint64_t(count)}; }
constexpr AnalysisArgument fileSetArg(FileSet files) { return {AnalysisArgumentType::Other, files}; }

}  // namespace tarnfold
