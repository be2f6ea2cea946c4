// Subscripts: slices of strings and members of dictionaries, with
// assignment into either.
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/slice_nodes.h"
#include "query/nodes/variable_nodes.h"

namespace tarnfold::zmf {

namespace {

// T [ N ] | T [ N? : N? ] | D [ T ], each perhaps followed by = T
class SliceHandler : public InfixHandler {
public:
    SliceHandler(Parser& parser) : InfixHandler(parser, TokenKind::LeftBracket) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        if (left->valueType == ValueType::Dictionary) return parseMember(left, token);
        if (left->valueType != ValueType::String) {
            parser.deferTypeError("Left operand to operator '[' must be a string filter or dictionary",
                                  *left);
            return std::move(left);
        }
        return parseSlice(left, token);
    }

private:
    NodePtr parseMember(NodePtr& left, const Token& token) {
        if (left->kind != NodeKind::Identifier) {
            parser.reportOperand(token, *left, "Target of dictionary access operator must be a variable");
            return nullptr;
        }
        NodePtr key = parser.parseExpression(0);
        if (!key) return nullptr;
        if (key->valueType != ValueType::String) {
            parser.reportOperand(token, *key, "Dictionary access operator '[' must be a string filter");
            return nullptr;
        }
        if (parser.nextToken().kind != TokenKind::RightBracket) {
            parser.report(token.begin, MessageLevel::Error,
                          "Missing closing bracket for dictionary access operator");
            return nullptr;
        }
        NodePtr access = makeNode<DictionaryAccessNode>(parser, token, std::move(left), std::move(key));
        return assignInto(std::move(access),
                          "Right operand of dictionary member assignment filter must be a string filter");
    }

    NodePtr parseSlice(NodePtr& left, const Token& token) {
        NodePtr lower, upper;
        if (parser.peekToken().kind != TokenKind::Colon && !(lower = index(token))) return nullptr;
        bool range = parser.peekToken().kind == TokenKind::Colon;
        if (range) {
            parser.nextToken();
            if (parser.peekToken().kind != TokenKind::RightBracket && !(upper = index(token))) return nullptr;
        }
        if (parser.nextToken().kind != TokenKind::RightBracket) {
            parser.report(token.begin, MessageLevel::Error,
                          "Missing closing bracket for string slicing operator");
            return nullptr;
        }
        bool variable = left->kind == NodeKind::Identifier;
        NodePtr slice =
            makeNode<SliceNode>(parser, token, std::move(left), std::move(lower), std::move(upper), range);
        if (parser.peekToken().kind == TokenKind::Assign && !variable) {
            parser.report(parser.peekToken().begin, MessageLevel::Error,
                          "Target of slice assignment filter must be a variable",
                          {{slice->firstOffset, slice->lastOffset}});
            return nullptr;
        }
        return assignInto(std::move(slice),
                          "Right operand of slice assignment filter must be a string filter");
    }

    NodePtr index(const Token& token) {
        NodePtr index = parser.parseExpression(0);
        // A colon behind the index declined it as an operator and left its
        // message behind; here the colon is the slice's own.
        parser.clearPending();
        if (!index) return nullptr;
        if (index->valueType != ValueType::Numeric) {
            parser.reportOperand(token, *index, "Slicing index to operator '[' must be a numeric filter");
            return nullptr;
        }
        return index;
    }

    // An `=` behind a subscript assigns into it.
    NodePtr assignInto(NodePtr target, const char* wrongValue) {
        if (parser.peekToken().kind != TokenKind::Assign) return target;
        Token assign = parser.nextToken();
        NodePtr value = parser.parseExpression(subscriptValue);
        if (!value) return nullptr;
        if (value->valueType != ValueType::String) {
            parser.reportOperand(assign, *value, wrongValue);
            return nullptr;
        }
        noteLineWrite(assign, *target);
        return makeNode<AssignNode>(parser, assign, std::move(target), std::move(value), TokenKind::Assign,
                                    "=");
    }

    // A string variable written in part is copied whole for a line's path;
    // a dictionary is shared by every path.
    void noteLineWrite(const Token& assign, const ZMFNode& target) {
        if (!parser.inTrackedLineConstituent()) return;
        if (target.kind == NodeKind::DictionaryAccess) {
            parser.report(assign.begin, MessageLevel::Warning,
                          "Dictionary assignment in 'line' constituent will not be evaluated atomically");
            return;
        }
        const ZMFNode& variable = static_cast<const SliceNode&>(target).operand->unwrapParens();
        if (variable.kind == NodeKind::Identifier)
            parser.noteLineWrite(static_cast<const IdentifierNode&>(variable).slot);
        parser.report(assign.begin, MessageLevel::Warning,
                      "Atomic evaluation of slice assignment in 'line' constituent may be inefficient");
    }
};

}  // namespace

void registerSliceHandlers(Parser& parser) { parser.registerInfix(std::make_unique<SliceHandler>(parser)); }

}  // namespace tarnfold::zmf
