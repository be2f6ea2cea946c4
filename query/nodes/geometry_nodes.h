#pragma once
// Filters on the squares of the board: lines between squares, shifts along
// directions, rays with targets, pins, square colours, files and ranks, the
// piece on a square, pawn structure, and the distance of two positions in
// the game tree.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "chess/types.h"
#include "query/node.h"

namespace tarnfold::zmf {

// between (S S): the squares strictly between a square of the left set and
// one of the right set on a common line.
class BetweenNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Between;

    BetweenNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// colortype S: the signed type of the piece on a single square.
class ColortypeNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Colortype;

    ColortypeNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// type S: the unsigned type of the piece on a single square.
class TypeNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Type;

    TypeNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// dark S: the dark squares of the set.
class DarkNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Dark;

    DarkNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// light S: the light squares of the set.
class LightNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Light;

    LightNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// file S: the file, 1 to 8, of a single square.
class FileNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::File;

    FileNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// rank S: the rank, 1 to 8, of a single square.
class RankNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Rank;

    RankNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// up R S and the other fourteen direction keywords: the set shifted along
// the direction by every distance of the range. Without a range in the text
// the range is an implicit 1 to 7.
class DirectionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Direction;

    DirectionNode(OptionalOffset location, Direction direction, NodePtr range, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    Direction direction;
    NodePtr range;
    NodePtr operand;
};

// makesquare (N N) from a file and a rank, or makesquare T from a square
// name. Exactly one of the two forms is present: `left` and `right`, or
// `operand`.
class MakesquareNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Makesquare;

    MakesquareNode(OptionalOffset location, NodePtr left, NodePtr right);
    MakesquareNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;     // the file
    NodePtr right;    // the rank
    NodePtr operand;  // the square name
};

// pin from S through S to S, the parameters in any order and each optional;
// an absent one is an implicit designator.
class PinNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Pin;

    // What the filter answers with.
    enum Mode : std::uint8_t { Pinners = 0, Targets = 1, Pinned = 2 };

    PinNode(OptionalOffset location, NodePtr from, NodePtr through, NodePtr to);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr from;     // the pinning pieces
    NodePtr through;  // the pinned pieces
    NodePtr to;       // what they are pinned to
    std::uint8_t mode = Pinned;
};

// ray directions (S S ...): the squares of the last set from which a line of
// the given directions reaches each earlier set in turn.
class RayNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Ray;

    RayNode(OptionalOffset location, std::array<bool, rayDirectionCount> directions,
            std::vector<NodePtr> arguments);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> arguments;
    // Indexed by the eight ray directions, right to southeast.
    std::array<bool, rayDirectionCount> directions;
};

// xray (S S ...): as ray, but along the lines of the first set's sliders.
class XRayNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::XRay;

    XRayNode(OptionalOffset location, std::vector<NodePtr> arguments);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> arguments;
};

// connectedpawns, doubledpawns, isolatedpawns, passedpawns: the pawns of
// both colours with that property.
class PawnQueryNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::PawnQuery;

    enum Mode : std::uint8_t { Connected = 0, Doubled = 1, Isolated = 2, Passed = 3 };

    PawnQueryNode(OptionalOffset location, Mode mode);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::uint8_t mode;
};

// pieceid S, or pieceid of a piece variable: the identity of one piece as a
// number.
class PieceidNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Pieceid;

    PieceidNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// promotedpieces: the squares of pieces that came from a promotion.
class PromotedpiecesNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Promotedpieces;

    explicit PromotedpiecesNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// distance (P P): the number of moves between two positions of the game
// tree, through their last common ancestor.
class DistanceNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Distance;

    DistanceNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// The keywords that name the directions of a set of ray flags, as few as
// possible; empty for all eight, which is what a ray without keywords means.
std::string rayDirectionsText(const std::array<bool, rayDirectionCount>& directions);

}  // namespace tarnfold::zmf
