#include "query/nodes/literal_nodes.h"

#include <string>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

IntegerNode::IntegerNode(OptionalOffset location, std::int64_t value)
    : ZMFNode(kind, ValueType::Numeric, location), value(value) {}

// A negative value reads back as a negation of its magnitude, which gives
// the same number and binds tighter than any infix operator.
void IntegerNode::print(PrintTarget& target) const { target << std::to_string(value); }

void IntegerNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Integer (" + std::to_string(value) + ")");
}

TrueNode::TrueNode(OptionalOffset location) : ZMFNode(kind, ValueType::Boolean, location) {}

void TrueNode::print(PrintTarget& target) const { target << "true"; }

void TrueNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "True"); }

FalseNode::FalseNode(OptionalOffset location) : ZMFNode(kind, ValueType::Boolean, location) {}

void FalseNode::print(PrintTarget& target) const { target << "false"; }

void FalseNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "False"); }

}  // namespace tarnfold::zmf
