#include "query/print_target.h"

#include <algorithm>
#include <cctype>

namespace tarnfold::zmf {

PrintTarget PrintTarget::sibling() const {
    PrintTarget target;
    target.expandTransforms = expandTransforms;
    target.expandFunctions = expandFunctions;
    target.expandFuncArgs = expandFuncArgs;
    return target;
}

namespace {

void writeParenthesised(PrintTarget& target, std::string_view text) { target << "(" << text << ")"; }

}  // namespace

PrintedEnds printOperand(PrintTarget& target, const ZMFNode& node, BindingPower minimum,
                         BindingPower following) {
    PrintTarget inner = target.sibling();
    node.print(inner);
    PrintedEnds ends = inner.ends;
    if (ends.left <= minimum || ends.right < following) {
        writeParenthesised(target, inner.text());
        return PrintedEnds{};
    }
    target << inner.text();
    return ends;
}

void printInfix(PrintTarget& target, const ZMFNode& left, std::string_view spelling, const ZMFNode& right,
                BindingPower precedence, bool rightAssociative) {
    BindingPower binding = precedence + (rightAssociative ? 1 : 0);
    // The left operand's own left end faces whatever reads this whole
    // expression, which the caller checks through the ends set below.
    PrintedEnds leftEnds = printOperand(target, left, 0, binding);
    target << " " << spelling << " ";
    PrintedEnds rightEnds = printOperand(target, right, precedence, 0);
    target.ends = PrintedEnds{std::min(binding, leftEnds.left), std::min(precedence, rightEnds.right)};
}

void printPrefix(PrintTarget& target, std::string_view spelling, const ZMFNode& operand,
                 BindingPower operandPower) {
    PrintTarget inner = target.sibling();
    PrintedEnds operandEnds = printOperand(inner, operand, operandPower, 0);
    const std::string& text = inner.text();
    target << spelling;
    char last = spelling.empty() ? ' ' : spelling.back();
    bool word = std::isalnum(static_cast<unsigned char>(last)) != 0;
    if (word || (!text.empty() && text.front() == last)) target << " ";
    target << text;
    target.ends = PrintedEnds{closedEnd, std::min(operandPower, operandEnds.right)};
}

namespace {

// Whether the text ends in a filter that takes a string literal after it
// if one follows, such as date or player white: a string written next
// would be read as that literal.
bool endsWithLiteralTaker(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    static constexpr std::string_view takers[] = {"date",  "event", "eventdate",       "site",       "eco",
                                                  "player", "white", "originalcomment", "hascomment", "black"};
    for (std::string_view word : takers) {
        if (!text.ends_with(word)) continue;
        const std::size_t before = text.size() - word.size();
        if (before == 0 || !(std::isalnum(static_cast<unsigned char>(text[before - 1])) || text[before - 1] == '_'))
            return true;
    }
    return false;
}

}  // namespace

void printSequence(PrintTarget& target, const std::vector<NodePtr>& nodes, std::string_view separator,
                   std::string_view terminator, bool stringsStandAlone) {
    bool first = true;
    for (const NodePtr& node : nodes) {
        if (!first) target << separator;
        PrintTarget inner = target.sibling();
        printOperand(inner, *node, 0, 0);
        const std::string& text = inner.text();
        const bool absorbed =
            !stringsStandAlone && !text.empty() && text.front() == '"' && endsWithLiteralTaker(target.text());
        if (!first && !text.empty() && (text.front() == '-' || absorbed))
            writeParenthesised(target, text);
        else
            target << text;
        target << terminator;
        first = false;
    }
}

}  // namespace tarnfold::zmf
