#pragma once

// Moves read from text and written as text. Reading is always against a
// board: a text has meaning only in a position, and an accepted text gives
// exactly one Move.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "chess/board.h"
#include "chess/move.h"

namespace tarnfold {

enum class Notation : uint32_t { SAN = 0, EDN = 1 };

// "SAN", "EDN", or empty for anything else.
std::string_view notationName(Notation notation);

enum MoveError : uint32_t {
    MoveSuccess = 0,
    MoveInvalidCharacter = 1,
    MoveInvalidCastling = 2,
    MoveExtraneousCharacter = 3,
    MoveBadCastlingPermission = 4,
    MoveIllegal = 5,
    MoveIllegalPromotionPiece = 6,
    MoveMalformed = 7,
    MoveAmbiguous = 8,
};

std::string_view moveErrorText(MoveError error);
// "Error parsing move: " and the error's text, the move text, and a caret
// line under the character at position (counted from 1).
std::string moveErrorMessage(std::string_view text, MoveError error, size_t position);

// What the SAN reader noted, for the game reader.
struct SanAttributes {
    Square square = NoSquare;
    int qualifyingFile = -1;
    int qualifyingRank = -1;
    PieceType piece = NoPieceType;
    PieceType promotion = NoPieceType;
    bool isNull = false;
    bool isCastling = false;
    bool checkMark = false;
    bool mateMark = false;
    bool captureMark = false;
    bool explicitPawn = false;
    bool promotionWithSlash = false;
    bool promotionWithoutMark = false;
    bool castlingWithZeroOrLetterO = false;
    bool captureWithColonOrX = false;
};

// Reads one move from text at position and moves position behind what it
// read; the board comes back as it was.
MoveError parseMove(Board& board, Notation notation, std::string_view text, Move& move, size_t& position);
MoveError parseSan(Board& board, std::string_view text, Move& move, size_t& position,
                   SanAttributes* attributes = nullptr);
MoveError parseEdn(Board& board, std::string_view text, Move& move, size_t& position);

struct MoveTextStyle {
    std::string enPassantSuffix;
    std::string checkSuffix = "+";
    std::string doubleCheckSuffix = "+";
    std::string mateSuffix = "#";
    // Before the promotion piece; "()" and "[]" enclose it instead.
    std::string promotionMark = "=";
    std::string captureMark = "x";
    std::string shortCastleText = "O-O";
    std::string longCastleText = "O-O-O";
    std::string reversePrefix = "~";
    std::string dropMark = "@";
    std::string nullMoveText = "--";
    bool useGlyphs = false;
    // 0 never, 1 by legal moves, 2 by moves without king safety, 3 always
    // file and rank.
    int disambiguation = 1;
};

// SAN of a move legal on the board, suffix included; the board is used to
// try the move and comes back unchanged.
std::string moveToText(Board& board, Move move, const MoveTextStyle& style = {});
// The same in two halves, for a writer that plays the move anyway: the text
// without its check or mate mark, on the board before the move, and the
// mark, on the board after it.
std::string moveTextWithoutMark(Board& board, Move move, const MoveTextStyle& style = {});
void appendMoveTextWithoutMark(std::string& text, Board& board, Move move, const MoveTextStyle& style);
// A view of the style's text, or empty.
std::string_view checkMark(Board& board, const MoveTextStyle& style = {});

}  // namespace tarnfold
