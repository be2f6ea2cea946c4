// Attacks between sets: attacks, attackedby and its two-word form attacked by.
#include <string>

#include "query/convert.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/attack_nodes.h"

namespace tarnfold::zmf {

namespace {

// S attacks S (Node = AttacksNode, name "attacks"), S attackedby S and
// S attacked by S (Node = AttackedByNode, name "attackedby")
template <class Node>
class AttackHandler : public InfixHandler {
public:
    // `name` is the filter in messages, whichever spelling stands in the text.
    AttackHandler(Parser& parser, TokenKind kind, std::string_view name)
        : InfixHandler(parser, kind), name_(name) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        convertPieceToSet(left);
        if (left->valueType != ValueType::Set) {
            parser.deferTypeError(message("Left"), *left);
            return std::move(left);
        }
        if (token.kind == TokenKind::KwAttacked) {
            if (parser.peekToken().kind != TokenKind::KwBy) {
                parser.report(token.begin, MessageLevel::Error, "Missing 'by' keyword after 'attacked'");
                return nullptr;
            }
            parser.nextToken();
        }
        NodePtr right = parser.parseExpression(precedence);
        if (!right) return nullptr;
        convertPieceToSet(right);
        if (right->valueType != ValueType::Set) {
            parser.reportOperand(token, *right, message("Right"));
            return nullptr;
        }
        return makeNode<Node>(parser, token, std::move(left), std::move(right));
    }

private:
    std::string message(std::string_view side) const {
        return joinPieces({side, " operand to '", name_, "' filter must be a set filter"});
    }

    std::string_view name_;
};

}  // namespace

void registerAttackHandlers(Parser& parser) {
    parser.registerInfix(
        std::make_unique<AttackHandler<AttacksNode>>(parser, TokenKind::KwAttacks, "attacks"));
    parser.registerInfix(
        std::make_unique<AttackHandler<AttackedByNode>>(parser, TokenKind::KwAttackedby, "attackedby"));
    parser.registerInfix(
        std::make_unique<AttackHandler<AttackedByNode>>(parser, TokenKind::KwAttacked, "attackedby"));
}

}  // namespace tarnfold::zmf
