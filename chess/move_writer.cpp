// Writing SAN, shaped by a MoveTextStyle.

#include "chess/attacks.h"
#include "chess/names.h"
#include "chess/notation.h"

namespace tarnfold {

namespace {

void appendPieceText(std::string& text, PieceType type, bool glyphs) {
    if (glyphs) {
        text += pieceSymbol(makePiece(type, White));
    } else {
        text += pieceTypeChar(type);
    }
}

// The suffix for the side to move now standing in check, given by the move
// just made or, for a reverse move, by the one it takes back.
std::string_view checkSuffix(Board& board, const MoveTextStyle& style) {
    const Color side = board.sideToMove;
    if (!board.isInCheck(side)) return {};
    if (!board.hasLegalMove()) return style.mateSuffix;
    const Square king = board.royalKingSquare(side);
    return moreThanOne(board.attackersTo(king, otherColor(side))) ? style.doubleCheckSuffix
                                                                  : style.checkSuffix;
}

// The squares from which a piece of the type could reach the target by
// its movement alone, checks and pins aside.
Bitboard reachingPieces(PieceType type, Square target, Bitboard occupancy) {
    switch (type) {
        case Knight: return knightAttacks[target];
        case Bishop: return bishopAttacks(target, occupancy);
        case Rook: return rookAttacks(target, occupancy);
        case Queen: return queenAttacks(target, occupancy);
        case King: return kingAttacks[target];
        default: return ~Bitboard(0);
    }
}

// File and rank needed to tell the move from those of other pieces of its
// kind that reach the same target, in the sense of the style.
void appendDisambiguation(std::string& text, Board& board, Move move, const MoveTextStyle& style) {
    const Square from = move.from();
    if (style.disambiguation == 3) {
        text += squareName(from);
        return;
    }
    if (style.disambiguation != 1 && style.disambiguation != 2) return;
    thread_local MoveList moves;
    if (move.isReverse()) {
        board.generateLegalReverseMoves(moves);
    } else {
        const Bitboard others = board.pieces[pieceColor(move.moved())][pieceType(move.moved())] &
                                reachingPieces(pieceType(move.moved()), move.to(), board.occupied) &
                                ~squareBit(from);
        // Most moves have no rival at all: no need to generate any move.
        if (others == 0) return;
        board.generateLegalMoves(moves, others, squareBit(move.to()), style.disambiguation == 2);
    }
    bool rivals = false, sameFile = false, sameRank = false;
    for (Move other : moves) {
        if (other.to() != move.to() || other.from() == from || other.moved() != move.moved()) continue;
        if (other.isDrop() || other.isCastle()) continue;
        rivals = true;
        sameFile |= fileOf(other.from()) == fileOf(from);
        sameRank |= rankOf(other.from()) == rankOf(from);
    }
    if (!rivals) return;
    if (!sameFile || sameRank) text += char('a' + fileOf(from));
    if (sameFile) text += char('1' + rankOf(from));
}

// A pawn on its fourth rank may have come from its third or its second, so a
// retracted pawn step names its origin whenever another retraction of the
// same pawn reaches the same square: "~e4" alone would read back as either.
void appendReversePawnOrigin(std::string& text, Board& board, Move move) {
    thread_local MoveList moves;
    board.generateLegalReverseMoves(moves);
    for (Move other : moves)
        if (other.to() == move.to() && other.from() != move.from() && other.moved() == move.moved() &&
            !other.isCapture() && !other.isDrop() && !other.isCastle()) {
            text += squareName(move.from());
            return;
        }
}

void appendPromotionText(std::string& text, Piece promotion, const MoveTextStyle& style) {
    const bool enclosed = style.promotionMark == "()" || style.promotionMark == "[]";
    text += enclosed ? std::string_view(style.promotionMark).substr(0, 1) : std::string_view(style.promotionMark);
    appendPieceText(text, pieceType(promotion), style.useGlyphs);
    if (enclosed) text += style.promotionMark[1];
}

}  // namespace

std::string moveToText(Board& board, Move move, const MoveTextStyle& style) {
    if (move.isNull()) return style.nullMoveText;
    std::string text;
    appendMoveTextWithoutMark(text, board, move, style);
    if (move.isReverse()) return text += checkSuffix(board, style);
    board.makeMove(move);
    text += checkSuffix(board, style);
    board.unmakeMove();
    return text;
}

std::string_view checkMark(Board& board, const MoveTextStyle& style) { return checkSuffix(board, style); }

std::string moveTextWithoutMark(Board& board, Move move, const MoveTextStyle& style) {
    std::string text;
    appendMoveTextWithoutMark(text, board, move, style);
    return text;
}

void appendMoveTextWithoutMark(std::string& text, Board& board, Move move, const MoveTextStyle& style) {
    if (move.isNull()) {
        text += style.nullMoveText;
        return;
    }
    if (move.isReverse()) text += style.reversePrefix;
    if (move.isCastle()) {
        text += move.isShortCastle() ? style.shortCastleText : style.longCastleText;
        return;
    }

    const PieceType type = pieceType(move.moved());
    if (type != Pawn) {
        appendPieceText(text, type, style.useGlyphs);
        if (!move.isDrop()) appendDisambiguation(text, board, move, style);
    } else if (move.isCapture()) {
        text += char('a' + fileOf(move.from()));
    } else if (move.isReverse() && !move.isDrop()) {
        appendReversePawnOrigin(text, board, move);
    }
    if (move.isDrop()) text += style.dropMark;
    if (move.isCapture()) {
        text += style.captureMark;
        if (move.isReverse()) {
            text += '(';
            appendPieceText(text, move.isEnPassant() ? Pawn : pieceType(move.captured()), style.useGlyphs);
            text += ')';
        }
    }
    text += squareName(move.to());
    if (move.isPromotion()) appendPromotionText(text, move.promotion(), style);
    if (move.isEnPassant()) {
        // Taken back, an en passant capture reads the same as putting a pawn
        // back on the target unless it says so.
        if (move.isReverse()) text += "ep";
        text += style.enPassantSuffix;
    }
}

}  // namespace tarnfold
