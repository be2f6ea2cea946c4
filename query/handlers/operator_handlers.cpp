// Operators of no larger family: membership in, the position colon, and the
// identity backquote.
#include "query/convert.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/operator_nodes.h"

namespace tarnfold::zmf {

namespace {

// S in S | T in T
class InHandler : public InfixHandler {
public:
    InHandler(Parser& parser) : InfixHandler(parser, TokenKind::KwIn) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        convertPieceToSet(left);
        if (!hasType(*left, {ValueType::Set, ValueType::String})) {
            parser.deferTypeError("Left operand to 'in' filter must be a set or string filter", *left);
            return std::move(left);
        }
        NodePtr right = parser.parseExpression(precedence);
        if (!right) return nullptr;
        convertPieceToSet(right);
        if (right->valueType != left->valueType) {
            SourceSpan both{left->firstOffset, right->lastOffset};
            parser.report(token.begin, MessageLevel::Error,
                          "The operands to the 'in' filter must both be set or string filters", {both});
            return nullptr;
        }
        return makeNode<InNode>(parser, token, std::move(left), std::move(right));
    }
};

// P : F
class ColonHandler : public InfixHandler {
public:
    ColonHandler(Parser& parser) : InfixHandler(parser, TokenKind::Colon) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        if (left->valueType != ValueType::Position) {
            parser.deferTypeError(
                joinPieces({"Left operand to operator '", token.text, "' must be a position filter"}), *left);
            return std::move(left);
        }
        NodePtr right = parser.parseExpression(precedence);
        if (!right) return nullptr;
        return makeNode<ColonNode>(parser, token, std::move(left), std::move(right));
    }
};

// ` F
class IdentityHandler : public PrefixHandler {
public:
    IdentityHandler(Parser& parser) : PrefixHandler(parser, TokenKind::Backquote) {}
    NodePtr parse(const Token& token) override {
        reportExtension(parser, token, "`");
        NodePtr operand = parser.parseExpression(backquoteOperand);
        if (!operand) return nullptr;
        return makeNode<IdentityNode>(parser, token, std::move(operand));
    }
};

}  // namespace

void registerOperatorHandlers(Parser& parser) {
    parser.registerInfix(std::make_unique<InHandler>(parser));
    parser.registerInfix(std::make_unique<ColonHandler>(parser));
    parser.registerPrefix(std::make_unique<IdentityHandler>(parser));
}

}  // namespace tarnfold::zmf
