#pragma once

// A game written back as PGN. The movetext is first laid out as words, each
// knowing whether a blank separates it from the one before, and a single pass
// then breaks the words into lines; tags come in front as whole lines.

#include <cstdint>
#include <functional>
#include <string>

#include "chess/notation.h"
#include "pgn/game.h"
#include "pgn/game_tree.h"

namespace tarnfold::PGN {

struct PGNWriteOptions {
    bool omitTags = false;
    bool comments = true;
    // Off: ';' comments of the input are left out.
    bool keepLineComments = true;
    bool nags = true;
    bool variations = true;
    bool result = true;
    // "1.e4" rather than "1. e4".
    bool compactMoves = true;
    // "(1.e4 e5)" rather than "( 1.e4 e5 )".
    bool compactVariations = true;
    // "{text}" rather than "{ text }".
    bool compactComments = true;
    bool moveNumbers = true;
    // Whether Black's move after a NAG or a comment is numbered ("1...e5").
    bool moveNumberAfterNag = true;
    bool moveNumberAfterComment = true;
    // Stands for a brace inside a comment; NUL drops the brace.
    char braceReplacement = '_';
    // 0: the movetext is one line.
    uint32_t lineWidth = 79;
    // The comments at one place joined into a single one.
    bool coalesceComments = false;
    // Repeats among the comments at one place left out.
    bool uniqueComments = true;
    // Off: a comment stays whole on one line, its blanks squeezed to one.
    bool splitCommentWords = true;
    // Off: a line never ends between a move number and its move.
    bool splitMoves = true;
    MoveTextStyle notation;
};

// Boards the caller already holds for positions of the game, the engine's
// laid-out rows: the board at a node, or null. Where the writer gets the
// boards of a main-line position and of the next, it plays no move.
using BoardLookup = std::function<Board*(const AnnotatedGameTreeNode&)>;

// The game must stand at its root; current and the Board come back there.
std::string gameToPgn(const PGNWriteOptions& options, Game<AnnotatedGameTreeNode>& game,
                      const BoardLookup* lookup = nullptr);
// The same, appended to out.
void appendGameToPgn(const PGNWriteOptions& options, Game<AnnotatedGameTreeNode>& game, std::string& out,
                     const BoardLookup* lookup = nullptr);

}  // namespace tarnfold::PGN
