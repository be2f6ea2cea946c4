#include "query/nodes/position_state_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

CheckNode::CheckNode(OptionalOffset location) : ZMFNode(kind, ValueType::Boolean, location) {}

void CheckNode::print(PrintTarget& target) const { target << "check"; }

void CheckNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Check"); }

MateNode::MateNode(OptionalOffset location) : ZMFNode(kind, ValueType::Boolean, location) {}

void MateNode::print(PrintTarget& target) const { target << "mate"; }

void MateNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Mate"); }

WhiteToMoveNode::WhiteToMoveNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void WhiteToMoveNode::print(PrintTarget& target) const { target << "wtm"; }

void WhiteToMoveNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "WhiteToMove");
}

BlackToMoveNode::BlackToMoveNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void BlackToMoveNode::print(PrintTarget& target) const { target << "btm"; }

void BlackToMoveNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "BlackToMove");
}

}  // namespace tarnfold::zmf
