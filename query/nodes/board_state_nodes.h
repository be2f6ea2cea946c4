#pragma once
// Facts about the board of the current position and the rules it is played
// by, none of which takes an operand.

#include "query/node.h"

namespace tarnfold::zmf {

// white: the number 1, White's sign as sidetomove gives it.
class WhiteNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::White;

    explicit WhiteNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// black: the number -1, Black's sign as sidetomove gives it.
class BlackNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Black;

    explicit BlackNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// sidetomove: 1 when White is to move, -1 when Black is.
class SideToMoveNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::SideToMove;

    explicit SideToMoveNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// halfmoveclock: the moves since the last capture or pawn move.
class HalfmoveclockNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Halfmoveclock;

    explicit HalfmoveclockNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// currentfen: the position as FEN with the extended fields.
class CurrentFenNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::CurrentFen;

    explicit CurrentFenNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// standardfen: the position as plain FEN.
class StandardFenNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::StandardFen;

    explicit StandardFenNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// zobristkey: the position's hash key in hexadecimal.
class ZobristkeyNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Zobristkey;

    explicit ZobristkeyNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// legalposition: the position could stand on a board by the rules.
class LegalpositionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Legalposition;

    explicit LegalpositionNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// reachableposition: the position could arise from the start position.
class ValidpositionNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Validposition;

    explicit ValidpositionNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// variant: the game is played by rules other than standard chess.
class VariantNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Variant;

    explicit VariantNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// variantend: the variant's own rules have ended the game.
class VariantendNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Variantend;

    explicit VariantendNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// variantwin: the side to move has won by the variant's own rules.
class VariantwinNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Variantwin;

    explicit VariantwinNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// variantloss: the side to move has lost by the variant's own rules.
class VariantlossNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Variantloss;

    explicit VariantlossNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// variantdraw: the variant's own rules have drawn the game.
class VariantdrawNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Variantdraw;

    explicit VariantdrawNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

}  // namespace tarnfold::zmf
