#include "query/nodes/tag_nodes.h"

#include <string>

#include "query/nodes/node_support.h"
#include "query/nodes/text_nodes.h"

namespace tarnfold::zmf {

namespace {

// A literal turns a reading filter into a test.
ValueType readingType(const NodePtr& literal) { return literal ? ValueType::Boolean : ValueType::String; }

void printReading(PrintTarget& target, std::string_view keyword, const NodePtr& literal) {
    target << keyword;
    if (literal) {
        target << " ";
        literal->print(target);
    }
    target.ends = PrintedEnds{};
}

void dumpReading(const ZMFNode& node, DumpTarget& target, bool isLast, std::string_view name,
                 const NodePtr& literal) {
    dumpNode(node, target, isLast, name, {literal.get()});
}

std::string_view colorWord(PlayerColor color) {
    switch (color) {
        case PlayerColor::White: return "white";
        case PlayerColor::Black: return "black";
        case PlayerColor::Both: break;
    }
    return "";
}

// "Name" or "Name (white)".
std::string withColor(std::string_view name, PlayerColor color) {
    std::string text(name);
    if (color != PlayerColor::Both) {
        text.append(" (");
        text.append(colorWord(color));
        text.push_back(')');
    }
    return text;
}

std::string keywordWithColor(std::string_view keyword, PlayerColor color) {
    std::string text(keyword);
    if (color != PlayerColor::Both) {
        text.push_back(' ');
        text.append(colorWord(color));
    }
    return text;
}

}  // namespace

std::string_view gameResultText(GameResult result) {
    switch (result) {
        case GameResult::WhiteWins: return "1-0";
        case GameResult::BlackWins: return "0-1";
        case GameResult::Draw: return "1/2-1/2";
        case GameResult::Unknown: break;
    }
    return "*";
}

DateNode::DateNode(OptionalOffset location, NodePtr literal)
    : ZMFNode(kind, readingType(literal), location), literal(std::move(literal)) {}

void DateNode::print(PrintTarget& target) const { printReading(target, "date", literal); }

void DateNode::dump(DumpTarget& target, bool isLast) const {
    dumpReading(*this, target, isLast, "Date", literal);
}

EventNode::EventNode(OptionalOffset location, NodePtr literal)
    : ZMFNode(kind, readingType(literal), location), literal(std::move(literal)) {}

void EventNode::print(PrintTarget& target) const { printReading(target, "event", literal); }

void EventNode::dump(DumpTarget& target, bool isLast) const {
    dumpReading(*this, target, isLast, "Event", literal);
}

EventdateNode::EventdateNode(OptionalOffset location, NodePtr literal)
    : ZMFNode(kind, readingType(literal), location), literal(std::move(literal)) {}

void EventdateNode::print(PrintTarget& target) const { printReading(target, "eventdate", literal); }

void EventdateNode::dump(DumpTarget& target, bool isLast) const {
    dumpReading(*this, target, isLast, "EventDate", literal);
}

SiteNode::SiteNode(OptionalOffset location, NodePtr literal)
    : ZMFNode(kind, readingType(literal), location), literal(std::move(literal)) {}

void SiteNode::print(PrintTarget& target) const { printReading(target, "site", literal); }

void SiteNode::dump(DumpTarget& target, bool isLast) const {
    dumpReading(*this, target, isLast, "Site", literal);
}

EcoNode::EcoNode(OptionalOffset location, NodePtr literal)
    : ZMFNode(kind, readingType(literal), location), literal(std::move(literal)) {}

void EcoNode::print(PrintTarget& target) const { printReading(target, "eco", literal); }

void EcoNode::dump(DumpTarget& target, bool isLast) const {
    dumpReading(*this, target, isLast, "Eco", literal);
}

OriginalcommentNode::OriginalcommentNode(OptionalOffset location, NodePtr literal)
    : ZMFNode(kind, readingType(literal), location), literal(std::move(literal)) {}

void OriginalcommentNode::print(PrintTarget& target) const {
    printReading(target, "originalcomment", literal);
}

void OriginalcommentNode::dump(DumpTarget& target, bool isLast) const {
    dumpReading(*this, target, isLast, "OriginalComment", literal);
}

PlayerNode::PlayerNode(OptionalOffset location, PlayerColor color, NodePtr literal)
    : ZMFNode(kind, readingType(literal), location), color(color), literal(std::move(literal)) {}

void PlayerNode::print(PrintTarget& target) const {
    printReading(target, keywordWithColor("player", color), literal);
}

void PlayerNode::dump(DumpTarget& target, bool isLast) const {
    dumpReading(*this, target, isLast, withColor("Player", color), literal);
}

EloNode::EloNode(OptionalOffset location, PlayerColor color)
    : ZMFNode(kind, ValueType::Numeric, location), color(color) {}

void EloNode::print(PrintTarget& target) const {
    target << keywordWithColor("elo", color);
    target.ends = PrintedEnds{};
}

void EloNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, withColor("Elo", color));
}

YearNode::YearNode(OptionalOffset location) : ZMFNode(kind, ValueType::Numeric, location) {}

void YearNode::print(PrintTarget& target) const {
    target << "year";
    target.ends = PrintedEnds{};
}

void YearNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Year"); }

ResultNode::ResultNode(OptionalOffset location, std::optional<GameResult> result)
    : ZMFNode(kind, result ? ValueType::Boolean : ValueType::String, location), result(result) {}

// Unquoted, so that the text reads back the same inside a comment, where a
// quoted result would be an argument of its own.
void ResultNode::print(PrintTarget& target) const {
    target << "result";
    if (result) target << " " << gameResultText(*result);
    target.ends = PrintedEnds{};
}

void ResultNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("Result");
    if (result) {
        name.append(" (");
        name.append(gameResultText(*result));
        name.push_back(')');
    }
    dumpNode(*this, target, isLast, name);
}

TagNode::TagNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::String, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void TagNode::print(PrintTarget& target) const { printPrefix(target, "tag", *operand, backquoteOperand); }

void TagNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Tag", {operand.get()});
}

SettagNode::SettagNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Boolean, location),
      left(std::move(left)),
      right(std::move(right)) {
    spanToOperand(*this, *this->right);
}

void SettagNode::print(PrintTarget& target) const { printArgumentPair(target, "settag", *left, *right); }

void SettagNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Settag", {{left.get(), "name"}, {right.get(), "value"}});
}

RemovetagNode::RemovetagNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Boolean, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void RemovetagNode::print(PrintTarget& target) const {
    printPrefix(target, "removetag", *operand, backquoteOperand);
}

void RemovetagNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Removetag", {operand.get()});
}

RemovecommentNode::RemovecommentNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void RemovecommentNode::print(PrintTarget& target) const {
    target << "removecomment";
    target.ends = PrintedEnds{};
}

void RemovecommentNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Removecomment");
}

}  // namespace tarnfold::zmf
