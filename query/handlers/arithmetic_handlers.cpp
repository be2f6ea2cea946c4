// Arithmetic: + - * / % as infix operators, unary minus and abs.
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/arithmetic_nodes.h"

namespace tarnfold::zmf {

namespace {

// `+` and `*` double as repetition marks in lines of play: when no right
// operand follows they are no operators at all, silently (Parser::tryOperand).

// N + N | T + T
class AddHandler : public InfixHandler {
public:
    AddHandler(Parser& parser) : InfixHandler(parser, TokenKind::Plus) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        if (!hasType(*left, {ValueType::Numeric, ValueType::String})) {
            parser.deferTypeError(
                "Left operand to operator '" + token.text + "' must be a numeric or string filter", *left);
            return std::move(left);
        }
        ParserSnapshot before;
        Parser::TriedOperand right = parser.tryOperand(precedence, before, left->valueType);
        if (right.otherType || (right.node && right.node->valueType != left->valueType)) {
            SourceSpan span = right.node ? Parser::spanOf(*right.node) : right.otherSpan;
            parser.restore(before, true);
            parser.deferTypeError(
                "the operands to operator '" + token.text + "' must both be a numeric or string filter",
                span);
            return std::move(left);
        }
        if (!right.node) {
            parser.declined = true;
            return std::move(left);
        }
        return makeNode<AddNode>(parser, token, std::move(left), std::move(right.node));
    }
};

// N - N, N * N, N / N, N % N
template <class Node>
class NumericOperatorHandler : public InfixHandler {
public:
    NumericOperatorHandler(Parser& parser, TokenKind kind, bool optionalRight)
        : InfixHandler(parser, kind), optionalRight_(optionalRight) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        if (left->valueType != ValueType::Numeric) {
            parser.deferTypeError("Left operand to operator '" + token.text + "' must be a numeric filter",
                                  *left);
            return std::move(left);
        }
        NodePtr right;
        if (optionalRight_) {
            ParserSnapshot before;
            Parser::TriedOperand tried = parser.tryOperand(precedence, before, ValueType::Numeric);
            if (tried.otherType) {
                // Known from an earlier try: parse it again for the message.
                tried.node = parser.parseExpression(precedence);
                if (!tried.node) return nullptr;
            }
            if (!tried.node) {
                parser.declined = true;
                return std::move(left);
            }
            right = std::move(tried.node);
        } else {
            right = parser.parseExpression(precedence);
            if (!right) return nullptr;
        }
        if (right->valueType != ValueType::Numeric) {
            parser.reportOperand(token, *right,
                                 "Right operand to operator '" + token.text + "' must be a numeric filter");
            return nullptr;
        }
        return makeNode<Node>(parser, token, std::move(left), std::move(right));
    }

private:
    bool optionalRight_;
};

// - N
class NegateHandler : public PrefixHandler {
public:
    NegateHandler(Parser& parser) : PrefixHandler(parser, TokenKind::Minus) {}
    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(backquoteOperand);
        if (!operand) return nullptr;
        if (operand->valueType != ValueType::Numeric) {
            parser.reportOperand(token, *operand, "Operand to negation operator must be a numeric filter");
            return nullptr;
        }
        return makeNode<NegateNode>(parser, token, std::move(operand));
    }
};

// abs N
class AbsHandler : public PrefixHandler {
public:
    AbsHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwAbs) {}
    NodePtr parse(const Token& token) override {
        NodePtr operand = parser.parseExpression(absOperand);
        if (!operand) return nullptr;
        if (operand->valueType != ValueType::Numeric) {
            parser.reportOperand(token, *operand, "The operand to the 'abs' filter must be a numeric filter");
            return nullptr;
        }
        return makeNode<AbsNode>(parser, token, std::move(operand));
    }
};

}  // namespace

void registerArithmeticHandlers(Parser& parser) {
    parser.registerInfix(std::make_unique<AddHandler>(parser));
    parser.registerInfix(
        std::make_unique<NumericOperatorHandler<SubtractNode>>(parser, TokenKind::Minus, false));
    parser.registerInfix(
        std::make_unique<NumericOperatorHandler<MultiplyNode>>(parser, TokenKind::Star, true));
    parser.registerInfix(
        std::make_unique<NumericOperatorHandler<DivideNode>>(parser, TokenKind::Divide, false));
    parser.registerInfix(
        std::make_unique<NumericOperatorHandler<ModulusNode>>(parser, TokenKind::Modulus, false));
    parser.registerPrefix(std::make_unique<NegateHandler>(parser));
    parser.registerPrefix(std::make_unique<AbsHandler>(parser));
}

}  // namespace tarnfold::zmf
