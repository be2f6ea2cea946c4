#pragma once
// Filters that name positions of the game tree, walk between them, or look
// at other positions; and the facts of the current position's place in the
// tree. Positions are rows of the engine's table, so none of these move on
// the tree itself.

#include <string>

#include "query/node.h"

namespace tarnfold::zmf {

// parent: The parent of the current position; none at the root.
class ParentNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Parent;

    explicit ParentNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// positionid: The id of the current position: its row in pre-order, main child first.
class PositionIDNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::PositionID;

    explicit PositionIDNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// currentposition: The current position itself.
class CurrentPositionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::CurrentPosition;

    explicit CurrentPositionNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// initial: Whether the current position is the root of the game.
class InitialNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Initial;

    explicit InitialNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// initialposition: The root of the game: position 0.
class InitialpositionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Initialposition;

    explicit InitialpositionNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// mainline: Whether the current position lies on the main line.
class MainlineNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Mainline;

    explicit MainlineNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// virtualmainline: Whether the current position is reached by main moves from where its variation began.
class VirtualMainlineNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::VirtualMainline;

    explicit VirtualMainlineNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// terminal: Whether the current position has no moves after it in the tree.
class TerminalNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Terminal;

    explicit TerminalNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// variation: Whether the current position lies inside a variation.
class VariationNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Variation;

    explicit VariationNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// stalemate: Whether the side to move has no move and is not in check.
class StalemateNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Stalemate;

    explicit StalemateNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// depth: How many variations deep the current position lies.
class DepthNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Depth;

    explicit DepthNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// ply: The half-move count of the current position.
class PlyNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Ply;

    explicit PlyNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// movenumber: The move number of the current position.
class MoveNumberNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::MoveNumber;

    explicit MoveNumberNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// gamenumber: The number of the game in the input.
class GamenumberNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Gamenumber;

    explicit GamenumberNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// saveposition: The current position kept with its imagined changes, so that a position value can outlive
// them.
class SavePositionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::SavePosition;

    explicit SavePositionNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// currentmutation: The imagined changes made to the current board, as text.
class CurrentMutationNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::CurrentMutation;

    explicit CurrentMutationNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// currenttransform: the name of the transformed copy this node belongs to,
// fixed while parsing; empty outside every transform.
class CurrentTransformNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::CurrentTransform;

    CurrentTransformNode(OptionalOffset location, std::string text);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::string text;
};

// child, child(N): child N of the current position, the main child being 0.
class ChildNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Child;

    // Without parentheses the operand is an implicit integer 0.
    ChildNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// position N: the position with that id.
class PositionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Position;

    PositionNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// ancestor(P P): whether `left` lies strictly above `right` in the tree.
class AncestorNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Ancestor;

    AncestorNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// descendant(P P): whether `left` lies strictly below `right` in the tree.
class DescendantNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Descendant;

    DescendantNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// lca(P P): the lowest position that lies above or at both.
class LCANode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::LCA;

    LCANode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// find quiet <-- all R F: the first position from here (forward through the
// subtree, or backward to the root) where F holds; counting with `all` or a
// range, the number of them.
class FindNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Find;

    FindNode(OptionalOffset location, NodePtr operand, NodePtr range, bool reverse, bool all, bool quiet);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
    NodePtr range;  // null when absent
    bool reverse;
    bool all;
    bool quiet;

    bool counting() const { return all || range != nullptr; }
};

}  // namespace tarnfold::zmf
