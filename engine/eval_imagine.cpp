// imagine, saveposition and currentmutation. An imagined board is the row's
// own board with editing steps made on it (pieces placed, squares swapped,
// the side to move changed) and taken back afterwards; its move stack is the
// list of those changes, and of any move a speculative `move` made.

#include "chess/names.h"
#include "chess/notation.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"
#include "query/nodes/imagine_nodes.h"

namespace tarnfold::zmf {

namespace {

bool singleSquare(const Value& value) {
    return value.is(ValueType::Set) && value.asSet() != 0 && (value.asSet() & (value.asSet() - 1)) == 0;
}

// One change as currentmutation writes it; the board stands before it.
std::string mutationText(Board& board, Move move) {
    std::string text("<");
    if (!move.isEdit()) {
        text.append(moveToText(board, move));
    } else if (move.editCode() == EditAdd) {
        text.push_back(pieceChar(move.moved()));
        text.append(squareName(move.to()));
    } else if (move.editCode() == EditRemove) {
        text.append("remove ").append(squareName(move.to()));
    } else if (move.editCode() == EditSwap) {
        text.append("swap ").append(squareName(move.from())).append(" ").append(squareName(move.to()));
    } else {
        // The side that is to move once the change is made.
        text.append(board.sideToMove == White ? "btm" : "wtm");
    }
    text.push_back('>');
    return text;
}

}  // namespace

// Makes the specifiers' changes in order, each evaluated on the board the
// earlier ones left, then the body; then takes back exactly what was made.
Value ZMFEngine::eval(const ImagineNode& node) {
    const uint32_t here = current;
    if (boards[here].nextPieceId < maxPieceId) boards[here].nextPieceId = maxPieceId;
    uint32_t made = 0;
    auto make = [&](Move move) {
        boards[here].makeMove(move);
        ++made;
    };
    for (const NodePtr& specifier : node.specifiers) {
        if (specifier->kind == NodeKind::ImaginePiece) {
            const auto& piece = as<ImaginePieceNode>(*specifier);
            const Value squares = evaluate(*piece.operand);
            if (!squares.is(ValueType::Set)) continue;
            for (Bitboard rest = squares.asSet(); rest != 0; rest &= rest - 1) {
                const Square square = Square(std::countr_zero(rest));
                make(Move::edit(EditAdd, piece.piece, square, square, boards[here].squares[square]));
            }
        } else if (specifier->kind == NodeKind::ImagineSwap) {
            const auto& swap = as<ImagineSwapNode>(*specifier);
            const Value left = evaluate(*swap.left), right = evaluate(*swap.right);
            if (!singleSquare(left) || !singleSquare(right)) continue;
            const Square from = Square(std::countr_zero(left.asSet())), to = Square(std::countr_zero(right.asSet()));
            const Board& board = boards[here];
            if (board.squares[from] == NoPiece && board.squares[to] == NoPiece) continue;
            make(Move::edit(EditSwap, board.squares[from], from, to, board.squares[to]));
        } else {
            const auto& side = as<ImagineSidetomoveNode>(*specifier);
            const Color toMove = boards[here].sideToMove;
            const Color wanted = side.side == ImaginedSide::White   ? White
                                 : side.side == ImaginedSide::Black ? Black
                                                                    : otherColor(toMove);
            if (wanted != toMove) make(Move::edit(EditFlip, NoPiece, A1, A1));
        }
    }
    Value result = evaluate(*node.body);
    for (; made > 0; --made) boards[here].unmakeMove();
    return result;
}

// A position of an imagined board outlives the imagine as a row of its own,
// after the game's rows, which no walk over the game visits.
Value ZMFEngine::eval(const SavePositionNode&) {
    const uint32_t here = current;
    if (boards[here].moveStack.empty()) return Value::position(rowRef(here));
    const uint32_t id = uint32_t(positions.size());
    PositionRow row = positions[here];
    row.id = id;
    positions.push_back(row);
    if (boards.size() <= id)
        boards.push_back(boards[here]);
    else
        boards[id] = boards[here];
    maxPieceId = std::max(maxPieceId, boards[id].nextPieceId);
    return Value::position(rowRef(id));
}

// Takes every change back, then makes them again in order, writing each.
Value ZMFEngine::eval(const CurrentMutationNode&) {
    Board& board = boards[current];
    if (board.moveStack.empty()) return Value::string(emptyZmfString());
    std::vector<Move> changes;
    changes.reserve(board.moveStack.size());
    while (!board.moveStack.empty()) {
        changes.push_back(Move{board.moveStack.back().move});
        board.unmakeMove();
    }
    std::string text;
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
        text.append(mutationText(board, *change));
        board.makeMove(*change);
    }
    return Value::string(makeZmfString(text));
}

}  // namespace tarnfold::zmf
