#pragma once

// Plain value types of the chess model. Everything here is a small number so
// that boards, moves and filters can copy and compare them freely.

#include <cstdint>

namespace tarnfold {

// A set of squares: bit i is square i, so a1 is the lowest bit and h8 the
// highest. It doubles as the run-time value of the query language's Set type.
using Bitboard = uint64_t;

enum Color : uint32_t { White = 0, Black = 1 };

constexpr Color otherColor(Color color) { return Color(color ^ 1); }

enum SquareColor : uint8_t { light = 0, dark = 1 };

inline constexpr Bitboard lightSquares = 0x55AA55AA55AA55AAULL;
inline constexpr Bitboard darkSquares = 0xAA55AA55AA55AA55ULL;

// a1 = 0, b1 = 1, ... h1 = 7, a2 = 8, ... h8 = 63. NoSquare is both the stored
// value of an absent square and the failure result of parsing.
// clang-format off
enum Square : uint8_t {
  A1, B1, C1, D1, E1, F1, G1, H1,
  A2, B2, C2, D2, E2, F2, G2, H2,
  A3, B3, C3, D3, E3, F3, G3, H3,
  A4, B4, C4, D4, E4, F4, G4, H4,
  A5, B5, C5, D5, E5, F5, G5, H5,
  A6, B6, C6, D6, E6, F6, G6, H6,
  A7, B7, C7, D7, E7, F7, G7, H7,
  A8, B8, C8, D8, E8, F8, G8, H8,
  NoSquare = 64
};
// clang-format on

// File a is 0, rank 1 is 0.
constexpr int fileOf(Square square) { return square & 7; }
constexpr int rankOf(Square square) { return square >> 3; }
constexpr Square makeSquare(int file, int rank) { return Square(rank * 8 + file); }
constexpr bool onBoard(int file, int rank) { return file >= 0 && file < 8 && rank >= 0 && rank < 8; }
constexpr SquareColor squareColor(Square square) {
    return ((fileOf(square) + rankOf(square)) & 1) ? light : dark;
}
constexpr Square& operator++(Square& square) { return square = Square(square + 1); }

enum PieceType : uint8_t { Pawn = 0, Knight = 1, Bishop = 2, Rook = 3, Queen = 4, King = 5, NoPieceType = 6 };

constexpr PieceType& operator++(PieceType& type) { return type = PieceType(type + 1); }

// Type and colour in one number, in the order of the PolyGlot book format
// (black before white), which the key table depends on. The colour bit is
// therefore the inverse of Color.
enum Piece : uint8_t {
    BlackPawn = 0,
    WhitePawn = 1,
    BlackKnight = 2,
    WhiteKnight = 3,
    BlackBishop = 4,
    WhiteBishop = 5,
    BlackRook = 6,
    WhiteRook = 7,
    BlackQueen = 8,
    WhiteQueen = 9,
    BlackKing = 10,
    WhiteKing = 11,
    NoPiece = 12
};

constexpr Piece makePiece(PieceType type, Color color) { return Piece(2 * type + (color == White ? 1 : 0)); }
constexpr PieceType pieceType(Piece piece) { return PieceType(piece >> 1); }
constexpr Color pieceColor(Piece piece) { return Color((piece & 1) ^ 1); }
constexpr Piece& operator++(Piece& piece) { return piece = Piece(piece + 1); }

// 0 to 7 are rays and index rayAttacks; 8 to 14 are named groups used by the
// query filters. The order is load-bearing: the opposite of ray d is d ^ 4,
// and rays 0 to 3 run towards higher square numbers, so the nearest piece on
// them is the lowest set bit of ray & occupied (the highest for 4 to 7).
enum Direction : uint8_t {
    Right = 0,
    Up = 1,
    NorthEast = 2,
    NorthWest = 3,
    Left = 4,
    Down = 5,
    SouthWest = 6,
    SouthEast = 7,
    Diagonal = 8,
    MainDiagonal = 9,
    OffDiagonal = 10,
    Orthogonal = 11,
    Vertical = 12,
    Horizontal = 13,
    AnyDirection = 14
};

inline constexpr int rayDirectionCount = 8;
inline constexpr int directionCount = 15;

constexpr bool isRay(Direction direction) { return direction < rayDirectionCount; }
constexpr Direction oppositeDirection(Direction ray) { return Direction(ray ^ 4); }
constexpr bool runsUpward(Direction ray) { return ray < 4; }

// Step of each ray direction in files and ranks.
inline constexpr int8_t rayFileStep[rayDirectionCount] = {+1, 0, +1, -1, -1, 0, -1, +1};
inline constexpr int8_t rayRankStep[rayDirectionCount] = {0, +1, +1, +1, 0, -1, -1, -1};

}  // namespace tarnfold
