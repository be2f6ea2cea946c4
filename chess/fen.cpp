#include <array>
#include <optional>

#include "chess/board.h"
#include "chess/names.h"

namespace tarnfold {

namespace {

constexpr std::array<std::string_view, 13> fenErrorTexts = {
    "invalid character",
    "invalid number",
    "consecutive numbers",
    "too few squares for rank",
    "too many squares for rank",
    "too few ranks",
    "too many ranks",
    "invalid side descriptor",
    "invalid castling descriptor",
    "invalid en passant square",
    "invalid half-move clock",
    "invalid fullmove counter",
    "incomplete FEN",
};

// White space as the C locale has it, independent of the process locale.
constexpr bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isPieceLetter(char c) { return pieceFromChar(c) != NoPiece; }

}  // namespace

std::string_view fenErrorText(uint32_t code) {
    return code < fenErrorTexts.size() ? fenErrorTexts[code] : std::string_view();
}

std::string fenErrorMessage(std::string_view text, FenError error) {
    std::string message = "Error parsing FEN string: ";
    message.append(fenErrorText(fenErrorCode(error)));
    message.push_back('\n');
    message.append(text);
    message.push_back('\n');
    message.append(fenErrorPosition(error), ' ');
    message.append("^\n");
    return message;
}

namespace {

// One pass over a FEN text. Every step returns false when reading must stop:
// at the end of the text, or at any error when nobody collects errors.
class FenReader {
public:
    FenReader(Board& board, std::string_view text, std::vector<FenError>* errors)
        : board(board), text(text), errors(errors) {}

    bool run() {
        board.reset();
        if (!placement() || !side() || !castling() || !enPassant()) return false;
        if (board.variantRules.countsChecks) remainingChecks();
        if (!halfmoveClock() || !fullmoveNumber()) return false;
        if (board.variantRules.countsChecks) givenChecks();
        if (board.variantRules.hasPockets && !pocketRead) trailingPocket();
        return !failed;
    }

private:
    Board& board;
    std::string_view text;
    std::vector<FenError>* errors;
    size_t at = 0;
    bool failed = false;
    bool pocketRead = false;

    bool atEnd() const { return at >= text.size(); }
    char peek(size_t ahead = 0) const { return at + ahead < text.size() ? text[at + ahead] : '\0'; }
    void skipBlanks() {
        while (!atEnd() && isBlank(text[at])) ++at;
    }
    void skipField() {
        while (!atEnd() && !isBlank(text[at])) ++at;
    }

    // Records the error; whether the scan may go on.
    bool fail(uint32_t code, size_t position) {
        failed = true;
        if (errors) errors->push_back(makeFenError(code, uint32_t(position)));
        return errors != nullptr;
    }

    // Skips blanks before a field; an exhausted text is always the end.
    bool startField() {
        skipBlanks();
        if (!atEnd()) return true;
        fail(FenIncomplete, at);
        return false;
    }

    void pocket() {
        pocketRead = true;
        if (atEnd()) return;
        if (text[at] == '-') {
            ++at;
            return;
        }
        while (!atEnd() && isPieceLetter(text[at])) board.addPocket(pieceFromChar(text[at++]));
    }

    bool placement() {
        if (!startField()) return false;
        int rank = 7, file = 0;
        const size_t start = at;
        while (!atEnd() && !isBlank(text[at])) {
            const char c = text[at];
            if (c == '/') {
                if (rank == 0) {
                    if (board.variantRules.hasPockets && !pocketRead) {
                        ++at;
                        pocket();
                        continue;
                    }
                    if (!fail(FenTooManyRanks, at)) return false;
                    skipField();
                    break;
                }
                if (file < 8 && !fail(FenTooFewSquares, at)) return false;
                --rank;
                file = 0;
                ++at;
            } else if (c == '0' || c == '9') {
                if (!fail(FenInvalidNumber, at)) return false;
                ++at;
            } else if (isDigit(c)) {
                const int run = c - '0';
                if (at > start && isDigit(text[at - 1])) {
                    if (!fail(FenConsecutiveNumbers, at)) return false;
                } else if (file + run > 8) {
                    if (!fail(FenTooManySquares, at)) return false;
                    file = 8;
                } else {
                    file += run;
                }
                ++at;
            } else if (isPieceLetter(c)) {
                if (file >= 8) {
                    if (!fail(FenTooManySquares, at)) return false;
                    ++at;
                    continue;
                }
                const Piece piece = pieceFromChar(c);
                const Square square = makeSquare(file++, rank);
                board.setPiece(square, piece, board.nextPieceId++);
                ++at;
                if (peek() == '~') {
                    ++at;
                    if (pieceType(piece) != Pawn) board.promoted |= squareBit(square);
                }
            } else if (c == '[' && board.variantRules.hasPockets && rank == 0 && file == 8 && !pocketRead) {
                ++at;
                pocket();
                if (peek() == ']') ++at;
            } else {
                if (!fail(FenInvalidCharacter, at)) return false;
                ++at;
            }
        }
        const size_t last = at - 1;
        if (rank != 0) {
            if (!fail(FenTooFewRanks, last)) return false;
        } else if (file < 8) {
            if (!fail(FenTooFewSquares, last)) return false;
        }
        return true;
    }

    bool side() {
        if (!startField()) return false;
        const char c = text[at];
        if (c == 'w' || c == 'b') {
            board.setSideToMove(c == 'w' ? White : Black);
            ++at;
            return true;
        }
        if (!fail(FenInvalidSide, at)) return false;
        skipField();
        return true;
    }

    bool castling() {
        if (!startField()) return false;
        CastlingRights rights = 0;
        while (!atEnd() && !isBlank(text[at])) {
            const char c = text[at];
            if (c == '-') {
                ++at;
                break;
            }
            const bool white = c >= 'A' && c <= 'Z';
            const char lower = white ? char(c - 'A' + 'a') : c;
            const bool named = lower == 'k' || lower == 'q';
            const bool byFile = lower >= 'a' && lower <= 'h';
            if (!named && !byFile) {
                if (!fail(FenInvalidCastling, at)) return false;
                skipField();
                break;
            }
            ++at;
            const Color color = white ? White : Black;
            const int backRank = white ? 0 : 7;
            const Bitboard homeRank = rankMask[backRank];
            const Bitboard kings = board.pieces[color][King] & ~board.promoted;
            if (!kings || moreThanOne(kings) || !(kings & homeRank)) continue;
            const Square king = lowestSquare(kings);
            const Bitboard rooks = board.pieces[color][Rook] & homeRank;
            Square rook;
            bool shortSide;
            if (named) {
                if (!rooks) continue;
                shortSide = lower == 'k';
                rook = shortSide ? highestSquare(rooks) : lowestSquare(rooks);
                if (shortSide ? king >= rook : king <= rook) continue;
            } else {
                rook = makeSquare(lower - 'a', backRank);
                shortSide = king < rook;
            }
            if (contains(board.promoted, rook)) continue;
            const int bit = castlingBit(color, shortSide);
            board.castlingRookSquare[bit] = rook;
            board.kingHomeSquare[color] = king;
            rights |= CastlingRights(1 << bit);
        }
        board.setCastlingRights(rights);
        board.cutCastlingRights();
        return true;
    }

    bool enPassant() {
        if (!startField()) return false;
        if (text[at] == '-') {
            ++at;
            return true;
        }
        const Square square = parseSquare(text.substr(at));
        if (square == NoSquare) {
            if (!fail(FenInvalidEnPassant, at)) return false;
            skipField();
            return true;
        }
        at += 2;
        // A square on another rank cannot follow a double step; it is dropped.
        if (rankOf(square) == 2 || rankOf(square) == 5) board.setEnPassant(square);
        return true;
    }

    void remainingChecks() {
        skipBlanks();
        if (isDigit(peek()) && peek(1) == '+' && isDigit(peek(2))) {
            board.checksRemaining = {uint8_t(peek() - '0'), uint8_t(peek(2) - '0')};
            at += 3;
        }
    }

    void givenChecks() {
        skipBlanks();
        if (peek() == '+' && isDigit(peek(1)) && peek(2) == '+' && isDigit(peek(3))) {
            for (int color = 0; color < 2; ++color) {
                const int given = peek(1 + 2 * color) - '0';
                uint8_t& remaining = board.checksRemaining[color];
                remaining = uint8_t(remaining > given ? remaining - given : 0);
            }
            at += 4;
        }
    }

    // Digits up to white space; in three-check a '+' also ends the number,
    // since the checks given may follow the fullmove number directly.
    bool number(uint32_t& value, uint32_t code) {
        if (!startField()) return false;
        value = 0;
        while (!atEnd() && !isBlank(text[at])) {
            const char c = text[at];
            if (c == '+' && board.variantRules.countsChecks && code == FenInvalidFullmoveCounter) break;
            if (!isDigit(c)) {
                if (!fail(code, at)) return false;
                skipField();
                break;
            }
            value = value * 10 + uint32_t(c - '0');
            ++at;
        }
        return true;
    }

    bool halfmoveClock() { return number(board.halfmoveClock, FenInvalidHalfmoveClock); }

    bool fullmoveNumber() {
        if (!number(board.fullmoveNumber, FenInvalidFullmoveCounter)) return false;
        if (board.fullmoveNumber == 0) board.fullmoveNumber = 1;
        return true;
    }

    // The pocket and the promoted squares as two fields after the clocks.
    void trailingPocket() {
        skipBlanks();
        pocket();
        skipBlanks();
        if (atEnd() || text[at] == '-') return;
        while (at + 1 < text.size() && !isBlank(text[at])) {
            const char file = text[at], rank = text[at + 1];
            at += 2;
            if (file < 'a' || file > 'h' || rank < '1' || rank > '8') continue;
            const Square square = makeSquare(file - 'a', rank - '1');
            if (board.squares[square] != NoPiece && pieceType(board.squares[square]) != Pawn)
                board.promoted |= squareBit(square);
        }
    }
};

}  // namespace

bool Board::setFen(std::string_view text, std::vector<FenError>* errors) {
    return FenReader(*this, text, errors).run();
}

// Every game starts here, twice: the position read for the last rule set
// is kept and copied.
void Board::setStartPosition() {
    thread_local std::optional<Board> start;
    if (start && start->variant == variant && start->variantRules == variantRules) {
        *this = *start;
        return;
    }
    setFen(startFen);
    start = *this;
}

namespace {

std::string pocketText(const Board& board) {
    std::string text;
    for (Color color : {White, Black})
        for (PieceType type = Pawn; type < NoPieceType; ++type)
            text.append(board.pocket[color][type], pieceChar(makePiece(type, color)));
    return text;
}

}  // namespace

std::string Board::toFen(const FenOptions& options) const {
    std::string fen;
    fen.reserve(96);
    const bool markTilde = options.markPromoted || (variantRules.hasPockets && options.pocketStyle != 2);
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int file = 0; file < 8; ++file) {
            const Square square = makeSquare(file, rank);
            const Piece piece = squares[square];
            if (piece == NoPiece) {
                ++empty;
                continue;
            }
            if (empty) fen.push_back(char('0' + empty));
            empty = 0;
            fen.push_back(pieceChar(piece));
            if (markTilde && contains(promoted, square)) fen.push_back('~');
        }
        if (empty) fen.push_back(char('0' + empty));
        if (rank) fen.push_back('/');
    }
    if (variantRules.hasPockets && options.pocketStyle == 0) {
        fen.push_back('/');
        fen.append(pocketText(*this));
    } else if (variantRules.hasPockets && options.pocketStyle == 1) {
        fen.push_back('[');
        fen.append(pocketText(*this));
        fen.push_back(']');
    }
    fen.append(sideToMove == White ? " w " : " b ");

    if (!castlingRights) fen.push_back('-');
    for (int bit : {0, 2, 1, 3}) {
        if (!(castlingRights & (1 << bit))) continue;
        const Color color = castlingColor(bit);
        const bool shortSide = castlingIsShort(bit);
        const Square rook = castlingRookSquare[bit];
        // Rooks farther out on the same wing would make K or Q name them.
        const Bitboard rank = rankMask[rankOf(rook)];
        const Bitboard beyond =
            shortSide ? rank & ~((squareBit(rook) << 1) - 1) : rank & (squareBit(rook) - 1);
        char letter;
        if (options.alwaysFileLetters || (pieces[color][Rook] & beyond))
            letter = char('a' + fileOf(rook));
        else
            letter = shortSide ? 'k' : 'q';
        fen.push_back(color == White ? char(letter - 'a' + 'A') : letter);
    }

    fen.push_back(' ');
    fen.append(enPassantSquare == NoSquare ? std::string_view("-") : squareName(enPassantSquare));
    if (variantRules.countsChecks && options.checkStyle == 0) {
        fen.push_back(' ');
        fen.append(std::to_string(checksRemaining[White]));
        fen.push_back('+');
        fen.append(std::to_string(checksRemaining[Black]));
    }
    fen.push_back(' ');
    fen.append(std::to_string(options.zeroHalfmoveClock ? 0 : halfmoveClock));
    fen.push_back(' ');
    fen.append(std::to_string(options.unitFullmoveNumber ? 1 : fullmoveNumber));
    if (variantRules.countsChecks && options.checkStyle == 1) {
        for (int color = 0; color < 2; ++color) {
            fen.push_back('+');
            fen.append(std::to_string(checksRemaining[color] > 3 ? 0 : 3 - checksRemaining[color]));
        }
    }
    if (variantRules.hasPockets && options.pocketStyle == 2) {
        const std::string held = pocketText(*this);
        fen.push_back(' ');
        fen.append(held.empty() ? "-" : held);
        fen.push_back(' ');
        if (!promoted) fen.push_back('-');
        for (Bitboard rest = promoted; rest;) fen.append(squareName(popLowest(rest)));
    }
    return fen;
}

}  // namespace tarnfold
