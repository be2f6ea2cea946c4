#include "query/nodes/iteration_nodes.h"

#include <algorithm>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// "keyword all V in source body". The body is read from power 0, so
// nothing behind it can stay outside it.
void printLoop(PrintTarget& target, std::string_view keyword, bool all, const std::string& variable,
               const ZMFNode& source, const ZMFNode& body) {
    PrintTarget bodyText = target.sibling();
    printOperand(bodyText, body, 0, 0);
    // A body that starts with a minus would otherwise continue an operand
    // at the source's right edge as a subtraction.
    BindingPower following =
        !bodyText.text().empty() && bodyText.text().front() == '-' ? bindingPower(TokenKind::Minus) : 0;
    target << keyword << " " << (all ? "all " : "") << variable << " in ";
    printOperand(target, source, squareOperand, following);
    target << " " << bodyText.text();
    target.ends = PrintedEnds{closedEnd, 0};
}

std::string loopLine(std::string_view kind, const std::string& variable, std::uint32_t slot, bool all) {
    std::string line(kind);
    line.append(" (").append(variable).append(") slot ").append(std::to_string(slot));
    if (all) line.append(" all");
    return line;
}

}  // namespace

PieceNode::PieceNode(OptionalOffset location, std::string variable, std::uint32_t slot, NodePtr set,
                     NodePtr body, bool all)
    : ZMFNode(kind, all ? ValueType::Boolean : ValueType::Set, location),
      variable(std::move(variable)),
      slot(slot),
      set(std::move(set)),
      body(std::move(body)),
      all(all) {
    spanToOperand(*this, *this->body);
}

void PieceNode::print(PrintTarget& target) const { printLoop(target, "piece", all, variable, *set, *body); }

void PieceNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, loopLine("PieceIterator", variable, slot, all),
             {{set.get(), "set"}, {body.get(), "body"}});
}

PieceAssignNode::PieceAssignNode(OptionalOffset location, std::string variable, std::uint32_t slot,
                                 NodePtr operand)
    : ZMFNode(kind, ValueType::Boolean, location),
      variable(std::move(variable)),
      slot(slot),
      operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void PieceAssignNode::print(PrintTarget& target) const {
    // The value is read like the right side of `=`.
    constexpr BindingPower valuePower = infixPrecedence(TokenKind::Assign);
    target << "piece " << variable << " = ";
    PrintedEnds ends = printOperand(target, *operand, valuePower, 0);
    target.ends = PrintedEnds{closedEnd, std::min(valuePower, ends.right)};
}

void PieceAssignNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "PieceAssign (" + variable + ") slot " + std::to_string(slot),
             {operand.get()});
}

SquareNode::SquareNode(OptionalOffset location, std::string variable, std::uint32_t slot, NodePtr set,
                       NodePtr body, bool all)
    : ZMFNode(kind, all ? ValueType::Boolean : ValueType::Set, location),
      variable(std::move(variable)),
      slot(slot),
      set(std::move(set)),
      body(std::move(body)),
      all(all) {
    spanToOperand(*this, *this->body);
}

void SquareNode::print(PrintTarget& target) const { printLoop(target, "square", all, variable, *set, *body); }

void SquareNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, loopLine("SquareIterator", variable, slot, all),
             {{set.get(), "set"}, {body.get(), "body"}});
}

StringIteratorNode::StringIteratorNode(OptionalOffset location, std::string variable, std::uint32_t slot,
                                       NodePtr target, NodePtr body)
    : ZMFNode(kind, ValueType::Boolean, location),
      variable(std::move(variable)),
      slot(slot),
      target(std::move(target)),
      body(std::move(body)) {
    spanToOperand(*this, *this->body);
}

StringIteratorNode::StringIteratorNode(OptionalOffset location, NodePtr match, NodePtr body)
    : ZMFNode(kind, ValueType::Boolean, location),
      match(std::move(match)),
      body(std::move(body)) {
    spanToOperand(*this, *this->body);
}

void StringIteratorNode::print(PrintTarget& out) const {
    if (!match) {
        printLoop(out, "string", false, variable, *target, *body);
        return;
    }
    // The condition stands in parentheses of its own and the body is read
    // at 0, like any filter in braces.
    out << "while (";
    printOperand(out, *match, 0, 0);
    out << ") ";
    PrintedEnds ends = printOperand(out, *body, 0, 0);
    // The body was read from 0: whatever follows could continue it.
    out.ends = PrintedEnds{closedEnd, std::min<BindingPower>(0, ends.right)};
}

void StringIteratorNode::dump(DumpTarget& out, bool isLast) const {
    if (!match) {
        dumpNode(*this, out, isLast, loopLine("StringIterator", variable, slot, false),
                 {{target.get(), "string"}, {body.get(), "body"}});
        return;
    }
    dumpNode(*this, out, isLast, "StringIterator (while)", {{match.get(), "match"}, {body.get(), "body"}});
}

DictionaryIteratorNode::DictionaryIteratorNode(OptionalOffset location, std::string variable,
                                               std::uint32_t slot, NodePtr dictionary,
                                               std::uint32_t dictionarySlot, NodePtr body)
    : ZMFNode(kind, ValueType::Boolean, location),
      variable(std::move(variable)),
      slot(slot),
      dictionary(std::move(dictionary)),
      dictionarySlot(dictionarySlot),
      body(std::move(body)) {
    spanToOperand(*this, *this->body);
}

void DictionaryIteratorNode::print(PrintTarget& target) const {
    printLoop(target, "string", false, variable, *dictionary, *body);
}

void DictionaryIteratorNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, loopLine("DictionaryIterator", variable, slot, false),
             {{dictionary.get(), "dictionary"}, {body.get(), "body"}});
}

}  // namespace tarnfold::zmf
