#pragma once

// The one mutable object of the chess model: a complete position with its
// placement kept redundantly (squares, bitboards, identities, key) so that
// readers never compute what they can look up, plus the stack of what was
// made on it so that moves are made and unmade in place.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "chess/bitboard.h"
#include "chess/keys.h"
#include "chess/move.h"
#include "chess/types.h"
#include "chess/variant.h"

namespace tarnfold {

// Bit 0 White short, bit 1 Black short, bit 2 White long, bit 3 Black long.
using CastlingRights = uint8_t;
inline constexpr CastlingRights WhiteShort = 1;
inline constexpr CastlingRights BlackShort = 2;
inline constexpr CastlingRights WhiteLong = 4;
inline constexpr CastlingRights BlackLong = 8;
inline constexpr CastlingRights AllCastlingRights = 15;

// Bit number of a right, which also indexes castlingRookSquare.
constexpr int castlingBit(Color color, bool shortSide) { return (shortSide ? 0 : 2) + color; }
constexpr Color castlingColor(int bit) { return Color(bit & 1); }
constexpr bool castlingIsShort(int bit) { return bit < 2; }

// The rule switches derived from the variant; every rule difference in the
// model is a run-time test of one of these.
struct VariantRules {
    bool hasPockets = false;
    bool countsChecks = false;
    bool mandatoryCapture = false;
    bool kingsNotRoyal = false;
    bool kingPromotion = false;
    bool noCastling = false;
    bool stalemateWins = false;
    bool checkmateWins = false;
    bool stalemateByCount = false;
    bool bareWins = false;
    bool kingsAdjacentSafe = false;
    bool explosions = false;
    bool noCheckGiving = false;
    bool blackMayEqual = false;

    bool operator==(const VariantRules&) const = default;
};

VariantRules variantRulesFor(Variant variant);
Bitboard variantGoalSquares(Variant variant);

// What unmaking a move needs back. The move is kept as its raw 32-bit value.
struct UndoRecord {
    uint32_t move = 0;
    Square previousEnPassantSquare = NoSquare;
    bool previousEnPassantCapturable = false;
    CastlingRights previousCastlingRights = 0;
    uint32_t previousHalfmoveClock = 0;
    uint64_t previousKey = 0;
    uint16_t capturedPieceId = 0;
    // For a reverse move: whether the piece that went back was marked promoted.
    bool capturedWasPromoted = false;
    uint32_t explosionCount = 0;
    // Not derivable from the move: a three-check count already at 0 is not
    // lowered, and reverse moves and edits hand out identities.
    std::array<uint8_t, 2> previousChecksRemaining = {0, 0};
    uint16_t previousNextPieceId = 0;

    bool operator==(const UndoRecord&) const = default;
};

// One piece removed by an atomic explosion.
struct ExplosionRecord {
    uint16_t square = 0;
    uint16_t id = 0;
    Piece piece = NoPiece;
    bool promoted = false;

    bool operator==(const ExplosionRecord&) const = default;
};

struct FenOptions {
    bool markPromoted = false;
    bool zeroHalfmoveClock = false;
    bool unitFullmoveNumber = false;
    // 0: pocket as a ninth rank, 1: pocket in brackets, 2: pocket and
    // promoted squares as two fields after the clocks.
    int pocketStyle = 0;
    bool alwaysFileLetters = false;
    // 0: remaining checks before the clocks, 1: checks given after them.
    int checkStyle = 0;
};

// Error code in the low half, character position in the high half.
using FenError = uint64_t;

enum FenErrorCode : uint32_t {
    FenInvalidCharacter = 0,
    FenInvalidNumber = 1,
    FenConsecutiveNumbers = 2,
    FenTooFewSquares = 3,
    FenTooManySquares = 4,
    FenTooFewRanks = 5,
    FenTooManyRanks = 6,
    FenInvalidSide = 7,
    FenInvalidCastling = 8,
    FenInvalidEnPassant = 9,
    FenInvalidHalfmoveClock = 10,
    FenInvalidFullmoveCounter = 11,
    FenIncomplete = 12,
};

constexpr FenError makeFenError(uint32_t code, uint32_t position) {
    return (uint64_t(position) << 32) | code;
}
constexpr uint32_t fenErrorCode(FenError error) { return uint32_t(error); }
constexpr uint32_t fenErrorPosition(FenError error) { return uint32_t(error >> 32); }

// The text of a code; an unknown code gives an empty text.
std::string_view fenErrorText(uint32_t code);
// Two lines and a caret line pointing at the position of the error.
std::string fenErrorMessage(std::string_view text, FenError error);

inline constexpr std::string_view startFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// Options of the terminal diagram. background[dark][highlightBits] is the
// 256-colour number of a square, where bit i of highlightBits says that the
// square lies in highlights[i].
struct ColoredDiagramOptions {
    bool glyphs = false;
    bool fileLetters = true;
    bool rankLeft = true;
    bool rankRight = false;
    std::array<Bitboard, 3> highlights = {0, 0, 0};
    std::array<std::array<std::string, 8>, 2> background;
};

class Board {
public:
    explicit Board(Variant variant = Standard);

    std::array<std::array<uint8_t, 6>, 2> pocket;
    std::array<std::array<Bitboard, 6>, 2> pieces;
    std::array<Bitboard, 6> byType;
    std::array<Bitboard, 2> byColor;
    Bitboard occupied;
    Bitboard promoted;
    Color sideToMove;
    Square enPassantSquare;
    bool enPassantCapturable;
    uint32_t plyCount;
    uint32_t fullmoveNumber;
    uint32_t halfmoveClock;
    CastlingRights castlingRights;
    std::array<Piece, 64> squares;
    std::array<uint16_t, 64> pieceIds;
    std::vector<UndoRecord> moveStack;
    std::vector<ExplosionRecord> explosions;
    uint64_t key;
    uint16_t nextPieceId;
    Variant variant = Standard;
    std::array<Square, 4> castlingRookSquare;
    std::array<Square, 2> kingHomeSquare;
    std::array<uint8_t, 2> checksRemaining;
    Bitboard goalSquares = 0;
    VariantRules variantRules;

    // Every field, the move stack and explosions included.
    bool operator==(const Board&) const = default;

    // Empties the board; the variant and its switches survive.
    void reset();
    void setVariant(Variant newVariant);

    // The only way a placement changes: whatever stands on the square goes
    // off every bitboard, the promoted set and the key before piece (or
    // nothing, for NoPiece) is put there.
    void setPiece(Square square, Piece piece, uint16_t id = 0, bool markPromoted = false);
    Piece pieceOn(Square square) const { return squares[square]; }

    // Reads FEN, with the pocket and three-check extensions. With errors
    // given, every error found is appended and the scan goes on as far as it
    // can; without, it stops at the first.
    bool setFen(std::string_view text, std::vector<FenError>* errors = nullptr);
    void setStartPosition();
    std::string toFen(const FenOptions& options = {}) const;

    void setEnPassant(Square square);
    void setSideToMove(Color color);
    void setCastlingRights(CastlingRights rights);
    // Drops every right whose rook and king do not stand unpromoted on their
    // homes; with standardHomes the homes must be the ordinary ones (e1/e8,
    // h1/a1/h8/a8) whatever castlingRookSquare and kingHomeSquare say.
    void cutCastlingRights(bool standardHomes = false);

    void addPocket(Piece piece);
    void removePocket(Piece piece);
    void setPocketCount(Piece piece, uint8_t count);
    uint8_t pocketCount(Piece piece) const { return pocket[pieceColor(piece)][pieceType(piece)]; }

    // The key computed from scratch, the placement part of it, the rest of
    // it, and the key with the pieces outside the squares taken out (with or
    // without the state part).
    uint64_t fullKey() const;
    uint64_t pieceKey() const;
    uint64_t stateKey() const;
    uint64_t maskedKey(Bitboard squareSet, bool withState = true) const;

    std::string boardDiagram(bool glyphs = false) const;
    std::string boardDiagramColored(const ColoredDiagramOptions& options) const;

    // Attacks at the current occupancy unless one is given.
    Bitboard attackersTo(Square square, Color color) const { return attackersTo(square, color, occupied); }
    Bitboard attackersTo(Square square, Color color, Bitboard occupancy) const;
    Bitboard attackedSquares(Color color, Bitboard occupancy) const;
    Bitboard attacksFrom(Square square) const;
    // Replaces the three sets by the pinning sliders among candidates, the
    // pieces they pin and the pieces pinned to.
    void pins(Bitboard& candidates, Bitboard& throughSet, Bitboard& targetSet) const;
    bool isInCheck(Color color) const;
    // The unpromoted king of the colour if it has exactly one, else NoSquare.
    Square royalKingSquare(Color color) const;

    // Legal moves from fromSet to toSet (a drop is judged by its target). With
    // withoutKingSafety the caller tests each candidate with isLegalMove.
    void generateLegalMoves(MoveList& list, Bitboard fromSet = ~Bitboard(0), Bitboard toSet = ~Bitboard(0),
                            bool withoutKingSafety = false);
    void generatePseudoLegalMoves(MoveList& list);
    void generateReverseMoves(MoveList& list);
    void generateLegalReverseMoves(MoveList& list);
    bool isLegalMove(Move move);
    bool isPseudoLegal(Move move);
    bool hasLegalMove();
    bool isCheckmate();
    bool isStalemate();

    bool isVariantEnd() const;
    bool isVariantWin();
    bool isVariantLoss();
    bool isVariantDraw();

    // Plays a move, a reverse move, a null move or an editing step in place;
    // unmakeMove takes back the last one.
    void makeMove(Move move);
    void unmakeMove();

private:
    // Generation in the documented order, before the variant filters that
    // need trial moves.
    void generateMoves(MoveList& list, Bitboard fromSet, Bitboard toSet, bool withoutKingSafety,
                       bool variantCuts);
    void generateCastling(MoveList& list, Square king, Bitboard toSet);
    void generateDrops(MoveList& list, Bitboard empties);
    void keepLegal(MoveList& list);
    UndoRecord& pushUndoRecord(Move move);
    void makeReverse(Move move, UndoRecord& record);
    void unmakeReverse(const UndoRecord& record);
    void makeEdit(Move move);
    void unmakeEdit(const UndoRecord& record);
    Bitboard explode(Square center);
    void dropRightsTouching(Bitboard touched);
    void moveCastlers(Square kingFrom, Square kingTo, Square rookFrom, Square rookTo);

    uint64_t pocketKeyPart() const;
    uint64_t castlingKeyPart(CastlingRights rights) const;
};

// Inline: making and unmaking a move is mostly this.
inline void Board::setPiece(Square square, Piece piece, uint16_t id, bool markPromoted) {
    const Bitboard bit = squareBit(square);
    const Piece old = squares[square];
    if (old != NoPiece) {
        pieces[pieceColor(old)][pieceType(old)] &= ~bit;
        byType[pieceType(old)] &= ~bit;
        byColor[pieceColor(old)] &= ~bit;
        occupied &= ~bit;
        key ^= pieceSquareKey(old, square);
    }
    promoted &= ~bit;
    squares[square] = piece;
    if (piece == NoPiece) {
        pieceIds[square] = 0;
        return;
    }
    pieces[pieceColor(piece)][pieceType(piece)] |= bit;
    byType[pieceType(piece)] |= bit;
    byColor[pieceColor(piece)] |= bit;
    occupied |= bit;
    key ^= pieceSquareKey(piece, square);
    pieceIds[square] = id;
    if (markPromoted) promoted |= bit;
}

// The back rank of a Chess960 start position ("RNBQKBNR" for 518); empty for
// 960 and above.
std::string chess960Position(int number);
// The number of a back rank, or a negative code of the first check failed.
int validateChess960(std::string_view letters);
std::string_view chess960ErrorText(int code);

}  // namespace tarnfold
