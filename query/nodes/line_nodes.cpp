#include "query/nodes/line_nodes.h"

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

std::string repetitionText(const LineRepeat& repeat) {
    switch (repeat.repetition) {
        case LineRepetition::None: return "";
        case LineRepetition::Optional: return "?";
        case LineRepetition::OneOrMore: return "+";
        case LineRepetition::Any: return "*";
        case LineRepetition::Counted: break;
    }
    std::string text("{");
    if (repeat.low) text.append(std::to_string(*repeat.low));
    if (repeat.low != repeat.high) {
        text.append(",");
        if (repeat.high) text.append(std::to_string(*repeat.high));
    }
    return text.append("}");
}

namespace {

// The dump's name of a constituent or group, with its repetition.
std::string repeatName(std::string_view name, const LineRepeat& repeat) {
    std::string words(name);
    if (repeat.repetition != LineRepetition::None) words.append(" ").append(repetitionText(repeat));
    if (repeat.linearizable) words.append(" linearizable");
    return words;
}

void printChain(PrintTarget& target, const std::vector<NodePtr>& members, std::string_view arrow) {
    for (std::size_t index = 0; index < members.size(); ++index) {
        if (index > 0) target << " " << arrow << " ";
        members[index]->print(target);
    }
}

}  // namespace

LineConstituentNode::LineConstituentNode(OptionalOffset location, NodePtr filter)
    : ZMFNode(kind, ValueType::Boolean, location), filter(std::move(filter)) {
    spanToOperand(*this, *this->filter);
}

// A filter in parentheses would be read back as a group: braces keep it one.
void LineConstituentNode::print(PrintTarget& target) const {
    const bool braced = filter->kind == NodeKind::Paren;
    if (braced) target << "{";
    printOperand(target, *filter, 0, 0);
    if (braced) target << "}";
    target << repetitionText(repeat);
    target.ends = PrintedEnds{};
}

void LineConstituentNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, repeatName("LineConstituent", repeat), {filter.get()});
}

LineGroupNode::LineGroupNode(OptionalOffset location) : ZMFNode(kind, ValueType::Boolean, location) {}

void LineGroupNode::print(PrintTarget& target) const {
    target << "(";
    printChain(target, children, backward ? "<--" : "-->");
    target << ")" << repetitionText(repeat);
    target.ends = PrintedEnds{};
}

void LineGroupNode::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, repeatName("LineGroup", repeat));
    target.dumpChildren(isLast, children);
}

LineNode::LineNode(OptionalOffset location, bool lastposition)
    : ZMFNode(kind, lastposition ? ValueType::Position : ValueType::Numeric, location),
      lastposition(lastposition) {}

std::string LineNode::optionsText() const {
    std::string text;
    const std::pair<bool, const char*> options[] = {
        {firstmatch, "firstmatch"}, {lastposition, "lastposition"}, {nestban, "nestban"},
        {nolinearize, "nolinearize"}, {nonatomic, "nonatomic"},     {primary, "primary"},
        {quiet, "quiet"},           {secondary, "secondary"},       {singlecolor, "singlecolor"}};
    for (const auto& [set, word] : options)
        if (set) text.append(" ").append(word);
    return text;
}

void LineNode::print(PrintTarget& target) const {
    target << "line";
    if (range) {
        target << " ";
        range->print(target);
    }
    target << optionsText() << " ";
    const std::string_view arrow = backward ? "<--" : "-->";
    target << arrow << " ";
    printChain(target, constituents, arrow);
    // The last constituent reads as far as it can.
    target.ends = PrintedEnds{closedEnd, 0};
}

void LineNode::dump(DumpTarget& target, bool isLast) const {
    std::string name(backward ? "Line <--" : "Line -->");
    target.writeLine(*this, isLast, name.append(optionsText()));
    target.openLevel(isLast);
    if (range) range->dumpLabelled(target, constituents.empty(), "range");
    for (std::size_t index = 0; index < constituents.size(); ++index)
        constituents[index]->dump(target, index + 1 == constituents.size());
    target.closeLevel();
}

}  // namespace tarnfold::zmf
