// Functions: definitions keep their tokens; calls expand them inline.
#include <algorithm>
#include <cctype>

#include "query/handlers/function_call.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/function_nodes.h"
#include "query/nodes/structure_nodes.h"
#include "query/nodes/variable_nodes.h"

namespace tarnfold::zmf {

namespace {

bool isParameterName(const Token& token);

// function V ( V* ) { tokens }
class FunctionHandler : public PrefixHandler {
public:
    FunctionHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwFunction) {}

    NodePtr parse(const Token& token) override {
        Token name = parser.nextToken();
        if (name.kind != TokenKind::Identifier)
            return fail(token, "Missing function name for 'function' filter");
        // A transform parses its body once per copy, so the same definition
        // may come again in the same scope.
        Symbol* existing = parser.symbols.find(name.text);
        if (existing && !(existing->isFunction && existing->scopeDepth == parser.symbols.depth()))
            return fail(name, "Cannot reuse existing variable name '" + name.text + "' to define a function");
        if (parser.nextToken().kind != TokenKind::LeftParen)
            return fail(name, "Missing '(' after function name");

        std::vector<std::string> parameters;
        Token next = parser.nextToken();
        for (; isParameterName(next); next = parser.nextToken()) {
            if (next.kind == TokenKind::PieceDesignator)
                parser.report(next.begin, MessageLevel::Warning,
                              "Parameter name '" + next.text +
                                  "' is read as a piece designator wherever it stands in the body");
            if (std::find(parameters.begin(), parameters.end(), next.text) != parameters.end())
                return fail(next, "Duplicated parameter name '" + next.text + "'");
            parameters.push_back(next.text);
        }
        if (next.kind != TokenKind::RightParen)
            return fail(next, "Missing ')' after function parameter list");
        if (parser.nextToken().kind != TokenKind::LeftBrace)
            return fail(parser.lastToken(), "Missing '{' after function parameter list");

        std::vector<Token> body;
        for (int depth = 1;;) {
            Token part = parser.nextToken();
            if (part.kind == TokenKind::EndOfFile) return fail(token, "Missing '}' for function body");
            if (part.kind == TokenKind::LeftBrace) ++depth;
            if (part.kind == TokenKind::RightBrace && --depth == 0) break;
            body.push_back(std::move(part));
        }
        Symbol& function = parser.symbols.defineFunction(name.text);
        function.parameters = parameters;
        function.body.assign(body.rbegin(), body.rend());
        return makeNode<FunctionNode>(parser, token, name.text, std::move(parameters), std::move(body));
    }

private:
    NodePtr fail(const Token& at, const std::string& text) {
        parser.report(at.begin, MessageLevel::Error, text);
        return nullptr;
    }
};

// Names such as `a` or `R` are designators by the token rules, yet they are
// plainly meant as names in a parameter list.
bool isParameterName(const Token& token) {
    if (token.kind == TokenKind::Identifier) return true;
    if (token.kind != TokenKind::PieceDesignator) return false;
    for (char c : token.text)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '$') return false;
    return true;
}

bool isArgumentType(ValueType type) {
    using enum ValueType;
    return type == Numeric || type == Set || type == Position || type == Piece || type == String ||
           type == Dictionary;
}

// Parses the body from the stored tokens, as a sequence up to their end.
NodePtr parseBody(Parser& parser, const Token& name) {
    std::vector<NodePtr> filters;
    while (parser.peekToken().kind != TokenKind::EndOfFile) {
        NodePtr filter = parser.parseExpression(0);
        if (!filter) return nullptr;
        filters.push_back(std::move(filter));
    }
    if (filters.empty()) {
        parser.report(name.begin, MessageLevel::Error, "Unexpected end of file");
        return nullptr;
    }
    if (filters.size() == 1) return std::move(filters.front());
    auto compound = std::make_unique<CompoundNode>(filters.front()->location, std::move(filters));
    compound->implicit = 1;
    return compound;
}

// Scope and replay record live exactly as long as the body is parsed.
struct Instantiation {
    Parser& parser;
    Instantiation(Parser& parser, ReplayRecord record) : parser(parser) {
        parser.pushReplay(std::move(record));
    }
    ~Instantiation() {
        parser.popReplay();
        parser.symbols.popScope();
    }
};

}  // namespace

NodePtr parseFunctionCall(Parser& parser, const Token& name, const Symbol& function) {
    if (parser.nextToken().kind != TokenKind::LeftParen) {
        parser.report(name.begin, MessageLevel::Error, "Missing '(' after function name");
        return nullptr;
    }
    for (const ReplayRecord& record : parser.instantiations())
        if (record.functionName == name.text) {
            parser.report(name.begin, MessageLevel::Error,
                          "Recursive call to inline function '" + name.text + "'");
            return nullptr;
        }

    std::vector<NodePtr> arguments;
    for (Token next = parser.peekToken(); next.kind != TokenKind::RightParen; next = parser.peekToken()) {
        if (next.kind == TokenKind::EndOfFile) {
            parser.report(name.begin, MessageLevel::Error, "Missing ')' at end of function call");
            return nullptr;
        }
        NodePtr argument = parser.parseExpression(0);
        if (!argument) return nullptr;
        if (!isArgumentType(argument->valueType)) {
            parser.reportOperand(
                name, *argument,
                "Function call argument must have set, numeric, piece, position, or dictionary type");
            return nullptr;
        }
        if (argument->valueType == ValueType::Dictionary &&
            argument->unwrapParens().kind != NodeKind::Identifier) {
            parser.reportOperand(name, *argument,
                                 "Function call argument of dictionary type must be an identifier");
            return nullptr;
        }
        arguments.push_back(std::move(argument));
    }
    OptionalOffset callEnd = parser.nextToken().end;
    if (arguments.size() != function.parameters.size()) {
        parser.report(name.begin, MessageLevel::Error,
                      std::string("Too ") + (arguments.size() < function.parameters.size() ? "few" : "many") +
                          " arguments for call to function '" + name.text + "' expected " +
                          std::to_string(function.parameters.size()) + " arguments, received " +
                          std::to_string(arguments.size()));
        return nullptr;
    }

    // The symbol may move while the body declares names: keep what is needed.
    std::vector<std::string> parameters = function.parameters;
    ReplayRecord record{function.body, name.text, name.begin};
    parser.symbols.pushScope(true);
    std::vector<FunctionCallNode::Binding> bindings;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const ZMFNode& argument = *arguments[i];
        if (argument.unwrapParens().kind == NodeKind::Identifier) {
            const auto& variable = static_cast<const IdentifierNode&>(argument.unwrapParens());
            Symbol alias;
            alias.slot = variable.slot;
            alias.valueType = variable.valueType;
            parser.symbols.declareAlias(parameters[i], alias);
            continue;
        }
        Symbol& local = parser.symbols.declareLocal(parameters[i], argument.valueType);
        bindings.push_back({local.slot, i});
    }
    NodePtr body;
    {
        Instantiation instantiation(parser, std::move(record));
        body = parseBody(parser, name);
    }
    if (!body) return nullptr;
    auto call = std::make_unique<FunctionCallNode>(name.begin, name.text, std::move(arguments),
                                                   std::move(bindings), std::move(body));
    // The call's text ends at its parenthesis, not in the function's body.
    call->lastOffset = callEnd;
    return call;
}

void registerFunctionHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<FunctionHandler>(parser));
}

}  // namespace tarnfold::zmf
