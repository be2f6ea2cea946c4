// and, or, not: any operand type, Boolean result.
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/logical_nodes.h"

namespace tarnfold::zmf {

namespace {

// F and F, F or F
template <class Node>
class LogicalOperatorHandler : public InfixHandler {
public:
    LogicalOperatorHandler(Parser& parser, TokenKind kind, std::uint64_t precedence)
        : InfixHandler(parser, kind, precedence, false) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        NodePtr right = parser.parseExpression(precedence);
        if (!right) return nullptr;
        return makeNode<Node>(parser, token, std::move(left), std::move(right));
    }
};

// not F
class NotHandler : public PrefixHandler {
public:
    NotHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwNot) {}
    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(30);
        if (!operand) return nullptr;
        return makeNode<NotNode>(parser, token, std::move(operand));
    }
};

}  // namespace

void registerLogicalHandlers(Parser& parser) {
    parser.registerInfix(std::make_unique<LogicalOperatorHandler<OrNode>>(parser, TokenKind::KwOr, 20));
    parser.registerInfix(std::make_unique<LogicalOperatorHandler<AndNode>>(parser, TokenKind::KwAnd, 25));
    parser.registerPrefix(std::make_unique<NotHandler>(parser));
}

}  // namespace tarnfold::zmf
