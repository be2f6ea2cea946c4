#include "query/nodes/move_nodes.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

std::string_view sourceWord(MoveSource source) {
    switch (source) {
        case MoveSource::Previous: return "previous";
        case MoveSource::Legal: return "legal";
        case MoveSource::Pseudolegal: return "pseudolegal";
        case MoveSource::Game: break;
    }
    return "";
}

std::string_view castleWord(MoveCastle castle) {
    switch (castle) {
        case MoveCastle::Either: return "castle";
        case MoveCastle::Kingside: return "o-o";
        case MoveCastle::Queenside: return "o-o-o";
        case MoveCastle::None: break;
    }
    return "";
}

std::string_view variationWord(MoveVariation variation) {
    switch (variation) {
        case MoveVariation::Primary: return "primary";
        case MoveVariation::Secondary: return "secondary";
        case MoveVariation::Both: break;
    }
    return "";
}

std::string_view resultWord(MoveResultKind kind) {
    switch (kind) {
        case MoveResultKind::From: return "from";
        case MoveResultKind::To: return "to";
        case MoveResultKind::Capture: return "capture";
        case MoveResultKind::Boolean: break;
    }
    return "";
}

// One parameter as printed: a keyword, an operand, or both.
struct PrintedParameter {
    std::string_view keyword;
    const ZMFNode* operand = nullptr;
    BindingPower power = 0;
};

void addWord(std::vector<PrintedParameter>& parameters, std::string_view word) {
    if (!word.empty()) parameters.push_back({word});
}

void addOperand(std::vector<PrintedParameter>& parameters, std::string_view keyword, const NodePtr& operand,
                BindingPower power) {
    if (operand && !operand->implicit) parameters.push_back({keyword, operand.get(), power});
}

}  // namespace

MoveNode::MoveNode(OptionalOffset location) : ZMFNode(kind, ValueType::Boolean, location) {}

// The parameter that decides the result kind has to come first to be read
// back the same way; the other set parameters come last, so that a filter of
// result kind Boolean does not start with one of them.
void MoveNode::print(PrintTarget& target) const {
    std::vector<PrintedParameter> parameters;
    switch (resultKind) {
        case MoveResultKind::From: addOperand(parameters, "from", from, pinParameter); break;
        case MoveResultKind::To: addOperand(parameters, "to", to, pinParameter); break;
        case MoveResultKind::Capture: addOperand(parameters, "capture", capture, pinParameter); break;
        case MoveResultKind::Boolean: break;
    }
    addWord(parameters, sourceWord(source));
    addWord(parameters, variationWord(variation));
    addWord(parameters, castleWord(castle));
    if (enpassant) addWord(parameters, "enpassant");
    if (null) addWord(parameters, "null");
    if (reverse) addWord(parameters, "reverse");
    if (count) addWord(parameters, "count");
    addOperand(parameters, "enpassantsquare", enpassantsquare, pinParameter);
    addOperand(parameters, "promote", promote, pieceParameter);
    addOperand(parameters, "drop", drop, pieceParameter);
    // The comment filter prints its own keyword and reads its arguments
    // within its parentheses.
    addOperand(parameters, "", commentBody, 0);
    if (resultKind != MoveResultKind::From) addOperand(parameters, "from", from, pinParameter);
    if (resultKind != MoveResultKind::To) addOperand(parameters, "to", to, pinParameter);
    if (resultKind != MoveResultKind::Capture) addOperand(parameters, "capture", capture, pinParameter);

    target << "move";
    BindingPower right = closedEnd;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const PrintedParameter& parameter = parameters[i];
        target << " " << parameter.keyword;
        right = closedEnd;
        if (!parameter.operand) continue;
        if (!parameter.keyword.empty()) target << " ";
        // Only the `:` that introduces a speculative body could continue an
        // operand.
        bool beforeColon = speculativeBody && i + 1 == parameters.size();
        PrintedEnds ends = printOperand(target, *parameter.operand, parameter.power,
                                        beforeColon ? bindingPower(TokenKind::Colon) : 0);
        right = std::min(parameter.power, ends.right);
    }
    if (speculativeBody) {
        target << " : ";
        PrintedEnds ends = printOperand(target, *speculativeBody, pinParameter, 0);
        right = std::min(pinParameter, ends.right);
    }
    target.ends = PrintedEnds{closedEnd, right};
}

void MoveNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("Move");
    for (std::string_view word : {sourceWord(source), variationWord(variation), castleWord(castle)})
        if (!word.empty()) name.append(" ").append(word);
    if (enpassant) name.append(" enpassant");
    if (null) name.append(" null");
    if (reverse) name.append(" reverse");
    if (count) name.append(" count");
    if (resultKind != MoveResultKind::Boolean) name.append(" result: ").append(resultWord(resultKind));
    dumpNode(*this, target, isLast, name,
             {{from.get(), "from"},
              {to.get(), "to"},
              {capture.get(), "capture"},
              {enpassantsquare.get(), "enpassantsquare"},
              {promote.get(), "promote"},
              {drop.get(), "drop"},
              {commentBody.get(), "comment"},
              {speculativeBody.get(), "speculative"}});
}

ConsecutivemovesNode::ConsecutivemovesNode(OptionalOffset location, NodePtr range, NodePtr left,
                                           NodePtr right, bool quiet)
    : ZMFNode(kind, ValueType::Numeric, location),
      range(std::move(range)),
      left(std::move(left)),
      right(std::move(right)),
      quiet(quiet) {}

void ConsecutivemovesNode::print(PrintTarget& target) const {
    target << "consecutivemoves";
    if (quiet) target << " quiet";
    if (range) {
        target << " ";
        range->print(target);
    }
    // Two filters side by side, each read from power 0: a second one that
    // starts with a minus would be read as a subtraction from the first.
    PrintTarget second = target.sibling();
    printOperand(second, *right, 0, 0);
    target << " (";
    printOperand(target, *left, 0, 0);
    target << " ";
    if (!second.text().empty() && second.text().front() == '-')
        target << "(" << second.text() << ")";
    else
        target << second.text();
    target << ")";
    target.ends = PrintedEnds{};
}

void ConsecutivemovesNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, quiet ? "Consecutivemoves quiet" : "Consecutivemoves",
             {{range.get(), "range"}, left.get(), right.get()});
}

}  // namespace tarnfold::zmf
