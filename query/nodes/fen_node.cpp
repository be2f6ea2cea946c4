#include "query/nodes/fen_node.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

FenNode::FenNode(OptionalOffset location, std::string fen)
    : ZMFNode(kind, ValueType::Boolean, location), fen(std::move(fen)) {}

void FenNode::print(PrintTarget& target) const { target << "fen \"" << fen << "\""; }

void FenNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Fen (\"" + fen + "\")");
}

}  // namespace tarnfold::zmf
