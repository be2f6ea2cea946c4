#include "query/nodes/control_nodes.h"

#include <algorithm>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// A branch, a body, an asserted filter: read from power 0, so that nothing
// written behind it can stay outside it.
void printOpenOperand(PrintTarget& target, const ZMFNode& operand) {
    PrintedEnds ends = printOperand(target, operand, 0, 0);
    target.ends = PrintedEnds{closedEnd, std::min<BindingPower>(0, ends.right)};
}

ValueType branchType(const ZMFNode& thenBranch, const ZMFNode* elseBranch) {
    if (!elseBranch || elseBranch->valueType != thenBranch.valueType) return ValueType::Boolean;
    switch (thenBranch.valueType) {
        case ValueType::Numeric:
        case ValueType::Set:
        case ValueType::Position:
        case ValueType::String: return thenBranch.valueType;
        default: return ValueType::Boolean;
    }
}

// Operands side by side in parentheses.
void printArguments(PrintTarget& target, std::string_view keyword, const std::vector<NodePtr>& arguments) {
    target << keyword << "(";
    printSequence(target, arguments, " ", "");
    target << ")";
    target.ends = PrintedEnds{};
}

// All operands have the first one's type, which the handler has checked.
ValueType argumentsType(const std::vector<NodePtr>& arguments) {
    return arguments.empty() ? ValueType::Numeric : arguments.front()->valueType;
}

}  // namespace

AssertNode::AssertNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Boolean, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void AssertNode::print(PrintTarget& target) const { printPrefix(target, "assert", *operand, 0); }

void AssertNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Assert", {operand.get()});
}

LoopNode::LoopNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Boolean, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void LoopNode::print(PrintTarget& target) const { printPrefix(target, "loop", *operand, 0); }

void LoopNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Loop", {operand.get()});
}

IfNode::IfNode(OptionalOffset location, NodePtr condition, NodePtr thenBranch, NodePtr elseBranch)
    : ZMFNode(kind, branchType(*thenBranch, elseBranch.get()), location),
      condition(std::move(condition)),
      thenBranch(std::move(thenBranch)),
      elseBranch(std::move(elseBranch)) {}

void IfNode::print(PrintTarget& target) const {
    target << "if ";
    printOperand(target, *condition, 0, 0);
    target << " then ";
    // An inner if without else would take our else as its own.
    bool dangling =
        elseBranch && thenBranch->kind == NodeKind::If && !static_cast<const IfNode&>(*thenBranch).elseBranch;
    if (dangling) {
        target << "(";
        printOperand(target, *thenBranch, 0, 0);
        target << ")";
    } else {
        printOperand(target, *thenBranch, 0, 0);
    }
    if (elseBranch) {
        target << " else ";
        printOperand(target, *elseBranch, 0, 0);
    }
    target.ends = PrintedEnds{closedEnd, 0};
}

void IfNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "If",
             {{condition.get(), "condition"}, {thenBranch.get(), "then"}, {elseBranch.get(), "else"}});
}

WhileNode::WhileNode(OptionalOffset location, NodePtr condition, NodePtr body)
    : ZMFNode(kind, ValueType::Boolean, location),
      condition(std::move(condition)),
      body(std::move(body)) {
    spanToOperand(*this, *this->body);
}

void WhileNode::print(PrintTarget& target) const {
    target << "while (";
    printOperand(target, *condition, 0, 0);
    target << ") ";
    printOpenOperand(target, *body);
}

void WhileNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "While", {{condition.get(), "condition"}, {body.get(), "body"}});
}

MaxNode::MaxNode(OptionalOffset location, std::vector<NodePtr> arguments)
    : ZMFNode(kind, argumentsType(arguments), location), arguments(std::move(arguments)) {}

void MaxNode::print(PrintTarget& target) const { printArguments(target, "max", arguments); }

void MaxNode::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, "Max");
    target.dumpChildren(isLast, arguments);
}

MinNode::MinNode(OptionalOffset location, std::vector<NodePtr> arguments)
    : ZMFNode(kind, argumentsType(arguments), location), arguments(std::move(arguments)) {}

void MinNode::print(PrintTarget& target) const { printArguments(target, "min", arguments); }

void MinNode::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, "Min");
    target.dumpChildren(isLast, arguments);
}

SortNode::SortNode(OptionalOffset location, std::uint32_t slot, SortDirection direction,
                   std::optional<std::string> label, bool quiet, NodePtr operand)
    : ZMFNode(kind, operand->valueType, location),
      slot(slot),
      direction(direction),
      label(std::move(label)),
      quiet(quiet),
      operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void SortNode::print(PrintTarget& target) const {
    // A sort made up by the parser (`hhdb sort ...`) comes back from its
    // operand's own text.
    if (implicit) {
        operand->print(target);
        return;
    }
    target << "sort";
    if (quiet) target << " quiet";
    // Without a word the sort keeps the greatest value.
    if (direction == SortDirection::Minimum) target << " min";
    if (label) target << " \"" << *label << "\"";
    target << " ";
    printOpenOperand(target, *operand);
}

void SortNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("Sort");
    if (label) name.append(" (\"").append(*label).append("\")");
    name.append(" slot ").append(std::to_string(slot));
    name.append(direction == SortDirection::Minimum ? " min" : " max");
    if (quiet) name.append(" quiet");
    dumpNode(*this, target, isLast, name, {operand.get()});
}

EchoNode::EchoNode(OptionalOffset location, std::string sourceVariable, std::uint32_t sourceSlot,
                   std::string targetVariable, std::uint32_t targetSlot, NodePtr body, bool inAll, bool quiet)
    : ZMFNode(kind, body->valueType == ValueType::Numeric ? ValueType::Numeric : ValueType::Boolean,
              location),
      sourceVariable(std::move(sourceVariable)),
      sourceSlot(sourceSlot),
      targetVariable(std::move(targetVariable)),
      targetSlot(targetSlot),
      body(std::move(body)),
      inAll(inAll),
      quiet(quiet) {
    spanToOperand(*this, *this->body);
}

void EchoNode::print(PrintTarget& target) const {
    target << "echo";
    if (quiet) target << " quiet";
    target << " (" << sourceVariable << " " << targetVariable << ")";
    if (inAll) target << " in all";
    target << " ";
    printOpenOperand(target, *body);
}

void EchoNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("Echo (");
    name.append(sourceVariable).append(" ").append(targetVariable).append(") slots ");
    name.append(std::to_string(sourceSlot)).append(" ").append(std::to_string(targetSlot));
    if (inAll) name.append(" in all");
    if (quiet) name.append(" quiet");
    dumpNode(*this, target, isLast, name, {{body.get(), "body"}});
}

}  // namespace tarnfold::zmf
