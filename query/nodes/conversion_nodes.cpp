#include "query/nodes/conversion_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

void coverOperand(ZMFNode& node, const ZMFNode& operand) {
    node.firstOffset = operand.firstOffset;
    node.lastOffset = operand.lastOffset;
}

}  // namespace

SetToNumericConversionNode::SetToNumericConversionNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    coverOperand(*this, *this->operand);
}

void SetToNumericConversionNode::print(PrintTarget& target) const { operand->print(target); }

void SetToNumericConversionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "SetToNumericConversion", {operand.get()});
}

PositionToNumericConversionNode::PositionToNumericConversionNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location),
      operand(std::move(operand)) {
    coverOperand(*this, *this->operand);
}

void PositionToNumericConversionNode::print(PrintTarget& target) const { operand->print(target); }

void PositionToNumericConversionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "PositionToNumericConversion", {operand.get()});
}

PieceIDToSetConversionNode::PieceIDToSetConversionNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Set, location), operand(std::move(operand)) {
    coverOperand(*this, *this->operand);
}

void PieceIDToSetConversionNode::print(PrintTarget& target) const { operand->print(target); }

void PieceIDToSetConversionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "PieceIDToSetConversion", {operand.get()});
}

}  // namespace tarnfold::zmf
