// Comparisons == != < <= > >=: one typing rule for all six.
#include "query/convert.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/comparison_nodes.h"

namespace tarnfold::zmf {

namespace {

// F op F, where both sides are sets, numbers, strings or positions
template <class Node>
class ComparisonHandler : public InfixHandler {
public:
    ComparisonHandler(Parser& parser, TokenKind kind) : InfixHandler(parser, kind) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        const std::string& op = token.text;
        if (!comparable(*left)) {
            parser.deferTypeError(
                "Left operand to '" + op + "' must be a set, numeric, string, or position filter", *left);
            return std::move(left);
        }
        NodePtr right = parser.parseExpression(precedence);
        if (!right) return nullptr;
        convertToCommon(left, right);
        if (std::optional<std::string> error = comparisonTypeError(op, left->valueType, right->valueType)) {
            const ZMFNode& culprit = error->starts_with("Left") ? *left : *right;
            if (error->starts_with("Sets")) {
                SourceSpan both{left->firstOffset, right->lastOffset};
                parser.report(token.begin, MessageLevel::Error, *error, {both});
            } else {
                parser.reportOperand(token, culprit, *error);
            }
            return nullptr;
        }
        ValueType result = token.kind == TokenKind::NotEqual ? ValueType::Boolean : left->valueType;
        return makeNode<Node>(parser, token, std::move(left), std::move(right), result);
    }

private:
    static bool comparable(const ZMFNode& node) {
        return hasType(node, {ValueType::Set, ValueType::Numeric, ValueType::Position, ValueType::String});
    }
};

}  // namespace

void registerComparisonHandlers(Parser& parser) {
    parser.registerInfix(std::make_unique<ComparisonHandler<EqualToNode>>(parser, TokenKind::Equal));
    parser.registerInfix(std::make_unique<ComparisonHandler<NotEqualNode>>(parser, TokenKind::NotEqual));
    parser.registerInfix(std::make_unique<ComparisonHandler<LessThanNode>>(parser, TokenKind::Less));
    parser.registerInfix(std::make_unique<ComparisonHandler<LessEqualNode>>(parser, TokenKind::LessEqual));
    parser.registerInfix(std::make_unique<ComparisonHandler<GreaterThanNode>>(parser, TokenKind::Greater));
    parser.registerInfix(
        std::make_unique<ComparisonHandler<GreaterEqualNode>>(parser, TokenKind::GreaterEqual));
}

}  // namespace tarnfold::zmf
