#include "chess/names.h"

#include <array>
#include <cassert>

#include "chess/bitboard.h"

namespace tarnfold {

namespace {

constexpr std::string_view invalid = "Invalid";

constexpr std::array<std::string_view, 6> pieceTypeNames = {"Pawn", "Knight", "Bishop",
                                                            "Rook", "Queen",  "King"};

constexpr std::array<std::string_view, 12> pieceNames = {
    "Black Pawn", "White Pawn", "Black Knight", "White Knight", "Black Bishop", "White Bishop",
    "Black Rook", "White Rook", "Black Queen",  "White Queen",  "Black King",   "White King",
};

constexpr std::array<std::string_view, 13> pieceSymbols = {
    "\u265F", "\u2659", "\u265E", "\u2658", "\u265D", "\u2657", "\u265C",
    "\u2656", "\u265B", "\u2655", "\u265A", "\u2654", ".",
};

constexpr std::array<std::string_view, directionCount> directionNames = {
    "right",       "up",         "northeast", "northwest",  "left",
    "down",        "southwest",  "southeast", "diagonal",   "maindiagonal",
    "offdiagonal", "orthogonal", "vertical",  "horizontal", "anydirection",
};

// clang-format off
constexpr std::array<std::string_view, 64> squareNames = {
    "a1", "b1", "c1", "d1", "e1", "f1", "g1", "h1",
    "a2", "b2", "c2", "d2", "e2", "f2", "g2", "h2",
    "a3", "b3", "c3", "d3", "e3", "f3", "g3", "h3",
    "a4", "b4", "c4", "d4", "e4", "f4", "g4", "h4",
    "a5", "b5", "c5", "d5", "e5", "f5", "g5", "h5",
    "a6", "b6", "c6", "d6", "e6", "f6", "g6", "h6",
    "a7", "b7", "c7", "d7", "e7", "f7", "g7", "h7",
    "a8", "b8", "c8", "d8", "e8", "f8", "g8", "h8",
};
// clang-format on

constexpr std::string_view pieceTypeLetters = "PNBRQK";

// ASCII white space only, so the answer does not depend on the locale.
constexpr bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

}  // namespace

std::string_view colorName(Color color) {
    switch (color) {
        case White: return "White";
        case Black: return "Black";
    }
    return invalid;
}

std::string_view squareColorName(SquareColor color) {
    switch (color) {
        case light: return "light";
        case dark: return "dark";
    }
    return invalid;
}

std::string_view pieceTypeName(PieceType type) {
    return type < pieceTypeNames.size() ? pieceTypeNames[type] : invalid;
}

std::string_view pieceName(Piece piece) { return piece < pieceNames.size() ? pieceNames[piece] : invalid; }

std::string_view directionName(Direction direction) {
    return direction < directionNames.size() ? directionNames[direction] : "Invalid Direction";
}

std::string_view squareName(Square square) {
    assert(square < 64);
    return squareNames[square];
}

Square parseSquare(std::string_view text) {
    if (text.size() < 2) return NoSquare;
    const char file = text[0], rank = text[1];
    if (file < 'a' || file > 'h' || rank < '1' || rank > '8') return NoSquare;
    if (text.size() > 2 && !isSpace(text[2])) return NoSquare;
    return makeSquare(file - 'a', rank - '1');
}

char pieceChar(Piece piece) { return pieceLetters[piece < NoPiece ? piece : NoPiece]; }

Piece pieceFromChar(char letter) {
    const size_t index = pieceLetters.find(letter);
    return index < NoPiece ? Piece(index) : NoPiece;
}

PieceType pieceTypeFromChar(char letter) {
    const size_t index = pieceTypeLetters.find(letter);
    return index == std::string_view::npos ? NoPieceType : PieceType(index);
}

char pieceTypeChar(PieceType type) { return type < pieceTypeLetters.size() ? pieceTypeLetters[type] : '?'; }

std::string_view pieceSymbol(Piece piece) { return pieceSymbols[piece < NoPiece ? piece : NoPiece]; }

std::string squareListText(Bitboard squares, bool spaced) {
    std::string text;
    const std::string_view separator = spaced ? ", " : ",";
    while (squares) {
        if (!text.empty()) text += separator;
        text += squareNames[popLowest(squares)];
    }
    return text;
}

std::string bitboardDiagram(Bitboard squares) {
    std::string text;
    text.reserve(8 * 17);
    for (int rank = 7; rank >= 0; --rank) {
        for (int file = 0; file < 8; ++file) {
            text += ' ';
            text += contains(squares, makeSquare(file, rank)) ? 'X' : '.';
        }
        text += '\n';
    }
    return text;
}

}  // namespace tarnfold
