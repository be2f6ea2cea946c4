// Variables: names and assignments. A variable is typed by its first
// assignment and keeps that type.
#include "query/handlers/function_call.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/variable_nodes.h"

namespace tarnfold::zmf {

namespace {

// V | V(args)
class IdentifierHandler : public PrefixHandler {
public:
    IdentifierHandler(Parser& parser) : PrefixHandler(parser, TokenKind::Identifier) {}

    NodePtr parse(const Token& token) override {
        Symbol* symbol = parser.symbols.find(token.text);
        if (symbol && symbol->isFunction) return parseFunctionCall(parser, token, *symbol);
        if (!symbol) {
            if (!isAssignmentOperator(parser.peekToken().kind)) {
                parser.report(token.begin, MessageLevel::Error,
                              "Attempted use of undefined variable '" + token.text + "'",
                              {{token.begin, token.end}});
                return nullptr;
            }
            symbol = &parser.symbols.findOrCreateGlobal(token.text);
        }
        return makeNode<IdentifierNode>(parser, token, token.text, symbol->slot, symbol->valueType);
    }
};

// V op F, for = =? += -= *= /= %= |= &=
class AssignHandler : public InfixHandler {
public:
    AssignHandler(Parser& parser, TokenKind kind) : InfixHandler(parser, kind) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        if (left->kind != NodeKind::Identifier) {
            parser.reportOperand(token, *left, "Left operand to assignment operator must be an identifier");
            return nullptr;
        }
        auto& target = static_cast<IdentifierNode&>(*left);
        NodePtr value = parser.parseExpression(precedence);
        if (!value) return nullptr;

        Symbol* symbol = parser.symbols.find(target.name);
        if (target.valueType == ValueType::Empty) {
            target.valueType = value->valueType;
            if (symbol) parser.symbols.setType(*symbol, value->valueType);
        } else if (target.valueType != value->valueType) {
            parser.reportOperand(token, *value,
                                 "Cannot assign a " + std::string(printableType(value->valueType)) +
                                     " value to a variable of type " +
                                     std::string(printableType(target.valueType)));
            return nullptr;
        }
        if (std::optional<std::string> error = operatorError(token, target, *value)) {
            const ZMFNode& culprit =
                error->starts_with("Left") ? static_cast<const ZMFNode&>(target) : *value;
            parser.reportOperand(token, culprit, *error);
            return nullptr;
        }
        const std::uint32_t slot = target.slot;
        const bool writesString = target.valueType == ValueType::String;
        NodePtr assign =
            makeNode<AssignNode>(parser, token, std::move(left), std::move(value), token.kind, token.text);
        if (parser.noteLineWrite(slot) && writesString)
            parser.report(token.begin, MessageLevel::Warning,
                          "Atomic evaluation of string assignment in 'line' constituent may be inefficient");
        return assign;
    }

private:
    static std::optional<std::string> operatorError(const Token& token, const ZMFNode& target,
                                                    const ZMFNode& value) {
        auto is = [](const ZMFNode& node, std::initializer_list<ValueType> types) {
            return hasType(node, types);
        };
        using enum ValueType;
        switch (token.kind) {
            case TokenKind::Assign:
                if (!is(value, {Numeric, Set, Position, String}))
                    return "Right operand to assignment operator must be a numeric, position, string, or set "
                           "value";
                return std::nullopt;
            case TokenKind::ConditionalAssign:
                if (!is(value, {Set}) || !is(target, {Set}))
                    return "Right operand to conditional set assignment must be a set value";
                return std::nullopt;
            case TokenKind::AddAssign:
                if (!is(target, {Numeric, String}))
                    return "Left operand to operator '+=' must be a numeric or string variable";
                if (!is(value, {Numeric, String}))
                    return "Right operand to operator '+=' must be a numeric or string value";
                if (target.valueType != value.valueType)
                    return "Both operands to operator '+=' must be either numeric or string types";
                return std::nullopt;
            case TokenKind::OrAssign:
            case TokenKind::AndAssign:
                if (!is(target, {Set}))
                    return "Left operand to bitwise compound assignment operator must be a set variable";
                if (!is(value, {Set}))
                    return "Right operand to bitwise compound assignment operator must be a set value";
                return std::nullopt;
            default:
                if (!is(target, {Numeric}))
                    return "Left operand to compound assignment operator must be a numeric variable";
                if (!is(value, {Numeric}))
                    return "Right operand to compound assignment operator must be a numeric value";
                return std::nullopt;
        }
    }
};

}  // namespace

void registerVariableHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<IdentifierHandler>(parser));
    parser.registerInfix(std::make_unique<AssignHandler>(parser, TokenKind::Assign));
    for (TokenKind kind : {TokenKind::ConditionalAssign, TokenKind::DivideAssign, TokenKind::SubtractAssign,
                           TokenKind::ModulusAssign, TokenKind::AddAssign, TokenKind::MultiplyAssign,
                           TokenKind::OrAssign, TokenKind::AndAssign})
        parser.registerInfix(std::make_unique<AssignHandler>(parser, kind));
}

}  // namespace tarnfold::zmf
