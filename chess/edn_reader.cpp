// Reading English descriptive notation. A descriptive text names files by the
// pieces that start on them and ranks from the mover's side, so a text does
// not name a square but a set of squares; the move is whichever single legal
// move fits every set and note the text gives.

#include <algorithm>

#include "chess/bitboard.h"
#include "chess/board.h"
#include "chess/notation.h"

namespace tarnfold {

namespace {

constexpr Bitboard allSquares = ~Bitboard(0);
constexpr Bitboard queenWing = fileMask[0] | fileMask[1] | fileMask[2] | fileMask[3];
constexpr Bitboard kingWing = fileMask[4] | fileMask[5] | fileMask[6] | fileMask[7];

bool startsWith(std::string_view text, size_t at, std::string_view prefix) {
    return at <= text.size() && text.substr(at).starts_with(prefix);
}

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

size_t skipSpaces(std::string_view text, size_t at) {
    while (at < text.size() && isSpace(text[at])) ++at;
    return at;
}

// One piece letter at `at`, "Kt" read as the knight it stood for before N
// took over; NoPieceType (and `at` untouched) for anything else.
PieceType readLetter(std::string_view text, size_t& at) {
    if (at >= text.size()) return NoPieceType;
    PieceType letter = NoPieceType;
    switch (text[at]) {
        case 'K':
            if (at + 1 < text.size() && text[at + 1] == 't') {
                at += 2;
                return Knight;
            }
            letter = King;
            break;
        case 'Q': letter = Queen; break;
        case 'R': letter = Rook; break;
        case 'B': letter = Bishop; break;
        case 'N': letter = Knight; break;
        case 'P': letter = Pawn; break;
        default: return NoPieceType;
    }
    ++at;
    return letter;
}

// The files a piece letter stands for: those its piece starts on.
Bitboard filesOf(PieceType letter) {
    switch (letter) {
        case King: return fileMask[4];
        case Queen: return fileMask[3];
        case Rook: return fileMask[0] | fileMask[7];
        case Bishop: return fileMask[2] | fileMask[5];
        case Knight: return fileMask[1] | fileMask[6];
        default: return allSquares;
    }
}

// A king or queen in front of another piece names that piece's wing ("KB" is
// the king's bishop, not the king's file and the bishop's).
Bitboard filesOfLetters(const PieceType* letters, int count) {
    Bitboard files = allSquares;
    for (int i = 0; i < count; ++i) {
        const PieceType next = i + 1 < count ? letters[i + 1] : NoPieceType;
        const bool wing = (letters[i] == King || letters[i] == Queen) &&
                          (next == Bishop || next == Knight || next == Rook || next == King);
        files &= wing ? (letters[i] == King ? kingWing : queenWing) : filesOf(letters[i]);
    }
    return files;
}

struct PieceDesignation {
    PieceType piece = NoPieceType;
    // Where the qualifiers put the piece; every square without qualifiers.
    Bitboard files = allSquares;
};

// "N", "QKt", "KRP": up to four letters, the last the piece. A knight,
// bishop or rook letter also names its own files once qualified ("QB" is the
// bishop on the c-file); a pawn, queen or king letter does not ("QP" is the
// d-pawn).
bool readPieceDesignation(std::string_view text, size_t& at, PieceDesignation& designation) {
    PieceType letters[4];
    int count = 0;
    while (count < 4) {
        const PieceType letter = readLetter(text, at);
        if (letter == NoPieceType) break;
        letters[count++] = letter;
    }
    if (count == 0) return false;
    designation.piece = letters[count - 1];
    if (count > 1) {
        const bool namesFiles =
            designation.piece == Knight || designation.piece == Bishop || designation.piece == Rook;
        designation.files = filesOfLetters(letters, namesFiles ? count : count - 1);
    }
    return true;
}

// "KB3", "QKt1", "K4": file letters and a rank counted from the mover's own
// side. Nothing is consumed unless a whole designation is there.
bool readSquareDesignation(std::string_view text, size_t& at, Color mover, Bitboard& squares) {
    PieceType letters[4];
    int count = 0;
    size_t next = at;
    while (count < 4) {
        size_t after = next;
        const PieceType letter = readLetter(text, after);
        if (letter == NoPieceType || letter == Pawn) break;
        letters[count++] = letter;
        next = after;
    }
    if (count == 0 || next >= text.size() || text[next] < '1' || text[next] > '8') return false;
    const int rank = mover == White ? text[next] - '1' : '8' - text[next];
    squares = filesOfLetters(letters, count) & rankMask[rank];
    at = next + 1;
    return true;
}

enum class Mark { None, Check, Mate };

struct MarkSuffix {
    std::string_view text;
    Mark mark;
};

// Longer suffixes first, so that "check" is not read as "ch" and "++" not as
// '+'.
constexpr MarkSuffix markSuffixes[] = {
    {"check", Mark::Check}, {"ch", Mark::Check}, {"++", Mark::Check}, {"+", Mark::Check}, {"#", Mark::Mate}};

MoveError readCastling(Board& board, std::string_view text, size_t at, bool reverse, Color mover, Move& move,
                       size_t& position) {
    constexpr std::string_view longText = "O-O-O";
    size_t matched = 0;
    while (matched < longText.size() && at + matched < text.size() && text[at + matched] == longText[matched])
        ++matched;
    if (matched < 3) {
        position = at + matched;
        return MoveInvalidCastling;
    }
    const bool longSide = matched == longText.size();
    at += longSide ? 5 : 3;
    if (at < text.size() && (text[at] == '+' || text[at] == '#')) ++at;
    position = at;
    // Taking castling back restores the right, so only a forward castling
    // needs it now.
    if (!reverse && !(board.castlingRights & (1 << castlingBit(mover, !longSide))))
        return MoveBadCastlingPermission;
    thread_local MoveList scratch;
    if (reverse)
        board.generateLegalReverseMoves(scratch);
    else
        board.generateLegalMoves(scratch);
    const auto found = std::find_if(scratch.begin(), scratch.end(), [&](Move candidate) {
        return longSide ? candidate.isLongCastle() : candidate.isShortCastle();
    });
    if (found == scratch.end()) return MoveIllegal;
    move = reverse ? reversed(*found) : *found;
    return MoveSuccess;
}

// A taken-back move gave its check in the position it led to, which is the
// board as it stands; a move made gives it in the position after it.
bool fitsMark(Board& board, Move candidate, Mark mark) {
    if (mark == Mark::None) return true;
    if (candidate.isReverse()) {
        return board.isInCheck(board.sideToMove) && (mark == Mark::Check || !board.hasLegalMove());
    }
    board.makeMove(candidate);
    const bool fits = board.isInCheck(board.sideToMove) && (mark == Mark::Check || !board.hasLegalMove());
    board.unmakeMove();
    return fits;
}

}  // namespace

MoveError parseEdn(Board& board, std::string_view text, Move& move, size_t& position) {
    size_t at = skipSpaces(text, std::min(position, text.size()));
    const bool reverse = at < text.size() && text[at] == '~';
    if (reverse) ++at;
    const Color mover = reverse ? otherColor(board.sideToMove) : board.sideToMove;

    if (startsWith(text, at, "--")) {
        position = at + 2;
        const Bitboard kings = board.pieces[mover][King];
        if (!kings) return MoveIllegal;
        const Square kingSquare = lowestSquare(kings);
        const Move null = Move::null(board.squares[kingSquare], kingSquare);
        move = reverse ? reversed(null) : null;
        return MoveSuccess;
    }
    if (at < text.size() && text[at] == 'O')
        return readCastling(board, text, at, reverse, mover, move, position);

    PieceDesignation piece;
    if (!readPieceDesignation(text, at, piece)) {
        position = at;
        return at < text.size() ? MoveInvalidCharacter : MoveMalformed;
    }
    Bitboard fromSet = piece.files;
    if (at < text.size() && (text[at] == '/' || text[at] == '(')) {
        const bool enclosed = text[at++] == '(';
        Bitboard origin;
        if (!readSquareDesignation(text, at, mover, origin)) {
            position = at;
            return MoveMalformed;
        }
        fromSet &= origin;
        if (enclosed) {
            if (at >= text.size() || text[at] != ')') {
                position = at;
                return MoveInvalidCharacter;
            }
            ++at;
        }
    }

    Bitboard toSet = allSquares;
    bool capture = false;
    PieceDesignation victim;
    if (at >= text.size()) {
        position = at;
        return MoveMalformed;
    }
    if (text[at] == '-') {
        ++at;
        if (!readSquareDesignation(text, at, mover, toSet)) {
            position = at;
            return MoveMalformed;
        }
    } else if (text[at] == 'x' || text[at] == 'X') {
        ++at;
        capture = true;
        if (!readPieceDesignation(text, at, victim)) {
            position = at;
            return MoveMalformed;
        }
    } else {
        position = at;
        return MoveInvalidCharacter;
    }

    PieceType promotion = NoPieceType;
    if (at < text.size() && text[at] == '=') {
        size_t after = ++at;
        const PieceType letter = readLetter(text, after);
        if (letter != Knight && letter != Bishop && letter != Rook && letter != Queen) {
            position = at;
            return MoveIllegalPromotionPiece;
        }
        promotion = letter;
        at = after;
    }

    // The notes may stand apart from the move ("PxP e.p.", "Q-R5 ch"); the
    // space is only read when a note follows it.
    bool enPassant = false;
    size_t note = skipSpaces(text, at);
    if (startsWith(text, note, "e.p.")) {
        if (!capture) {
            position = note;
            return MoveMalformed;
        }
        enPassant = true;
        at = note + 4;
        note = skipSpaces(text, at);
    }
    Mark mark = Mark::None;
    for (const auto& [suffix, meaning] : markSuffixes) {
        if (startsWith(text, note, suffix)) {
            mark = meaning;
            at = note + suffix.size();
            break;
        }
    }
    position = at;

    thread_local MoveList scratch;
    if (reverse)
        board.generateReverseMoves(scratch);
    else
        board.generatePseudoLegalMoves(scratch);
    Move found;
    bool anyFound = false;
    for (const Move candidate : scratch) {
        // Castling has a text of its own, and descriptive notation has none
        // for drops or edits.
        if (candidate.isNull() || candidate.isDrop() || candidate.isCastle() || candidate.isEdit()) continue;
        if (!contains(fromSet, candidate.from()) || !contains(toSet, candidate.to())) continue;
        if (pieceType(candidate.moved()) != piece.piece) continue;
        const PieceType promoted = candidate.isPromotion() ? pieceType(candidate.promotion()) : NoPieceType;
        if (promoted != promotion) continue;
        if (candidate.isCapture() != capture || candidate.isEnPassant() != enPassant) continue;
        if (capture) {
            // The pawn taken en passant stands on the target's file, so the
            // target's file is the victim's in every case.
            const PieceType taken = candidate.isEnPassant() ? Pawn : pieceType(candidate.captured());
            if (taken != victim.piece || !contains(victim.files, candidate.to())) continue;
        }
        if (!board.isLegalMove(candidate) || !fitsMark(board, candidate, mark)) continue;
        if (anyFound) return MoveAmbiguous;
        found = candidate;
        anyFound = true;
    }
    if (!anyFound) return MoveIllegal;
    move = reverse ? reversed(found) : found;
    return MoveSuccess;
}

}  // namespace tarnfold
