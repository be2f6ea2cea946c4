#pragma once

// A move as one 32-bit number. Every consumer reads the same bit fields and
// moves compare as whole numbers, so two moves are equal only if every field
// is.

#include <cstdint>
#include <string>
#include <vector>

#include "chess/types.h"

namespace tarnfold {

// Edit codes of an editing step, kept in bits 22-25 of a move with isEdit.
enum EditCode : uint32_t { EditAdd = 1, EditRemove = 2, EditSwap = 3, EditFlip = 4 };

// Bit layout:
//   0-5   from        origin square; drops and null moves have from == to
//   6-11  to          target square; castling names the king's g or c square
//   12-15 captured    Piece taken, NoPiece (12) if none; 12 for en passant too
//   16    isShortCastle
//   17    isLongCastle
//   18    isDoubleStep
//   19    isEnPassant
//   20-23 promotion   Piece promoted to, NoPiece if none
//   24    isDrop
//   25    isNull      from == to == the mover's king
//   26    isReverse   take this move back from the current position
//   27    isEdit      an editing step; bits 22-25 then hold its EditCode
//   28-31 moved       Piece that moves
// Bit 27 changes what bits 16-25 mean, so every flag test also asks for it
// to be clear.
struct Move {
    uint32_t value = 0;

    static constexpr uint32_t ShortCastleBit = 1u << 16;
    static constexpr uint32_t LongCastleBit = 1u << 17;
    static constexpr uint32_t DoubleStepBit = 1u << 18;
    static constexpr uint32_t EnPassantBit = 1u << 19;
    static constexpr uint32_t DropBit = 1u << 24;
    static constexpr uint32_t NullBit = 1u << 25;
    static constexpr uint32_t ReverseBit = 1u << 26;
    static constexpr uint32_t EditBit = 1u << 27;
    static constexpr uint32_t CastleBits = ShortCastleBit | LongCastleBit;

    constexpr Square from() const { return Square(value & 63); }
    constexpr Square to() const { return Square((value >> 6) & 63); }
    constexpr Piece captured() const { return Piece((value >> 12) & 15); }
    constexpr Piece promotion() const { return isEdit() ? NoPiece : Piece((value >> 20) & 15); }
    constexpr Piece moved() const { return Piece(value >> 28); }
    constexpr EditCode editCode() const { return EditCode((value >> 22) & 15); }

    constexpr bool isEdit() const { return value & EditBit; }
    constexpr bool flag(uint32_t bit) const { return (value & (EditBit | bit)) == bit; }
    constexpr bool isShortCastle() const { return flag(ShortCastleBit); }
    constexpr bool isLongCastle() const { return flag(LongCastleBit); }
    constexpr bool isCastle() const { return !isEdit() && (value & CastleBits); }
    constexpr bool isDoubleStep() const { return flag(DoubleStepBit); }
    constexpr bool isEnPassant() const { return flag(EnPassantBit); }
    constexpr bool isDrop() const { return flag(DropBit); }
    constexpr bool isNull() const { return flag(NullBit); }
    constexpr bool isReverse() const { return flag(ReverseBit); }
    constexpr bool isPromotion() const { return promotion() != NoPiece; }
    // Taking a piece, en passant included.
    constexpr bool isCapture() const { return !isEdit() && (captured() != NoPiece || isEnPassant()); }

    static constexpr Move make(Piece moved, Square from, Square to, Piece captured = NoPiece,
                               Piece promotion = NoPiece, uint32_t flags = 0) {
        return Move{uint32_t(moved) << 28 | uint32_t(promotion) << 20 | uint32_t(captured) << 12 |
                    uint32_t(to) << 6 | uint32_t(from) | flags};
    }
    static constexpr Move drop(Piece piece, Square square) {
        return make(piece, square, square, NoPiece, NoPiece, DropBit);
    }
    static constexpr Move null(Piece king, Square kingSquare) {
        return make(king, kingSquare, kingSquare, NoPiece, NoPiece, NullBit);
    }
    static constexpr Move edit(EditCode code, Piece piece, Square from, Square to, Piece captured = NoPiece) {
        return Move{uint32_t(piece) << 28 | EditBit | uint32_t(code) << 22 | uint32_t(captured) << 12 |
                    uint32_t(to) << 6 | uint32_t(from)};
    }

    constexpr bool operator==(const Move&) const = default;
    constexpr auto operator<=>(const Move&) const = default;
};

constexpr Move reversed(Move move) { return Move{move.value | Move::ReverseBit}; }

using MoveList = std::vector<Move>;

// The origin's name, the target's name and, for a promotion, the promoted
// piece's lower-case letter: "e7e8q".
std::string moveToCoordinates(Move move);

// Every generator reserves this much so that ordinary positions never make a
// list grow.
inline constexpr size_t reservedMoveListSize = 60;

}  // namespace tarnfold
