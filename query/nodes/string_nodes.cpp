#include "query/nodes/string_nodes.h"

#include <algorithm>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// Strings have no escapes, so the text goes between the quotes as it is: a
// literal cannot hold a quote, and a line break inside one is legal.
std::string quoted(std::string_view text) {
    std::string result(1, '"');
    result.append(text);
    result.push_back('"');
    return result;
}

// The dump keeps one line per node, so line breaks are shown as escapes.
std::string dumpLabel(std::string_view name, std::string_view text) {
    std::string label(name);
    label.append(" (\"");
    for (char c : text) {
        if (c == '\n')
            label.append("\\n");
        else if (c == '\r')
            label.append("\\r");
        else
            label.push_back(c);
    }
    label.append("\")");
    return label;
}

std::string_view backslashSpelling(char character) {
    switch (character) {
        case '\n': return "\\n";
        case '\t': return "\\t";
        case '\r': return "\\r";
        case '"': return "\\\"";
        default: return "\\\\";
    }
}

std::string withNumber(std::string_view prefix, std::uint32_t number, std::string_view suffix = {}) {
    std::string text(prefix);
    text.append(std::to_string(number));
    text.append(suffix);
    return text;
}

}  // namespace

StringNode::StringNode(OptionalOffset location, ZmfString value)
    : ZMFNode(kind, ValueType::String, location), value(std::move(value)) {}

void StringNode::print(PrintTarget& target) const { target << quoted(value->toUtf8()); }

void StringNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, dumpLabel("String", value->toUtf8()));
}

BackslashLiteralNode::BackslashLiteralNode(OptionalOffset location, char character)
    : ZMFNode(kind, ValueType::String, location),
      character(character),
      value(makeZmfString(std::string_view(&character, 1))) {}

void BackslashLiteralNode::print(PrintTarget& target) const { target << backslashSpelling(character); }

void BackslashLiteralNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("BackslashLiteral (");
    name.append(backslashSpelling(character));
    name.push_back(')');
    dumpNode(*this, target, isLast, name);
}

CapturedGroupStringNode::CapturedGroupStringNode(OptionalOffset location, std::uint32_t group)
    : ZMFNode(kind, ValueType::String, location), group(group) {}

void CapturedGroupStringNode::print(PrintTarget& target) const { target << withNumber("\\", group); }

void CapturedGroupStringNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, withNumber("CapturedGroupString (", group, ")"));
}

CapturedGroupIndexNode::CapturedGroupIndexNode(OptionalOffset location, std::uint32_t group)
    : ZMFNode(kind, ValueType::Numeric, location), group(group) {}

void CapturedGroupIndexNode::print(PrintTarget& target) const { target << withNumber("\\-", group); }

void CapturedGroupIndexNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, withNumber("CapturedGroupIndex (", group, ")"));
}

PatternMatchNode::PatternMatchNode(OptionalOffset location, NodePtr left, std::string patternText,
                                   std::shared_ptr<const icu::RegexPattern> pattern)
    : ZMFNode(kind, ValueType::String, location),
      left(std::move(left)),
      patternText(std::move(patternText)),
      pattern(std::move(pattern)) {
    if (this->left->firstOffset) firstOffset = this->left->firstOffset;
}

// The pattern is not a child node but a literal, which closes the text on
// the right just as the literal's own print would.
void PatternMatchNode::print(PrintTarget& target) const {
    constexpr BindingPower binding = bindingPower(TokenKind::PatternMatch);
    PrintedEnds leftEnds = printOperand(target, *left, 0, binding);
    target << " ~~ " << quoted(patternText);
    target.ends = PrintedEnds{std::min(binding, leftEnds.left), closedEnd};
}

void PatternMatchNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, dumpLabel("PatternMatch", patternText), {left.get()});
}

}  // namespace tarnfold::zmf
