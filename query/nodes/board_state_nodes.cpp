#include "query/nodes/board_state_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

WhiteNode::WhiteNode(OptionalOffset location) : ZMFNode(kind, ValueType::Numeric, location) {}

void WhiteNode::print(PrintTarget& target) const { target << "white"; }

void WhiteNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "White"); }

BlackNode::BlackNode(OptionalOffset location) : ZMFNode(kind, ValueType::Numeric, location) {}

void BlackNode::print(PrintTarget& target) const { target << "black"; }

void BlackNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Black"); }

SideToMoveNode::SideToMoveNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Numeric, location) {}

void SideToMoveNode::print(PrintTarget& target) const { target << "sidetomove"; }

void SideToMoveNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "SideToMove");
}

HalfmoveclockNode::HalfmoveclockNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Numeric, location) {}

void HalfmoveclockNode::print(PrintTarget& target) const { target << "halfmoveclock"; }

void HalfmoveclockNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "HalfmoveClock");
}

CurrentFenNode::CurrentFenNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::String, location) {}

void CurrentFenNode::print(PrintTarget& target) const { target << "currentfen"; }

void CurrentFenNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "CurrentFen");
}

StandardFenNode::StandardFenNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::String, location) {}

void StandardFenNode::print(PrintTarget& target) const { target << "standardfen"; }

void StandardFenNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "StandardFen");
}

ZobristkeyNode::ZobristkeyNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::String, location) {}

void ZobristkeyNode::print(PrintTarget& target) const { target << "zobristkey"; }

void ZobristkeyNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "ZobristKey");
}

LegalpositionNode::LegalpositionNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void LegalpositionNode::print(PrintTarget& target) const { target << "legalposition"; }

void LegalpositionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "LegalPosition");
}

ValidpositionNode::ValidpositionNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void ValidpositionNode::print(PrintTarget& target) const { target << "reachableposition"; }

void ValidpositionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "ReachablePosition");
}

VariantNode::VariantNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void VariantNode::print(PrintTarget& target) const { target << "variant"; }

void VariantNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Variant"); }

VariantendNode::VariantendNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void VariantendNode::print(PrintTarget& target) const { target << "variantend"; }

void VariantendNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "VariantEnd");
}

VariantwinNode::VariantwinNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void VariantwinNode::print(PrintTarget& target) const { target << "variantwin"; }

void VariantwinNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "VariantWin");
}

VariantlossNode::VariantlossNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void VariantlossNode::print(PrintTarget& target) const { target << "variantloss"; }

void VariantlossNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "VariantLoss");
}

VariantdrawNode::VariantdrawNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void VariantdrawNode::print(PrintTarget& target) const { target << "variantdraw"; }

void VariantdrawNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "VariantDraw");
}

}  // namespace tarnfold::zmf
