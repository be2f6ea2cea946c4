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
    LogicalOperatorHandler(Parser& parser, TokenKind kind) : InfixHandler(parser, kind) {}

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
        NodePtr operand = parser.parseExpression(notOperand);
        if (!operand) return nullptr;
        return makeNode<NotNode>(parser, token, std::move(operand));
    }
};

}  // namespace

void registerLogicalHandlers(Parser& parser) {
    parser.registerInfix(std::make_unique<LogicalOperatorHandler<OrNode>>(parser, TokenKind::KwOr));
    parser.registerInfix(std::make_unique<LogicalOperatorHandler<AndNode>>(parser, TokenKind::KwAnd));
    parser.registerPrefix(std::make_unique<NotHandler>(parser));
}

}  // namespace tarnfold::zmf
