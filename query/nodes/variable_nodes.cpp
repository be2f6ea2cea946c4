#include "query/nodes/variable_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

IdentifierNode::IdentifierNode(OptionalOffset location, std::string name, std::uint32_t slot,
                               ValueType valueType)
    : ZMFNode(kind, valueType, location), name(std::move(name)), slot(slot) {}

void IdentifierNode::print(PrintTarget& target) const { target << name; }

void IdentifierNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Identifier (" + name + ") slot " + std::to_string(slot));
}

AssignNode::AssignNode(OptionalOffset location, NodePtr target, NodePtr value, TokenKind op,
                       std::string spelling)
    : ZMFNode(kind, ValueType::Boolean, location),
      target(std::move(target)),
      value(std::move(value)),
      op(op),
      spelling(std::move(spelling)) {
    spanOperands(*this, *this->target, *this->value);
}

void AssignNode::print(PrintTarget& out) const {
    // An `=` into a subscript reads its value as the bracket does, not as
    // the operator of the table.
    bool subscript = target->kind == NodeKind::Slice || target->kind == NodeKind::DictionaryAccess;
    if (subscript)
        printInfix(out, *target, spelling, *value, subscriptValue, false);
    else
        printInfix(out, *target, spelling, *value, op);
}

void AssignNode::dump(DumpTarget& out, bool isLast) const {
    dumpNode(*this, out, isLast, "Assign (" + spelling + ")", {target.get(), value.get()});
}

}  // namespace tarnfold::zmf
