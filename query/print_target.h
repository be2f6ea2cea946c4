#pragma once
// The sink of `print`, which writes a tree back as query text. Besides the
// text, a target carries how the text just written binds at its two ends, so
// that a parent can tell whether a child needs parentheses to be read back
// with the same grouping.

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "query/binding_power.h"
#include "query/node.h"

namespace tarnfold::zmf {

inline constexpr BindingPower closedEnd = std::numeric_limits<BindingPower>::max();

struct PrintedEnds {
    // The least binding power among the infix operators that open the text
    // from the left. Read as an operand with a minimum at or above it, the
    // text would stop before that operator.
    BindingPower left = closedEnd;
    // The least minimum with which an operand along the text's right edge is
    // read. An operator of a higher binding power written behind the text
    // would be taken into that operand.
    BindingPower right = closedEnd;
};

class PrintTarget {
public:
    bool expandTransforms = false;
    bool expandFunctions = false;
    bool expandFuncArgs = false;

    // A node's print sets this for the text it wrote, as its last step. A
    // fresh target is closed at both ends, which suits any text that is
    // delimited (literals, keywords, brackets). A node that prints its only
    // child straight into its own target passes the child's ends on.
    PrintedEnds ends;

    PrintTarget& operator<<(std::string_view text) {
        text_.append(text);
        return *this;
    }

    const std::string& text() const { return text_; }
    std::string take() { return std::move(text_); }

    // An empty target with the same switches, to look at a child's text
    // before deciding how to write it.
    PrintTarget sibling() const;

private:
    std::string text_;
};

// Writes `node` as an operand that is read with `minimum` as its least
// binding power and is followed by an operator of binding power `following`
// (0 when nothing follows that could bind). The node gets parentheses when
// its text would otherwise be grouped differently. Returns the ends of what
// was written.
PrintedEnds printOperand(PrintTarget& target, const ZMFNode& node, BindingPower minimum,
                         BindingPower following);

// "left op right" for an operator whose right operand is read with
// `precedence` as its minimum, and which binds with precedence + 1 when
// right-associative.
void printInfix(PrintTarget& target, const ZMFNode& left, std::string_view spelling, const ZMFNode& right,
                BindingPower precedence, bool rightAssociative);

// The same for an operator of the infix table.
inline void printInfix(PrintTarget& target, const ZMFNode& left, std::string_view spelling,
                       const ZMFNode& right, TokenKind op) {
    const InfixOperator& row = infixOperator(op);
    printInfix(target, left, spelling, right, row.precedence, row.rightAssociative);
}

// A prefix operator or keyword and its operand, which it reads with
// `operandPower` as the minimum. A word is followed by a blank; a symbol only
// when the operand's text would otherwise fuse with it into another token.
void printPrefix(PrintTarget& target, std::string_view spelling, const ZMFNode& operand,
                 BindingPower operandPower);

// Filters side by side, each read on its own from power 0, as in braces or
// at the top of a query: `separator` goes between two of them, `terminator`
// behind each. A filter whose text starts with a minus is parenthesised
// unless it comes first, since the minus would continue the filter before it
// as a subtraction. So is a string literal behind a filter that would take
// it as its own (date "x"), unless the list is one of comment or message,
// whose filters leave string arguments alone.
void printSequence(PrintTarget& target, const std::vector<NodePtr>& nodes, std::string_view separator,
                   std::string_view terminator, bool stringsStandAlone = false);

}  // namespace tarnfold::zmf
