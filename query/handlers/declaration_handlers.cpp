// Declarations: variables kept from game to game, dictionaries, and the
// filters that test or remove a variable's binding while the query runs.
// What a declaration says about persistence lands on the variable's slot,
// since the run, the fold across workers and the final print go by slots.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/declaration_nodes.h"

namespace tarnfold::zmf {

namespace {

SourceSpan spanOfToken(const Token& token) { return SourceSpan{token.begin, token.end}; }

NodePtr fail(Parser& parser, const Token& at, std::string_view text, std::vector<SourceSpan> spans = {}) {
    parser.report(at.begin, MessageLevel::Error, text, std::move(spans));
    return nullptr;
}

// A later declaration adds to what an earlier one of the same variable said:
// a strategy it names replaces the one in force, and quiet stays once given.
void declarePersistent(VariableSlot& slot, MergeStrategy strategy, bool quiet) {
    slot.persistent = true;
    if (strategy != MergeStrategy::None) slot.mergeStrategy = strategy;
    if (quiet) slot.quiet = true;
}

// persistent (strategy) quiet V = F
class PersistentHandler : public PrefixHandler {
public:
    PersistentHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwPersistent) {}

    NodePtr parse(const Token& token) override {
        MergeStrategy strategy = MergeStrategy::None;
        if (parser.peekToken().kind == TokenKind::LeftParen) {
            parser.nextToken();
            Token word = parser.nextToken();
            switch (word.kind) {
                case TokenKind::KwMin: strategy = MergeStrategy::Min; break;
                case TokenKind::KwMax: strategy = MergeStrategy::Max; break;
                case TokenKind::KwSum: strategy = MergeStrategy::Sum; break;
                default:
                    return fail(
                        parser, word,
                        "Valid merge strategies for persistent variables are 'min', 'max', and 'sum'");
            }
            parser.report(word.begin, MessageLevel::Info,
                          "Persistent variable merge strategy is a ZMFi extension");
            if (parser.nextToken().kind != TokenKind::RightParen)
                return fail(parser, token,
                            "Missing closing parenthesis after persistent variable merge strategy");
        }
        const bool quiet = takeKeyword(parser, TokenKind::KwQuiet);
        // The name stays in the stream: it begins the assignment.
        Token name = parser.peekToken();
        if (name.kind != TokenKind::Identifier)
            return fail(parser, token, "Expected an identifier to follow 'persistent'");
        Symbol* existing = parser.symbols.find(name.text);
        if (existing && (existing->isFunction || !parser.symbols.slot(existing->slot).persistent))
            return fail(
                parser, name,
                joinPieces({"'persistent' must be applied to first reference of variable '", name.text, "'"}),
                {spanOfToken(name)});
        std::uint32_t slot = existing ? existing->slot : parser.symbols.findOrCreateGlobal(name.text).slot;
        declarePersistent(parser.symbols.slot(slot), strategy, quiet);

        NodePtr assignment = parser.parseExpression(0);
        if (!assignment) return nullptr;
        if (!assignment->isAssignment()) {
            parser.reportOperand(token, *assignment,
                                 "The persistent keyword may only appear before an assignment filter");
            return nullptr;
        }
        const VariableSlot& variable = parser.symbols.slot(slot);
        using enum ValueType;
        if (!(variable.valueType == Numeric || variable.valueType == String || variable.valueType == Set)) {
            parser.reportOperand(token, *assignment,
                                 "Persistent variables must have numeric, string, or set type");
            return nullptr;
        }
        bool minOrMax =
            variable.mergeStrategy == MergeStrategy::Min || variable.mergeStrategy == MergeStrategy::Max;
        if (variable.valueType == Set && minOrMax) {
            parser.reportOperand(token, *assignment,
                                 "'min' and 'max' may not be used as merge strategies for set variables");
            return nullptr;
        }
        if (variable.valueType == String && variable.mergeStrategy == MergeStrategy::Sum) {
            parser.reportOperand(token, *assignment,
                                 "'sum' may not be used as the merge strategy for string variables");
            return nullptr;
        }
        return makeNode<PersistentNode>(parser, token, name.text, slot, strategy, quiet,
                                        std::move(assignment));
    }
};

// dictionary (strategy) quiet V
class DictionaryHandler : public PrefixHandler {
public:
    DictionaryHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwDictionary) {}

    NodePtr parse(const Token& token) override {
        MergeStrategy strategy = MergeStrategy::None;
        if (parser.peekToken().kind == TokenKind::LeftParen) {
            parser.nextToken();
            std::optional<MergeStrategy> read = readStrategy();
            if (!read) return nullptr;
            strategy = *read;
            if (parser.expectToken(TokenKind::RightParen).kind != TokenKind::RightParen) return nullptr;
        }
        bool quiet = false;
        if (parser.peekToken().kind == TokenKind::KwQuiet) {
            Token word = parser.nextToken();
            parser.report(word.begin, MessageLevel::Info, "'quiet' dictionaries are a ZMFi extension");
            quiet = true;
        }
        Token name = parser.nextToken();
        if (name.kind != TokenKind::Identifier)
            return fail(parser, token, "Expected an identifier to follow 'dictionary'");

        Symbol* existing = parser.symbols.find(name.text);
        // A variable not yet typed may still become a dictionary; declaring
        // an existing dictionary again is allowed.
        if (existing && existing->isFunction)
            return fail(parser, name,
                        joinPieces({"'", name.text,
                                    "' used in dictionary declaration is already defined as a function"}),
                        {spanOfToken(name)});
        if (existing && existing->valueType != ValueType::Empty &&
            existing->valueType != ValueType::Dictionary) {
            std::string text =
                joinPieces({"'", name.text, "' used in dictionary declaration is already defined as a "});
            text.append(printableType(existing->valueType)).append(" variable");
            return fail(parser, name, text, {spanOfToken(name)});
        }
        Symbol& symbol = existing ? *existing : parser.symbols.findOrCreateGlobal(name.text);
        parser.symbols.setType(symbol, ValueType::Dictionary);
        // Dictionaries always outlive the game.
        declarePersistent(parser.symbols.slot(symbol.slot), strategy, quiet);
        return makeNode<DictionaryNode>(parser, token, name.text, symbol.slot, strategy, quiet);
    }

private:
    // min, max, int min, int max or int sum; the parenthesis is read.
    std::optional<MergeStrategy> readStrategy() {
        Token word = parser.nextToken();
        bool integer = word.kind == TokenKind::KwInt;
        if (integer) word = parser.nextToken();
        switch (word.kind) {
            case TokenKind::KwMin: return integer ? MergeStrategy::IntMin : MergeStrategy::Min;
            case TokenKind::KwMax: return integer ? MergeStrategy::IntMax : MergeStrategy::Max;
            case TokenKind::KwSum:
                if (integer) return MergeStrategy::IntSum;
                break;
            default: break;
        }
        fail(parser, word,
             "Valid merge strategies for dictionaries variables are 'min', 'max', 'int min', 'int max', and "
             "'int sum'");
        return std::nullopt;
    }
};

// unbind V | unbind V[key]
class UnbindHandler : public PrefixHandler {
public:
    UnbindHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwUnbind) {}

    NodePtr parse(const Token& token) override {
        Token name = parser.nextToken();
        if (name.kind != TokenKind::Identifier)
            return fail(parser, token, "Expected variable name for 'unbind'");
        Symbol* symbol = parser.symbols.find(name.text);
        if (!symbol || symbol->isFunction)
            return fail(parser, name, joinPieces({"No accessible variable named '", name.text, "'"}),
                        {spanOfToken(name)});
        std::uint32_t slot = symbol->slot;

        // Only a dictionary has entries to remove one by one.
        NodePtr key;
        if (symbol->valueType == ValueType::Dictionary && parser.peekToken().kind == TokenKind::LeftBracket) {
            parser.nextToken();
            key = parser.parseExpression(0);
            if (!key) return nullptr;
            if (key->valueType != ValueType::String) {
                parser.reportOperand(token, *key, "Expected string key for dictionary unbind");
                return nullptr;
            }
            if (parser.expectToken(TokenKind::RightBracket).kind != TokenKind::RightBracket) return nullptr;
        }
        if (symbol->valueType == ValueType::Dictionary) {
            if (parser.inTrackedLineConstituent())
                parser.report(token.begin, MessageLevel::Warning,
                              "Modification of dictionary variable will not be evaluated atomically in 'line' "
                              "filter");
        } else {
            parser.noteLineWrite(slot);
        }
        return makeNode<UnbindNode>(parser, token, name.text, slot, std::move(key));
    }
};

// The binding a name refers to here, if the name is a variable at all.
std::optional<std::uint32_t> slotOfVariable(Parser& parser, const std::string& name) {
    Symbol* symbol = parser.symbols.find(name);
    if (!symbol || symbol->isFunction) return std::nullopt;
    return symbol->slot;
}

// isbound V, isunbound V
template <class Node>
class BindingTestHandler : public PrefixHandler {
public:
    BindingTestHandler(Parser& parser, TokenKind kind, std::string_view keyword)
        : PrefixHandler(parser, kind), keyword_(keyword) {}

    NodePtr parse(const Token& token) override {
        Token name = parser.nextToken();
        if (name.kind != TokenKind::Identifier)
            return fail(parser, token, joinPieces({"Expected variable name for '", keyword_, "'"}));
        return makeNode<Node>(parser, token, name.text, slotOfVariable(parser, name.text));
    }

private:
    std::string_view keyword_;
};

// isbound V
class IsboundHandler : public BindingTestHandler<IsboundNode> {
public:
    IsboundHandler(Parser& parser) : BindingTestHandler(parser, TokenKind::KwIsbound, "isbound") {}
};

// isunbound V
class IsunboundHandler : public BindingTestHandler<IsunboundNode> {
public:
    IsunboundHandler(Parser& parser) : BindingTestHandler(parser, TokenKind::KwIsunbound, "isunbound") {}
};

}  // namespace

void registerDeclarationHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<PersistentHandler>(parser));
    parser.registerPrefix(std::make_unique<DictionaryHandler>(parser));
    parser.registerPrefix(std::make_unique<UnbindHandler>(parser));
    parser.registerPrefix(std::make_unique<IsboundHandler>(parser));
    parser.registerPrefix(std::make_unique<IsunboundHandler>(parser));
}

}  // namespace tarnfold::zmf
