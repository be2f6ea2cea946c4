#pragma once
// Small pieces shared by the handler families.

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "query/parser.h"

namespace tarnfold::zmf {

inline bool hasType(const ZMFNode& node, std::initializer_list<ValueType> types) {
    for (ValueType type : types)
        if (node.valueType == type) return true;
    return false;
}

// "The operand to the 'NAME' filter must be a TYPE filter"
inline std::string operandMessage(std::string_view filterName, std::string_view typeWord) {
    return joinPieces({"The operand to the '", filterName, "' filter must be a ", typeWord, " filter"});
}

// Builds a node at the token, lets the caller fill it, and ends it at the
// last consumed token.
template <class Node, class... Args>
std::unique_ptr<Node> makeNode(Parser& parser, const Token& token, Args&&... args) {
    auto node = std::make_unique<Node>(token.begin, std::forward<Args>(args)...);
    parser.finish(*node);
    return node;
}

// The remark on a construct beyond the base language, shown only at the
// highest warning level; the parse goes on as usual. A text that is read
// again after an abandoned attempt (a range that did not fit, an operand
// given back) gets its remark once.
inline void reportExtension(Parser& parser, const Token& token, std::string_view filterName) {
    std::string text = joinPieces({"The '", filterName, "' filter is a ZMFi extension"});
    for (const Message& said : parser.messages().messages())
        if (said.level == MessageLevel::Info && said.location == token.begin && messageText(said) == text)
            return;
    parser.report(token.begin, MessageLevel::Info, text);
}

// A keyword filter that takes no operand. A filter of one colour (white,
// wtm) names its opposite as `Swapped`, whose node it builds under an odd
// number of colour swaps.
template <class Node, class Swapped = Node>
class BareFilterHandler : public PrefixHandler {
public:
    using PrefixHandler::PrefixHandler;
    // keyword
    NodePtr parse(const Token& token) override {
        if constexpr (!std::is_same_v<Node, Swapped>)
            if (coloursSwapped(parser.transformStack)) return makeNode<Swapped>(parser, token);
        return makeNode<Node>(parser, token);
    }
};

// Consumes an optional keyword such as 'quiet' or 'all'; true when it was there.
inline bool takeKeyword(Parser& parser, TokenKind kind) {
    if (parser.peekToken().kind != kind) return false;
    parser.nextToken();
    return true;
}

// The operators that assign to a variable: `=` and its compound forms.
inline bool isAssignmentOperator(TokenKind kind) {
    switch (kind) {
        case TokenKind::Assign:
        case TokenKind::ConditionalAssign:
        case TokenKind::AddAssign:
        case TokenKind::SubtractAssign:
        case TokenKind::MultiplyAssign:
        case TokenKind::DivideAssign:
        case TokenKind::ModulusAssign:
        case TokenKind::OrAssign:
        case TokenKind::AndAssign: return true;
        default: return false;
    }
}

}  // namespace tarnfold::zmf
