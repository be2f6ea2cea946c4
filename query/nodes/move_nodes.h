#pragma once
// Moves: the filter that selects moves by their squares and kinds, and the
// measure of the move sequences that two lines of play have in common.

#include <cstdint>

#include "query/node.h"

namespace tarnfold::zmf {

// Where the candidate moves come from.
enum class MoveSource : std::uint8_t {
    Game = 0,         // the moves played from this position
    Previous = 1,     // the move that led here
    Legal = 2,        // generated legal moves
    Pseudolegal = 3,  // generated pseudo-legal moves
};

enum class MoveCastle : std::uint8_t { None = 0, Either = 1, Kingside = 2, Queenside = 3 };

// What the filter answers when it does not count: whether a move was found,
// or one of the sets of squares of the moves found.
enum class MoveResultKind : std::uint8_t { Boolean = 0, From = 1, To = 2, Capture = 3 };

enum class MoveVariation : std::uint8_t { Both = 0, Primary = 1, Secondary = 2 };

// move with its parameters in any order. `from` and `to` are never null: a
// parameter that was not written holds an implicit designator of all
// squares. The value type follows from `count` and `resultKind`.
class MoveNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Move;

    explicit MoveNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    // Set filters.
    NodePtr from;
    NodePtr to;
    NodePtr capture;          // null when not given
    NodePtr enpassantsquare;  // null when not given
    // Piece designators of piece types only; null when not given.
    NodePtr promote;
    NodePtr drop;
    NodePtr speculativeBody;  // the filter after `:`, tried on the board after each move
    NodePtr commentBody;      // a comment filter, evaluated at the position after each move
    bool enpassant = false;
    bool null = false;
    bool count = false;
    bool reverse = false;
    MoveCastle castle = MoveCastle::None;
    MoveSource source = MoveSource::Game;
    MoveResultKind resultKind = MoveResultKind::Boolean;
    MoveVariation variation = MoveVariation::Both;
};

// consecutivemoves quiet R (P P): the length of the longest run of moves
// that the lines to the two positions share after they part.
class ConsecutivemovesNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Consecutivemoves;

    ConsecutivemovesNode(OptionalOffset location, NodePtr range, NodePtr left, NodePtr right, bool quiet);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr range;  // null when not given
    NodePtr left;
    NodePtr right;
    bool quiet;  // no comments on the moves of the run
    // The game's longest run is kept in a best-value slot of its own.
    std::uint32_t bestValueSlot = 0;
};

}  // namespace tarnfold::zmf
