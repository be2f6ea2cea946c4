#include "query/nodes/text_nodes.h"

#include <string>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// "keyword(a b c)": the arguments stand side by side as in braces, and the
// parentheses close the text on both sides.
void printArgumentList(PrintTarget& target, std::string_view keyword, const std::vector<NodePtr>& arguments,
                       bool stringsStandAlone) {
    target << keyword << "(";
    printSequence(target, arguments, " ", "", stringsStandAlone);
    target << ")";
    target.ends = PrintedEnds{};
}

void dumpArgumentList(const ZMFNode& node, DumpTarget& target, bool isLast, std::string_view name,
                      const std::vector<NodePtr>& arguments) {
    target.writeLine(node, isLast, name);
    target.dumpChildren(isLast, arguments);
}

void spanToLastArgument(ZMFNode& node, const std::vector<NodePtr>& arguments) {
    if (!arguments.empty()) spanToOperand(node, *arguments.back());
}

}  // namespace

void printArgumentPair(PrintTarget& target, std::string_view keyword, const ZMFNode& first,
                       const ZMFNode& second) {
    target << keyword << "(";
    printOperand(target, first, 0, 0);
    target << " ";
    // A second argument that starts with a minus would be read as a
    // subtraction from the first.
    PrintTarget inner = target.sibling();
    printOperand(inner, second, 0, 0);
    if (!inner.text().empty() && inner.text().front() == '-')
        target << "(" << inner.text() << ")";
    else
        target << inner.text();
    target << ")";
    target.ends = PrintedEnds{};
}

CommentNode::CommentNode(OptionalOffset location, std::vector<NodePtr> arguments)
    : ZMFNode(kind, ValueType::Boolean, location), arguments(std::move(arguments)) {
    spanToLastArgument(*this, this->arguments);
}

void CommentNode::print(PrintTarget& target) const { printArgumentList(target, "comment", arguments, true); }

void CommentNode::dump(DumpTarget& target, bool isLast) const {
    dumpArgumentList(*this, target, isLast, "Comment", arguments);
}

MessageNode::MessageNode(OptionalOffset location, std::vector<NodePtr> arguments, bool quiet)
    : ZMFNode(kind, ValueType::Boolean, location),
      arguments(std::move(arguments)),
      quiet(quiet) {
    spanToLastArgument(*this, this->arguments);
}

void MessageNode::print(PrintTarget& target) const {
    printArgumentList(target, quiet ? "message quiet" : "message", arguments, true);
}

void MessageNode::dump(DumpTarget& target, bool isLast) const {
    dumpArgumentList(*this, target, isLast, quiet ? "Message (quiet)" : "Message", arguments);
}

StrNode::StrNode(OptionalOffset location, std::vector<NodePtr> arguments)
    : ZMFNode(kind, ValueType::String, location), arguments(std::move(arguments)) {
    spanToLastArgument(*this, this->arguments);
}

void StrNode::print(PrintTarget& target) const { printArgumentList(target, "str", arguments, false); }

void StrNode::dump(DumpTarget& target, bool isLast) const {
    dumpArgumentList(*this, target, isLast, "Str", arguments);
}

LowerNode::LowerNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::String, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void LowerNode::print(PrintTarget& target) const {
    printPrefix(target, "lowercase", *operand, squareOperand);
}

void LowerNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Lowercase", {operand.get()});
}

UpperNode::UpperNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::String, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void UpperNode::print(PrintTarget& target) const {
    printPrefix(target, "uppercase", *operand, squareOperand);
}

void UpperNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Uppercase", {operand.get()});
}

AsciiNode::AsciiNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind,
              operand->valueType == ValueType::String ? ValueType::Numeric : ValueType::String, location),
      operand(std::move(operand)),
      mode(valueType == ValueType::Numeric ? AsciiMode::CharacterToCode : AsciiMode::CodeToCharacter) {
    spanToOperand(*this, *this->operand);
}

void AsciiNode::print(PrintTarget& target) const { printPrefix(target, "ascii", *operand, absOperand); }

void AsciiNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast,
             mode == AsciiMode::CharacterToCode ? "Ascii (character to code)" : "Ascii (code to character)",
             {operand.get()});
}

IntNode::IntNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void IntNode::print(PrintTarget& target) const { printPrefix(target, "int", *operand, cardinalityOperand); }

void IntNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Int", {operand.get()});
}

SqrtNode::SqrtNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void SqrtNode::print(PrintTarget& target) const { printPrefix(target, "sqrt", *operand, absOperand); }

void SqrtNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Sqrt", {operand.get()});
}

PowerNode::PowerNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void PowerNode::print(PrintTarget& target) const { printPrefix(target, "power", *operand, squareOperand); }

void PowerNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Power", {operand.get()});
}

IndexofNode::IndexofNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Numeric, location),
      left(std::move(left)),
      right(std::move(right)) {
    spanToOperand(*this, *this->right);
}

void IndexofNode::print(PrintTarget& target) const { printArgumentPair(target, "indexof", *left, *right); }

void IndexofNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Indexof", {{left.get(), "substring"}, {right.get(), "string"}});
}

}  // namespace tarnfold::zmf
