// Filters on the squares of the row's board: square colours, files and
// ranks, the piece on a square, material, squares built from numbers or
// names, piece identities, attacks between sets and the lines between them.

#include <cstdint>
#include <utility>

#include "chess/attacks.h"
#include "chess/bitboard.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

// The square of a one-square Set; NoSquare for any other value.
Square singleSquare(const Value& value) {
    if (!value.is(ValueType::Set)) return NoSquare;
    const Bitboard set = value.asSet();
    if (set == 0 || moreThanOne(set)) return NoSquare;
    return lowestSquare(set);
}

// Pawn 1 up to king 6: a type's number as the filters show it.
int64_t typeNumber(Piece piece) { return piece == NoPiece ? 0 : int64_t(pieceType(piece)) + 1; }

Bitboard bothColorsAttacking(const Board& board, Square square) {
    return board.attackersTo(square, White) | board.attackersTo(square, Black);
}

// A piece of either operand is an end of some pair, so it stays out even
// where another pair's line runs across it.
Bitboard betweenByPairs(Bitboard left, Bitboard right) {
    Bitboard result = 0;
    for (Bitboard from = left; from;) {
        const Square a = popLowest(from);
        for (Bitboard to = right; to;) {
            const Square b = popLowest(to);
            result |= betweenInclusive[a][b];
        }
    }
    return result & ~(left | right);
}

// The same set without the pairs: a square is strictly between two others
// exactly when one operand lies along some ray from it and the other along
// the opposite ray, since occupancy plays no part.
Bitboard betweenByRays(Bitboard left, Bitboard right) {
    Bitboard result = 0;
    for (Bitboard candidates = ~(left | right); candidates;) {
        const Square square = popLowest(candidates);
        for (int ray = 0; ray < rayDirectionCount; ++ray) {
            if ((rayAttacks[ray][square] & left) && (rayAttacks[ray ^ 4][square] & right)) {
                result |= squareBit(square);
                break;
            }
        }
    }
    return result;
}

// The files of the set spread over the whole board.
Bitboard filesOf(Bitboard set) {
    Bitboard files = 0;
    for (int file = 0; file < 8; ++file)
        if (set & fileMask[file]) files |= fileMask[file];
    return files;
}

Bitboard neighbourFiles(Bitboard files) {
    return ((files & ~fileMask[7]) << 1) | ((files & ~fileMask[0]) >> 1);
}

Bitboard doubledPawns(Bitboard pawns) {
    Bitboard result = 0;
    for (int file = 0; file < 8; ++file)
        if (moreThanOne(pawns & fileMask[file])) result |= pawns & fileMask[file];
    return result;
}

// The ranks beyond the square's rank as seen by a pawn of the colour:
// toward rank 8 for White, toward rank 1 for Black.
Bitboard ranksAhead(Square square, Color color) {
    const int rank = rankOf(square);
    if (color == Black) return (Bitboard(1) << (8 * rank)) - 1;
    return rank == 7 ? 0 : ~Bitboard(0) << (8 * (rank + 1));
}

Bitboard passedPawns(Bitboard pawns, Bitboard enemyPawns, Color color) {
    Bitboard result = 0;
    for (Bitboard squares = pawns; squares;) {
        const Square square = popLowest(squares);
        const Bitboard file = fileMask[fileOf(square)];
        if (!(enemyPawns & (file | neighbourFiles(file)) & ranksAhead(square, color)))
            result |= squareBit(square);
    }
    return result;
}

// Below this many pairs the pair table is cheaper; from it on the scan of
// the 64 squares has the smaller bound.
constexpr int betweenPairLimit = 64;

}  // namespace

Value ZMFEngine::eval(const LightNode& node) {
    const Value operand = evaluate(*node.operand);
    return operand.is(ValueType::Set) ? Value::set(operand.asSet() & lightSquares) : Value();
}

Value ZMFEngine::eval(const DarkNode& node) {
    const Value operand = evaluate(*node.operand);
    return operand.is(ValueType::Set) ? Value::set(operand.asSet() & darkSquares) : Value();
}

Value ZMFEngine::eval(const FileNode& node) {
    const Square square = singleSquare(evaluate(*node.operand));
    return square == NoSquare ? Value() : Value::numeric(fileOf(square) + 1);
}

Value ZMFEngine::eval(const RankNode& node) {
    const Square square = singleSquare(evaluate(*node.operand));
    return square == NoSquare ? Value() : Value::numeric(rankOf(square) + 1);
}

Value ZMFEngine::eval(const ColortypeNode& node) {
    const Square square = singleSquare(evaluate(*node.operand));
    if (square == NoSquare) return Value();
    const Piece piece = board().squares[square];
    const int64_t type = typeNumber(piece);
    return Value::numeric(piece != NoPiece && pieceColor(piece) == Black ? -type : type);
}

Value ZMFEngine::eval(const TypeNode& node) {
    const Square square = singleSquare(evaluate(*node.operand));
    return square == NoSquare ? Value() : Value::numeric(typeNumber(board().squares[square]));
}

Value ZMFEngine::eval(const PowerNode& node) {
    const Value operand = evaluate(*node.operand);
    if (!operand.is(ValueType::Set)) return Value();
    const Bitboard set = operand.asSet();
    const Board& position = board();
    // Pawn, knight, bishop, rook, queen, king.
    constexpr int64_t worth[6] = {1, 3, 3, 5, 9, 0};
    int64_t total = 0;
    for (PieceType type = Pawn; type < NoPieceType; ++type)
        total += worth[type] * popCount(set & position.byType[type]);
    return Value::numeric(total);
}

Value ZMFEngine::eval(const MakesquareNode& node) {
    if (node.operand) {
        const Value name = evaluate(*node.operand);
        if (!name.is(ValueType::String)) return Value();
        const ZmfString& text = name.asString();
        if (text->length() != 2 || text->text().length() != 2) return Value::set(0);
        const char16_t file = text->text().charAt(0), rank = text->text().charAt(1);
        // Lower case only: "A1" names no square.
        if (file < u'a' || file > u'h' || rank < u'1' || rank > u'8') return Value::set(0);
        return Value::set(squareBit(makeSquare(file - u'a', rank - u'1')));
    }
    auto [file, rank] = evaluateOperands(*this, node);
    if (!file.is(ValueType::Numeric) || !rank.is(ValueType::Numeric)) return Value();
    const int64_t f = file.asNumeric(), r = rank.asNumeric();
    if (f < 1 || f > 8 || r < 1 || r > 8) return Value::set(0);
    return Value::set(squareBit(makeSquare(int(f - 1), int(r - 1))));
}

Value ZMFEngine::eval(const PromotedpiecesNode&) { return Value::set(board().promoted & board().occupied); }

Value ZMFEngine::eval(const PieceidNode& node) {
    const Value operand = evaluate(*node.operand);
    if (operand.is(ValueType::Piece))
        return operand.asPieceId() != 0 ? Value::numeric(operand.asPieceId()) : Value();
    const Square square = singleSquare(operand);
    if (square == NoSquare || board().squares[square] == NoPiece) return Value();
    return Value::numeric(board().pieceIds[square]);
}

Value ZMFEngine::eval(const PieceIDToSetConversionNode& node) {
    const Value operand = evaluate(*node.operand);
    if (!operand.is(ValueType::Piece)) return Value();
    const uint16_t id = operand.asPieceId();
    const Board& position = board();
    for (Bitboard pieces = id ? position.occupied : 0; pieces;) {
        const Square square = popLowest(pieces);
        if (position.pieceIds[square] == id) return Value::set(squareBit(square));
    }
    return Value::set(0);
}

Value ZMFEngine::eval(const AttacksNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    if (!left.is(ValueType::Set) || !right.is(ValueType::Set)) return Value();
    Bitboard attackers = 0;
    for (Bitboard targets = right.asSet(); targets;)
        attackers |= bothColorsAttacking(board(), popLowest(targets));
    return Value::set(attackers & left.asSet());
}

Value ZMFEngine::eval(const AttackedByNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    if (!left.is(ValueType::Set) || !right.is(ValueType::Set)) return Value();
    Bitboard result = 0;
    for (Bitboard squares = left.asSet(); squares;) {
        const Square square = popLowest(squares);
        if (bothColorsAttacking(board(), square) & right.asSet()) result |= squareBit(square);
    }
    return Value::set(result);
}

Value ZMFEngine::eval(const BetweenNode& node) {
    auto [left, right] = evaluateOperands(*this, node);
    if (!left.is(ValueType::Set) || !right.is(ValueType::Set)) return Value();
    const Bitboard from = left.asSet(), to = right.asSet();
    if (from == 0 || to == 0) return Value::set(0);
    if (popCount(from) * popCount(to) < betweenPairLimit) return Value::set(betweenByPairs(from, to));
    return Value::set(betweenByRays(from, to));
}

Value ZMFEngine::eval(const PawnQueryNode& node) {
    const Bitboard white = board().pieces[White][Pawn], black = board().pieces[Black][Pawn];
    // A pawn is isolated exactly when it is not connected.
    const Bitboard connected =
        (white & neighbourFiles(filesOf(white))) | (black & neighbourFiles(filesOf(black)));
    switch (PawnQueryNode::Mode(node.mode)) {
        case PawnQueryNode::Connected: return Value::set(connected);
        case PawnQueryNode::Doubled: return Value::set(doubledPawns(white) | doubledPawns(black));
        case PawnQueryNode::Isolated: return Value::set((white | black) & ~connected);
        case PawnQueryNode::Passed:
            return Value::set(passedPawns(white, black, White) | passedPawns(black, white, Black));
    }
    return Value();
}

// square and piece: the body at each square in turn, a1 to h8, with the
// variable bound to what `binding` makes of the square; a square it gives
// None for is skipped. The slot is looked up afresh at each binding, as the
// body may move the store on.
template <typename IterationNode, typename Binding>
Value iterate(ZMFEngine& engine, const IterationNode& node, Bitboard squares, Binding binding) {
    Bitboard result = 0;
    while (squares) {
        const Square square = popLowest(squares);
        Value bound = binding(square);
        if (bound.isNone()) continue;
        engine.variables.resolve(node.slot) = std::move(bound);
        if (engine.evaluate(*node.body).isTrue()) {
            result |= squareBit(square);
        } else if (node.all) {
            return Value::boolean(false);
        }
    }
    return node.all ? Value::boolean(true) : Value::set(result);
}

Value ZMFEngine::eval(const SquareNode& node) {
    const Value operand = evaluate(*node.set);
    if (!operand.is(ValueType::Set)) return Value();
    return iterate(*this, node, operand.asSet(), [](Square square) { return Value::set(squareBit(square)); });
}

Value ZMFEngine::eval(const PieceNode& node) {
    const Value operand = evaluate(*node.set);
    if (!operand.is(ValueType::Set)) return Value();
    const Board& position = board();
    return iterate(*this, node, operand.asSet() & position.occupied, [&position](Square square) {
        const uint16_t id = position.pieceIds[square];
        return id ? Value::pieceId(id) : Value();
    });
}

Value ZMFEngine::eval(const PieceAssignNode& node) {
    const Square square = singleSquare(evaluate(*node.operand));
    if (square == NoSquare || board().pieceIds[square] == 0) return Value();
    variables.resolve(node.slot) = Value::pieceId(board().pieceIds[square]);
    return Value::boolean(true);
}

}  // namespace tarnfold::zmf
