// Set operators: & | ~ and the cardinality #.
#include "query/convert.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/set_nodes.h"

namespace tarnfold::zmf {

namespace {

// S & S | P & P
class BitAndHandler : public InfixHandler {
public:
    BitAndHandler(Parser& parser) : InfixHandler(parser, TokenKind::BitAnd) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        convertPieceToSet(left);
        if (!hasType(*left, {ValueType::Set, ValueType::Position})) {
            parser.deferTypeError("Left operand to bitwise AND must be a set or position filter", *left);
            return std::move(left);
        }
        NodePtr right = parser.parseExpression(precedence);
        if (!right) return nullptr;
        convertPieceToSet(right);
        if (!hasType(*right, {ValueType::Set, ValueType::Position})) {
            parser.reportOperand(token, *right,
                                 "Right operand to bitwise AND must be a set or position filter");
            return nullptr;
        }
        if (right->valueType != left->valueType) {
            SourceSpan both{left->firstOffset, right->lastOffset};
            parser.report(token.begin, MessageLevel::Error,
                          "The operands to bitwise AND must both be set filters or position filters", {both});
            return nullptr;
        }
        return makeNode<BitAndNode>(parser, token, std::move(left), std::move(right));
    }
};

// S | S
class BitOrHandler : public InfixHandler {
public:
    BitOrHandler(Parser& parser) : InfixHandler(parser, TokenKind::BitOr) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        convertPieceToSet(left);
        if (left->valueType != ValueType::Set) {
            parser.deferTypeError("Left operand to bitwise OR must be a set filter", *left);
            return std::move(left);
        }
        NodePtr right = parser.parseExpression(precedence);
        if (!right) return nullptr;
        convertPieceToSet(right);
        if (right->valueType != ValueType::Set) {
            parser.reportOperand(token, *right, "Right operand to bitwise OR must be a set filter");
            return nullptr;
        }
        return makeNode<BitOrNode>(parser, token, std::move(left), std::move(right));
    }
};

// ~ S
class BitComplementHandler : public PrefixHandler {
public:
    BitComplementHandler(Parser& parser) : PrefixHandler(parser, TokenKind::Tilde) {}
    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(complementOperand);
        if (!operand) return nullptr;
        convertPieceToSet(operand);
        if (operand->valueType != ValueType::Set) {
            parser.reportOperand(token, *operand,
                                 "The operand to the complement operator must be a set filter");
            return nullptr;
        }
        return makeNode<BitComplementNode>(parser, token, std::move(operand));
    }
};

// # F, where F is a set, a string or a dictionary
class CardinalityHandler : public PrefixHandler {
public:
    CardinalityHandler(Parser& parser) : PrefixHandler(parser, TokenKind::Hash) {}
    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(cardinalityOperand);
        if (!operand) return nullptr;
        convertPieceToSet(operand);
        if (!hasType(*operand, {ValueType::Set, ValueType::String, ValueType::Dictionary})) {
            parser.reportOperand(
                token, *operand,
                "The operand to the cardinality operator must have set, string, or dictionary type");
            return nullptr;
        }
        // A dictionary is counted where it is stored: it has no value of its own.
        if (operand->valueType == ValueType::Dictionary &&
            operand->unwrapParens().kind != NodeKind::Identifier) {
            parser.reportOperand(token, *operand,
                                 "The dictionary operand to the cardinality operator must be a variable");
            return nullptr;
        }
        return makeNode<CardinalityNode>(parser, token, std::move(operand));
    }
};

}  // namespace

void registerSetHandlers(Parser& parser) {
    parser.registerInfix(std::make_unique<BitAndHandler>(parser));
    parser.registerInfix(std::make_unique<BitOrHandler>(parser));
    parser.registerPrefix(std::make_unique<BitComplementHandler>(parser));
    parser.registerPrefix(std::make_unique<CardinalityHandler>(parser));
}

}  // namespace tarnfold::zmf
