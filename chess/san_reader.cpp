// Reading SAN with the tolerance PGN files need: castling with O, o or 0,
// qualifiers in any combination, promotions with '=', '/' or no mark, "ep"
// notes, null moves, drops, and reverse moves after '~'.

#include <array>

#include "chess/names.h"
#include "chess/attacks.h"
#include "chess/notation.h"

namespace tarnfold {

namespace {

constexpr std::array<std::string_view, 9> moveErrorTexts = {
    "success",
    "invalid character",
    "invalid castling move",
    "extraneous character",
    "bad castling permission",
    "illegal move",
    "illegal promotion piece",
    "malformed move",
    "ambiguous move",
};

constexpr bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
constexpr bool isAlnum(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}
constexpr bool isCastlingLetter(char c) { return c == 'O' || c == 'o' || c == '0'; }
constexpr bool isPieceLetter(char c) { return c == 'B' || c == 'K' || c == 'N' || c == 'Q' || c == 'R'; }

class SanReader {
public:
    SanReader(Board& board, std::string_view text, size_t& position, SanAttributes& noted)
        : board_(board), text_(text), pos_(position), noted_(noted) {}

    MoveError read(Move& move) {
        while (pos_ < text_.size() && isSpace(text_[pos_])) ++pos_;
        if (peek() == '~') {
            reverse_ = true;
            ++pos_;
        }
        mover_ = reverse_ ? otherColor(board_.sideToMove) : board_.sideToMove;
        const char first = peek();
        if (first == '-') return peek(1) == '-' ? nullMove(2, move) : MoveMalformed;
        if (first == 'Z' || first == 'n' || first == 'p') {
            for (std::string_view word : {"Z0", "null", "pass"})
                if (text_.substr(pos_).starts_with(word) && !isAlnum(peek(word.size())))
                    return nullMove(word.size(), move);
            return MoveMalformed;
        }
        if (isCastlingLetter(first)) return castling(move);
        return pieceMove(move);
    }

private:
    char peek(size_t ahead = 0) const { return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : '\0'; }

    MoveError nullMove(size_t length, Move& move) {
        pos_ += length;
        noted_.isNull = true;
        const Color side = board_.sideToMove;
        const Bitboard kings = board_.pieces[side][King];
        if (!kings) return MoveIllegal;
        move = Move::null(makePiece(King, side), lowestSquare(kings));
        return MoveSuccess;
    }

    // Ends the text on a check or mate mark, noting it.
    bool takeMark() {
        const char c = peek();
        if (c != '+' && c != '#') return false;
        (c == '+' ? noted_.checkMark : noted_.mateMark) = true;
        ++pos_;
        return true;
    }

    MoveError castling(Move& move) {
        noted_.isCastling = true;
        int count = 0;
        for (; pos_ < text_.size(); ++pos_) {
            const char c = text_[pos_];
            if (isCastlingLetter(c)) {
                ++count;
                if (c != 'O') noted_.castlingWithZeroOrLetterO = true;
            } else if (c != '-') {
                break;
            }
        }
        takeMark();
        if (count != 2 && count != 3) return MoveMalformed;
        const bool shortSide = count == 2;
        const CastlingRights right = CastlingRights(1 << castlingBit(mover_, shortSide));
        if (!reverse_ && !(board_.castlingRights & right)) return MoveBadCastlingPermission;
        thread_local MoveList moves;
        if (reverse_) {
            board_.generateReverseMoves(moves);
        } else {
            const Square king = board_.royalKingSquare(mover_);
            if (king == NoSquare) return MoveIllegal;
            board_.generateLegalMoves(moves, squareBit(king));
        }
        for (Move candidate : moves) {
            if (reverse_ && !board_.isLegalMove(candidate)) continue;
            if (shortSide ? candidate.isShortCastle() : candidate.isLongCastle()) {
                move = candidate;
                return MoveSuccess;
            }
        }
        return MoveIllegal;
    }

    MoveError pieceMove(Move& move) {
        PieceType piece = pieceTypeFromChar(peek());
        if (piece != NoPieceType) {
            if (piece == Pawn) noted_.explicitPawn = true;
            ++pos_;
        } else {
            piece = Pawn;
        }
        noted_.piece = piece;
        if (board_.variantRules.hasPockets && peek() == '@') {
            drop_ = true;
            ++pos_;
        }
        if (const MoveError error = scanSquaresAndMarks(piece); error != MoveSuccess) return error;
        if (file_ < 0 || rank_ < 0) return MoveMalformed;
        const Square target = makeSquare(file_, rank_);
        noted_.square = target;
        noted_.qualifyingFile = qualifierFile_;
        noted_.qualifyingRank = qualifierRank_;
        noted_.promotion = promotion_;
        return choose(piece, target, move);
    }

    MoveError scanSquaresAndMarks(PieceType piece) {
        const int lastRank = mover_ == White ? 7 : 0;
        while (pos_ < text_.size()) {
            const char c = text_[pos_];
            if (c == 'e' && peek(1) == 'p' && piece == Pawn && capture_ && qualifierFile_ >= 0 &&
                file_ >= 0) {
                enPassantNote_ = true;
                pos_ += 2;
            } else if (c >= 'a' && c <= 'h') {
                if (qualifierFile_ >= 0) return MoveMalformed;
                if (file_ >= 0) qualifierFile_ = file_;
                file_ = c - 'a';
                ++pos_;
            } else if (c >= '1' && c <= '8') {
                if (qualifierRank_ >= 0) return MoveMalformed;
                if (rank_ >= 0) qualifierRank_ = rank_;
                rank_ = c - '1';
                ++pos_;
            } else if (c == 'x' || c == 'X' || c == ':') {
                if (capture_) break;
                capture_ = noted_.captureMark = true;
                if (c != 'x') noted_.captureWithColonOrX = true;
                ++pos_;
                if (reverse_ && !readPutBack()) return MoveMalformed;
            } else if (c == '+' || c == '#') {
                takeMark();
                break;
            } else if (c == '=' || c == '/') {
                if (piece != Pawn || rank_ != lastRank || !isPieceLetter(peek(1))) break;
                if (c == '/') noted_.promotionWithSlash = true;
                promotion_ = pieceTypeFromChar(peek(1));
                pos_ += 2;
                takeMark();
                break;
            } else if (isPieceLetter(c)) {
                if (piece != Pawn || rank_ != lastRank) return MoveMalformed;
                noted_.promotionWithoutMark = true;
                promotion_ = pieceTypeFromChar(c);
                ++pos_;
                takeMark();
                break;
            } else {
                break;
            }
        }
        return MoveSuccess;
    }

    // The piece a reverse capture puts back: a letter, bare or in
    // parentheses.
    bool readPutBack() {
        const bool parenthesised = peek() == '(';
        const PieceType type = pieceTypeFromChar(peek(parenthesised ? 1 : 0));
        if (type == NoPieceType || type == King) return false;
        if (parenthesised && peek(2) != ')') return false;
        pos_ += parenthesised ? 3 : 1;
        putBack_ = type;
        return true;
    }

    bool fits(Move candidate, Piece moved) const {
        if (candidate.isCastle() || candidate.isDrop() != drop_ || candidate.moved() != moved) return false;
        const Piece promotion = promotion_ == NoPieceType ? NoPiece : makePiece(promotion_, mover_);
        if (candidate.promotion() != promotion) return false;
        if (!reverse_) return true;
        // A reverse text says exactly what was taken and how.
        if (!capture_) return !candidate.isCapture();
        if (candidate.isEnPassant() != enPassantNote_) return false;
        return enPassantNote_ ? putBack_ == Pawn
                              : candidate.captured() == makePiece(putBack_, board_.sideToMove);
    }

    // Most piece moves have a single piece of their kind that reaches the
    // target: that one is tried at once, without generating moves. Variants
    // where a capture is compulsory take the long way, which knows the rule.
    bool chooseSingle(PieceType piece, Square target, Bitboard fromSet, Move& move) {
        if (reverse_ || drop_ || promotion_ != NoPieceType || board_.variantRules.mandatoryCapture) return false;
        if (piece != Knight && piece != Bishop && piece != Rook && piece != Queen) return false;
        if (board_.byColor[mover_] & squareBit(target)) return false;
        const Bitboard reach = piece == Knight   ? knightAttacks[target]
                               : piece == Bishop ? bishopAttacks(target, board_.occupied)
                               : piece == Rook   ? rookAttacks(target, board_.occupied)
                                                 : queenAttacks(target, board_.occupied);
        const Bitboard candidates = fromSet & board_.pieces[mover_][piece] & reach;
        if (candidates == 0 || moreThanOne(candidates)) return false;
        const Move candidate =
            Move::make(makePiece(piece, mover_), lowestSquare(candidates), target, board_.squares[target]);
        if (!(keepsKingSafe(candidate) || board_.isLegalMove(candidate))) return false;
        move = candidate;
        return true;
    }

    // Most pawn moves name their one candidate outright: a step or double
    // step onto an empty square, or a capture from a named file. Anything
    // else (en passant, promotion, qualifiers beyond the file, a check to
    // answer) takes the long way.
    bool chooseSinglePawn(Square target, Move& move) {
        if (reverse_ || drop_ || promotion_ != NoPieceType || board_.variantRules.mandatoryCapture) return false;
        const int forward = mover_ == White ? 8 : -8;
        // No pawn stands on or steps to an edge rank without promoting.
        if (rank_ == 0 || rank_ == 7) return false;
        if (qualifierRank_ >= 0 || target == board_.enPassantSquare) return false;
        const Piece pawn = makePiece(Pawn, mover_);
        Move candidate;
        if (qualifierFile_ < 0 || qualifierFile_ == file_) {
            if (capture_ || contains(board_.occupied, target)) return false;
            const auto single = Square(target - forward);
            if (board_.squares[single] == pawn) {
                candidate = Move::make(pawn, single, target);
            } else {
                const auto twoBack = Square(single - forward);
                if (board_.squares[single] != NoPiece || rank_ != (mover_ == White ? 3 : 4) ||
                    board_.squares[twoBack] != pawn)
                    return false;
                candidate = Move::make(pawn, twoBack, target, NoPiece, NoPiece, Move::DoubleStepBit);
            }
        } else {
            if (qualifierFile_ != file_ - 1 && qualifierFile_ != file_ + 1) return false;
            if (!contains(board_.byColor[otherColor(mover_)], target)) return false;
            const auto from = Square(makeSquare(qualifierFile_, rank_) - forward);
            if (board_.squares[from] != pawn) return false;
            candidate = Move::make(pawn, from, target, board_.squares[target]);
        }
        if (!keepsKingSafe(candidate)) return false;
        move = candidate;
        return true;
    }

    // Whether a piece move, king moves aside, leaves the mover's king out of
    // check, told without playing it: with the king not in check now, only a
    // line that the moving piece opened could attack it. Rule sets with
    // more to say about a move (explosions, checks that may not be given,
    // kings that are no kings) are left to the full test.
    bool keepsKingSafe(Move candidate) const {
        const Variant variant = board_.variant;
        if (variant != Standard && variant != Chess960 && variant != Crazyhouse && variant != KingOfTheHill &&
            variant != ThreeCheck)
            return false;
        const Square king = board_.royalKingSquare(mover_);
        if (king == NoSquare || board_.isInCheck(mover_)) return false;
        const Color enemy = otherColor(mover_);
        const Bitboard occupancy = (board_.occupied & ~squareBit(candidate.from())) | squareBit(candidate.to());
        const Bitboard straight = board_.pieces[enemy][Rook] | board_.pieces[enemy][Queen];
        const Bitboard diagonal = board_.pieces[enemy][Bishop] | board_.pieces[enemy][Queen];
        const Bitboard attackers =
            (rookAttacks(king, occupancy) & straight) | (bishopAttacks(king, occupancy) & diagonal);
        return (attackers & ~squareBit(candidate.to())) == 0;
    }

    // Whether a generated move is legal can be told without playing it for
    // a move from one square to another of anything but the king: en
    // passant, which empties a third square, and drops are played.
    bool safeUnplayed(Move candidate) const {
        return !reverse_ && !candidate.isDrop() && !candidate.isEnPassant() && !candidate.isCastle() &&
               pieceType(candidate.moved()) != King && keepsKingSafe(candidate);
    }

    MoveError choose(PieceType piece, Square target, Move& move) {
        Bitboard fromSet = ~Bitboard(0);
        if (qualifierFile_ >= 0) fromSet &= fileMask[qualifierFile_];
        if (qualifierRank_ >= 0) fromSet &= rankMask[qualifierRank_];
        // The shortcuts take one candidate without generating moves; a game
        // over by its rule set's own end has no legal move at all, which
        // generation knows and they do not.
        const bool shortcut = !board_.isVariantEnd() && (piece == Pawn ? chooseSinglePawn(target, move)
                                                                        : chooseSingle(piece, target, fromSet, move));
        if (shortcut) return MoveSuccess;
        thread_local MoveList moves;
        if (reverse_) {
            board_.generateReverseMoves(moves);
        } else {
            if (!drop_) fromSet &= board_.pieces[mover_][piece];
            board_.generateLegalMoves(moves, fromSet, squareBit(target),
                                      !board_.variantRules.mandatoryCapture);
        }
        const Piece moved = makePiece(piece, mover_);
        bool found = false;
        for (Move candidate : moves) {
            if (reverse_ && (candidate.to() != target || !contains(fromSet, candidate.from()))) continue;
            if (!fits(candidate, moved) || !(safeUnplayed(candidate) || board_.isLegalMove(candidate))) continue;
            if (found) return MoveAmbiguous;
            move = candidate;
            found = true;
        }
        return found ? MoveSuccess : MoveIllegal;
    }

    Board& board_;
    std::string_view text_;
    size_t& pos_;
    SanAttributes& noted_;
    bool reverse_ = false;
    Color mover_ = White;
    bool drop_ = false;
    bool capture_ = false;
    bool enPassantNote_ = false;
    int file_ = -1, rank_ = -1, qualifierFile_ = -1, qualifierRank_ = -1;
    PieceType promotion_ = NoPieceType;
    PieceType putBack_ = NoPieceType;
};

}  // namespace

std::string_view notationName(Notation notation) {
    switch (notation) {
        case Notation::SAN: return "SAN";
        case Notation::EDN: return "EDN";
    }
    return "";
}

std::string_view moveErrorText(MoveError error) {
    return error < moveErrorTexts.size() ? moveErrorTexts[error] : std::string_view();
}

std::string moveErrorMessage(std::string_view text, MoveError error, size_t position) {
    std::string message = "Error parsing move: ";
    message += moveErrorText(error);
    message += '\n';
    message += text;
    message += '\n';
    if (position > 0) message.append(position - 1, ' ');
    message += "^\n";
    return message;
}

MoveError parseSan(Board& board, std::string_view text, Move& move, size_t& position,
                   SanAttributes* attributes) {
    SanAttributes local;
    SanAttributes& noted = attributes ? *attributes : local;
    noted = SanAttributes{};
    return SanReader(board, text, position, noted).read(move);
}

MoveError parseMove(Board& board, Notation notation, std::string_view text, Move& move, size_t& position) {
    switch (notation) {
        case Notation::SAN: return parseSan(board, text, move, position);
        case Notation::EDN: return parseEdn(board, text, move, position);
    }
    return MoveMalformed;
}

}  // namespace tarnfold
