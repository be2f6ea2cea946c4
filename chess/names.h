#pragma once

// Text forms of the core types: names for messages and dumps, the letters of
// FEN and move notation, and square names in both directions.

#include <string>
#include <string_view>

#include "chess/types.h"

namespace tarnfold {

// Indexed by Piece; the last character stands for NoPiece.
inline constexpr std::string_view pieceLetters = "pPnNbBrRqQkK.";

std::string_view colorName(Color color);
std::string_view squareColorName(SquareColor color);
std::string_view pieceTypeName(PieceType type);
std::string_view pieceName(Piece piece);
std::string_view directionName(Direction direction);

// "a1" to "h8". The square must be on the board.
std::string_view squareName(Square square);

// Reads a lower-case square name that ends the text or is followed by white
// space ("e4", "e4 x"); anything else gives NoSquare.
Square parseSquare(std::string_view text);

// The letter of pieceLetters; '.' for NoPiece and anything beyond.
char pieceChar(Piece piece);
// The twelve letters of pieceLetters, anything else NoPiece.
Piece pieceFromChar(char letter);
// Only the upper-case letters P N B R Q K; anything else NoPieceType.
PieceType pieceTypeFromChar(char letter);
// 'P', 'N', 'B', 'R', 'Q', 'K', or '?'.
char pieceTypeChar(PieceType type);

// The UTF-8 chess symbol, white symbols for white pieces; "." for NoPiece.
std::string_view pieceSymbol(Piece piece);

// Square names in ascending order, joined by ", " when spaced, else by ",".
std::string squareListText(Bitboard squares, bool spaced);

// Eight lines, rank 8 first, each of eight " X" (member) or " ." groups.
std::string bitboardDiagram(Bitboard squares);

}  // namespace tarnfold
