// The move filter: candidate moves from the game, from the move that led
// here, or from the generators, put through the parameters in a fixed order.

#include "chess/bitboard.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"
#include "query/nodes/move_nodes.h"
#include "query/piece_designator.h"

namespace tarnfold::zmf {

// The parameters' values at the position the filter looks from.
struct MoveTests {
    Bitboard from = ~Bitboard(0);
    Bitboard to = ~Bitboard(0);
    Bitboard capture = ~Bitboard(0);
    Bitboard enpassantSquares = 0;
    bool fromGiven = false;
    bool captureGiven = false;
    uint16_t promoteTypes = 0;  // bit per PieceType
    uint16_t dropPieces = 0;    // bit per piece mask letter, white pawn first
};

// What the filter gathers from the moves that pass.
struct MoveTally {
    int64_t count = 0;
    Bitboard from = 0;
    Bitboard to = 0;
    Bitboard captured = 0;
};

namespace {

constexpr uint16_t allPieceLetters = 0x0FFF;

uint16_t designatorMask(const NodePtr& designator) {
    if (!designator) return 0;
    const auto& node = as<PieceDesignatorNode>(*designator);
    uint16_t mask = node.pieceMask.value_or(anyPieceOrEmptyMask);
    // A or a stands for every piece there is.
    if (mask & ((1u << anyWhitePieceBit) | (1u << anyBlackPieceBit))) mask |= allPieceLetters;
    return mask & allPieceLetters;
}

int pieceLetterBit(Piece piece) { return (pieceColor(piece) == White ? 0 : 6) + pieceType(piece); }

// The square of the piece taken: the target, except en passant, where the
// pawn stands beside the origin on the target's file.
Square captureSquare(Move move) {
    if (move.isEnPassant()) return makeSquare(fileOf(move.to()), rankOf(move.from()));
    return move.to();
}

// Every test of a candidate but the speculative body, in the filter's order.
bool passes(const MoveNode& node, const MoveTests& tests, Move move) {
    if (node.null && !move.isNull()) return false;
    if (move.isDrop() && tests.fromGiven) return false;
    if (!(squareBit(move.from()) & tests.from) || !(squareBit(move.to()) & tests.to)) return false;
    if (tests.captureGiven && !(move.isCapture() && (squareBit(captureSquare(move)) & tests.capture)))
        return false;
    if (node.enpassant || tests.enpassantSquares) {
        if (!move.isEnPassant()) return false;
        if (node.enpassantsquare && !(squareBit(captureSquare(move)) & tests.enpassantSquares)) return false;
    }
    switch (node.castle) {
        case MoveCastle::None: break;
        case MoveCastle::Either:
            if (!move.isCastle()) return false;
            break;
        case MoveCastle::Kingside:
            if (!move.isShortCastle()) return false;
            break;
        case MoveCastle::Queenside:
            if (!move.isLongCastle()) return false;
            break;
    }
    if (node.promote &&
        (move.isEdit() || !move.isPromotion() || !(tests.promoteTypes & (1u << pieceType(move.promotion())))))
        return false;
    if (node.drop && (!move.isDrop() || !(tests.dropPieces & (1u << pieceLetterBit(move.moved())))))
        return false;
    return true;
}

// Whether the filter asks nothing of a move but its origin and target,
// which the legal generator tests itself; it lets a drop through whatever
// the origin, though, and a written origin rules drops out.
bool onlySquareTests(const MoveNode& node, const Board& board) {
    return !node.capture && !node.enpassantsquare && !node.enpassant && node.castle == MoveCastle::None &&
           !node.promote && !node.drop && !node.speculativeBody && !node.null &&
           (node.from->implicit || !board.variantRules.hasPockets);
}

void accept(MoveTally& tally, Move move) {
    ++tally.count;
    tally.to |= squareBit(move.to());
    if (!move.isDrop()) tally.from |= squareBit(move.from());
    if (move.isCapture()) tally.captured |= squareBit(captureSquare(move));
}

}  // namespace

// A parameter that does not give a Set counts as not written.
Bitboard ZMFEngine::moveParameter(const NodePtr& parameter, Bitboard otherwise) {
    if (!parameter) return otherwise;
    // An unwritten from or to is every square, whatever the board.
    if (parameter->implicit) return ~Bitboard(0);
    Value value = evaluate(*parameter);
    return value.type() == ValueType::Set ? value.asSet() : otherwise;
}

Value ZMFEngine::eval(const MoveNode& node) {
    MoveTests tests;
    {
        // The squares of `previous` are those of the position the move left.
        const uint32_t saved = current;
        if (node.source == MoveSource::Previous && positions[current].node->parentNode)
            current = positions[current].node->parentAnnotated()->mark;
        tests.from = moveParameter(node.from, ~Bitboard(0));
        tests.to = moveParameter(node.to, ~Bitboard(0));
        tests.capture = moveParameter(node.capture, ~Bitboard(0));
        tests.enpassantSquares = moveParameter(node.enpassantsquare, 0);
        current = saved;
    }
    tests.fromGiven = !node.from->implicit;
    tests.captureGiven = node.capture != nullptr;
    const uint16_t promoteMask = designatorMask(node.promote);
    tests.promoteTypes = uint16_t((promoteMask | promoteMask >> 6) & 0x3F);
    tests.dropPieces = designatorMask(node.drop);

    MoveTally tally;
    switch (node.source) {
        case MoveSource::Game: tally = gameMoves(node, tests); break;
        case MoveSource::Previous: tally = previousMove(node, tests); break;
        case MoveSource::Legal:
        case MoveSource::Pseudolegal: tally = generatedMoves(node, tests); break;
    }
    if (node.count) return Value::numeric(tally.count);
    switch (node.resultKind) {
        case MoveResultKind::Boolean: break;
        case MoveResultKind::From: return Value::set(tally.from);
        case MoveResultKind::To: return Value::set(tally.to);
        case MoveResultKind::Capture: return Value::set(tally.captured);
    }
    return Value::boolean(tally.count > 0);
}

// The moves played from this position: the main continuation first, then
// the variations; a line being matched may allow only one of them.
MoveTally ZMFEngine::gameMoves(const MoveNode& node, const MoveTests& tests) {
    MoveTally tally;
    PGN::AnnotatedGameTreeNode* here = positions[current].node;
    const size_t children = here->children.size();
    size_t first = node.variation == MoveVariation::Secondary ? 1 : 0;
    size_t end = std::min<size_t>(children, 1);
    if (hasVariations && children >= 2 && node.variation != MoveVariation::Primary) end = children;
    // A line being matched takes its own child, if the list holds it.
    if (!lineBranch.empty() && lineBranch.back().restricted && lineBranch.back().position == current) {
        const size_t only = size_t(lineBranch.back().child);
        if (only < first || only >= end) return tally;
        first = only;
        end = only + 1;
    }
    for (size_t index = first; index < end; ++index) {
        PGN::AnnotatedGameTreeNode* child = here->childAnnotated(index);
        const Move move = child->move;
        if (!passes(node, tests, move)) continue;
        if (node.speculativeBody && (current > lastPosition || !speculate(node, move))) continue;
        accept(tally, move);
        if (node.commentBody) {
            const uint32_t saved = current;
            current = child->mark;
            evaluate(*node.commentBody);
            current = saved;
        }
    }
    return tally;
}

// The move that led here, if its place among its siblings suits the filter.
MoveTally ZMFEngine::previousMove(const MoveNode& node, const MoveTests& tests) {
    MoveTally tally;
    PGN::AnnotatedGameTreeNode* here = positions[current].node;
    PGN::AnnotatedGameTreeNode* parent = here->parentAnnotated();
    if (!parent) return tally;
    const bool mainChild = parent->childAnnotated(0) == here;
    if (node.variation == MoveVariation::Primary && !mainChild) return tally;
    if (node.variation == MoveVariation::Secondary && mainChild) return tally;
    if (passes(node, tests, here->move)) accept(tally, here->move);
    return tally;
}

// Generated moves; the list comes from a pool with one list for each
// nesting of the filter inside its own speculative body, so that no
// position allocates.
MoveTally ZMFEngine::generatedMoves(const MoveNode& node, const MoveTests& tests) {
    MoveTally tally;
    if (moveListDepth_ == moveLists_.size()) moveLists_.emplace_back().reserve(reservedMoveListSize);
    MoveList& list = moveLists_[moveListDepth_++];
    list.clear();
    Board& board = mutableBoard();
    const bool legal = node.source == MoveSource::Legal;
    if (node.reverse) {
        if (legal)
            board.generateLegalReverseMoves(list);
        else
            board.generateReverseMoves(list);
    } else {
        if (legal)
            board.generateLegalMoves(list, tests.from, tests.to);
        else
            board.generatePseudoLegalMoves(list);
        const Bitboard kings = board.pieces[board.sideToMove][King];
        if (node.null && kings)
            list.push_back(Move::null(makePiece(King, board.sideToMove), lowestSquare(kings)));
    }
    if (legal && !node.reverse && onlySquareTests(node, board)) {
        // The generator has applied the only tests there are.
        tally.count = int64_t(list.size());
        if (node.count || node.resultKind == MoveResultKind::Boolean) {
            --moveListDepth_;
            return tally;
        }
        tally.count = 0;
    }
    for (const Move move : list) {
        if (!passes(node, tests, move)) continue;
        if (node.speculativeBody && !speculate(node, move)) continue;
        accept(tally, move);
    }
    --moveListDepth_;
    return tally;
}

// Tries the move on the row's board, asks the body, and takes it back.
bool ZMFEngine::speculate(const MoveNode& node, Move move) {
    Board& board = mutableBoard();
    if (board.nextPieceId < maxPieceId) board.nextPieceId = maxPieceId;
    board.makeMove(move);
    const uint32_t here = current;
    const bool holds = evaluate(*node.speculativeBody).isTrue();
    // The body may have added rows, which moves the boards.
    boards[here].unmakeMove();
    return holds;
}

}  // namespace tarnfold::zmf
