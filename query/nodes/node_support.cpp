#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

void spanOperands(ZMFNode& node, const ZMFNode& left, const ZMFNode& right) {
    if (left.firstOffset) node.firstOffset = left.firstOffset;
    if (right.lastOffset) node.lastOffset = right.lastOffset;
}

void spanToOperand(ZMFNode& node, const ZMFNode& operand) {
    if (operand.lastOffset) node.lastOffset = operand.lastOffset;
}

void dumpNode(const ZMFNode& node, DumpTarget& target, bool isLast, std::string_view name,
              std::initializer_list<DumpChild> children) {
    target.writeLine(node, isLast, name);
    if (children.size() > 0) target.dumpChildren(isLast, children);
}

}  // namespace tarnfold::zmf
