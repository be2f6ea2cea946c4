// Iteration: loops over the squares or pieces of a set, over a string and
// over the keys of a dictionary, each binding a variable of its own for its
// body; and the assignment of a piece identity.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/iteration_nodes.h"
#include "query/nodes/variable_nodes.h"

namespace tarnfold::zmf {

namespace {

NodePtr fail(Parser& parser, const Token& at, std::string_view text, std::vector<SourceSpan> spans = {}) {
    parser.report(at.begin, MessageLevel::Error, text, std::move(spans));
    return nullptr;
}

// The body's own scope, without a barrier: the body sees the names around
// the loop. It closes on every way out, failures included.
class LoopScope {
public:
    explicit LoopScope(Parser& parser) : parser_(parser) { parser_.symbols.pushScope(false); }
    ~LoopScope() { parser_.symbols.popScope(); }
    LoopScope(const LoopScope&) = delete;
    LoopScope& operator=(const LoopScope&) = delete;

private:
    Parser& parser_;
};

struct LoopBody {
    std::uint32_t slot = 0;
    NodePtr body;  // null when the body failed
};

// Declares the loop variable in a new scope and reads the body there. The
// source of the loop must have been read before, outside that scope.
LoopBody parseLoopBody(Parser& parser, const std::string& variable, ValueType type) {
    LoopScope scope(parser);
    LoopBody loop;
    loop.slot = parser.symbols.declareLocal(variable, type).slot;
    loop.body = parser.parseExpression(0);
    return loop;
}

// piece all V in S F | piece V = S
class PieceHandler : public PrefixHandler {
public:
    PieceHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwPiece) {}

    NodePtr parse(const Token& token) override {
        const bool all = takeKeyword(parser, TokenKind::KwAll);
        Token name = parser.nextToken();
        if (name.kind != TokenKind::Identifier)
            return fail(parser, token, "Expected identifier after piece filter");
        TokenKind next = parser.peekToken().kind;
        if (!all && next == TokenKind::Assign) return parseAssignment(token, name);
        if (next != TokenKind::KwIn) {
            // Another assignment operator shows that an assignment was meant.
            if (!all && isAssignmentOperator(next))
                return fail(parser, token, "Expected '=' following identifier in piece assignment");
            return fail(parser, token, "Expected 'in' keyword after identifier for 'piece' filter");
        }
        parser.nextToken();

        NodePtr set = parser.parseExpression(squareOperand);
        if (!set) return nullptr;
        if (set->valueType != ValueType::Set) {
            parser.reportOperand(token, *set,
                                 "The filter following 'in' for 'piece' filter must be a set filter");
            return nullptr;
        }
        LoopBody loop = parseLoopBody(parser, name.text, ValueType::Piece);
        if (!loop.body) return nullptr;
        return makeNode<PieceNode>(parser, token, name.text, loop.slot, std::move(set), std::move(loop.body),
                                   all);
    }

private:
    // piece V = S, the name read and `=` next.
    NodePtr parseAssignment(const Token& token, const Token& name) {
        parser.nextToken();
        Symbol* existing = parser.symbols.find(name.text);
        bool pieceVariable =
            existing && !existing->isFunction &&
            (existing->valueType == ValueType::Piece || existing->valueType == ValueType::Empty);
        if (existing && !pieceVariable)
            return fail(parser, name,
                        "Non-piece variable cannot be used as target of assignment in piece filter",
                        {SourceSpan{name.begin, name.end}});
        // Read like the right side of `=`.
        NodePtr value = parser.parseExpression(infixPrecedence(TokenKind::Assign));
        if (!value) return nullptr;
        if (value->valueType != ValueType::Set) {
            parser.reportOperand(token, *value,
                                 "Right operand to piece assignment operator must be a set value");
            return nullptr;
        }
        Symbol& symbol = parser.symbols.findOrCreateGlobal(name.text);
        parser.symbols.setType(symbol, ValueType::Piece);
        parser.noteLineWrite(symbol.slot);
        return makeNode<PieceAssignNode>(parser, token, name.text, symbol.slot, std::move(value));
    }
};

// square all V in S F
class SquareHandler : public PrefixHandler {
public:
    SquareHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwSquare) {}

    NodePtr parse(const Token& token) override {
        const bool all = takeKeyword(parser, TokenKind::KwAll);
        Token name = parser.nextToken();
        if (name.kind != TokenKind::Identifier)
            return fail(parser, token, "Expected variable name for 'square' filter");
        if (parser.nextToken().kind != TokenKind::KwIn)
            return fail(parser, token, "Expected 'in' keyword after variable in 'square' filter");

        NodePtr set = parser.parseExpression(squareOperand);
        if (!set) return nullptr;
        if (set->valueType != ValueType::Set) {
            parser.reportOperand(token, *set,
                                 "The filter following 'in' for 'square' filter must be a set filter");
            return nullptr;
        }
        LoopBody loop = parseLoopBody(parser, name.text, ValueType::Set);
        if (!loop.body) return nullptr;
        return makeNode<SquareNode>(parser, token, name.text, loop.slot, std::move(set), std::move(loop.body),
                                    all);
    }
};

// string V in T F | string V in D F
class StringIteratorHandler : public PrefixHandler {
public:
    StringIteratorHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwString) {}

    NodePtr parse(const Token& token) override {
        Token name = parser.nextToken();
        if (name.kind != TokenKind::Identifier)
            return fail(parser, token, "Expected variable name for 'string'");
        if (parser.nextToken().kind != TokenKind::KwIn)
            return fail(parser, token, "Expected 'in' keyword after variable in 'string'");

        NodePtr source = parser.parseExpression(squareOperand);
        if (!source) return nullptr;
        if (source->valueType == ValueType::String) {
            LoopBody loop = parseLoopBody(parser, name.text, ValueType::String);
            if (!loop.body) return nullptr;
            return makeNode<StringIteratorNode>(parser, token, name.text, loop.slot, std::move(source),
                                                std::move(loop.body));
        }
        if (source->valueType != ValueType::Dictionary) {
            parser.reportOperand(token, *source,
                                 "The filter following 'in' for 'string' filter must be a dictionary");
            return nullptr;
        }
        // The loop runs over the slot itself; parentheses and braces around
        // the name are dropped in some passes and kept in others, so they
        // cannot decide.
        const ZMFNode& variable = source->unwrapAll();
        if (variable.kind != NodeKind::Identifier) {
            parser.reportOperand(token, *source,
                                 "Target of dictionary iteration must must be a dictionary variable");
            return nullptr;
        }
        std::uint32_t dictionarySlot = static_cast<const IdentifierNode&>(variable).slot;
        LoopBody loop = parseLoopBody(parser, name.text, ValueType::String);
        if (!loop.body) return nullptr;
        return makeNode<DictionaryIteratorNode>(parser, token, name.text, loop.slot, std::move(source),
                                                dictionarySlot, std::move(loop.body));
    }
};

}  // namespace

void registerIterationHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<PieceHandler>(parser));
    parser.registerPrefix(std::make_unique<SquareHandler>(parser));
    parser.registerPrefix(std::make_unique<StringIteratorHandler>(parser));
}

}  // namespace tarnfold::zmf
