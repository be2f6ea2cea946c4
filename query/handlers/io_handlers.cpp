// Files and programs behind pipes: readfile, writefile, commandpipe. A
// query run with --secure may not reach outside, so each is refused there.
#include <string>
#include <vector>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/io_nodes.h"

namespace tarnfold::zmf {

namespace {

// True, after the report, when secure mode forbids the filter.
bool refusedInSecureMode(Parser& parser, const Token& token) {
    if (!parser.secureMode) return false;
    parser.report(token.begin, MessageLevel::Error,
                  joinPieces({"The filter '", token.text, "' may not be used in secure mode"}));
    return true;
}

// readfile T
class ReadfileHandler : public PrefixHandler {
public:
    ReadfileHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwReadfile) {}
    NodePtr parse(const Token& token) override {
        if (refusedInSecureMode(parser, token)) return nullptr;
        NodePtr operand = parser.parseExpression(cardinalityOperand);
        if (!operand) return nullptr;
        if (operand->valueType != ValueType::String) {
            parser.reportOperand(token, *operand,
                                 "The operand to the 'readfile' filter must be a string filter");
            return nullptr;
        }
        return makeNode<ReadfileNode>(parser, token, std::move(operand));
    }
};

// writefile noclobber? ( T T )
class WritefileHandler : public PrefixHandler {
public:
    WritefileHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwWritefile) {}
    NodePtr parse(const Token& token) override {
        if (refusedInSecureMode(parser, token)) return nullptr;
        bool noclobber = parser.peekToken().kind == TokenKind::KwNoclobber;
        if (noclobber) remarkNoclobber(parser.nextToken());
        if (parser.peekToken().kind != TokenKind::LeftParen) {
            parser.report(token.begin, MessageLevel::Error,
                          joinPieces({"Missing opening parenthesis after '", token.text, "'"}));
            return nullptr;
        }
        parser.nextToken();
        NodePtr name = parseString(token, "The filename argument to the '");
        if (!name) return nullptr;
        NodePtr text = parseString(token, "The context argument to the '");
        if (!text) return nullptr;
        if (parser.peekToken().kind != TokenKind::RightParen) {
            parser.report(token.begin, MessageLevel::Error,
                          joinPieces({"Missing closing parenthesis for '", token.text, "'"}));
            return nullptr;
        }
        parser.nextToken();
        return makeNode<WritefileNode>(parser, token, std::move(name), std::move(text), noclobber);
    }

private:
    NodePtr parseString(const Token& token, std::string_view message) {
        NodePtr argument = parser.parseExpression(0);
        if (!argument) return nullptr;
        if (argument->valueType != ValueType::String) {
            parser.reportOperand(token, *argument,
                                 joinPieces({message, token.text, "' filter must be a string filter"}));
            return nullptr;
        }
        return argument;
    }

    // Once for each place, even when the text is read again after an
    // abandoned attempt.
    void remarkNoclobber(const Token& word) {
        constexpr std::string_view text = "'noclobber' is a ZMFi extension";
        for (const Message& said : parser.messages().messages())
            if (said.level == MessageLevel::Info && said.location == word.begin && messageText(said) == text)
                return;
        parser.report(word.begin, MessageLevel::Info, text);
    }
};

// commandpipe ( T T ... )
class CommandpipeHandler : public PrefixHandler {
public:
    CommandpipeHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwCommandpipe) {}
    NodePtr parse(const Token& token) override {
        if (refusedInSecureMode(parser, token)) return nullptr;
        reportExtension(parser, token, "commandpipe");
        if (parser.peekToken().kind != TokenKind::LeftParen) {
            parser.report(token.begin, MessageLevel::Error, "Missing opening '(' after 'commandpipe' filter");
            return nullptr;
        }
        parser.nextToken();
        std::vector<NodePtr> arguments;
        while (parser.peekToken().kind != TokenKind::RightParen) {
            NodePtr argument = parser.parseExpression(0);
            if (!argument) return nullptr;
            if (argument->valueType != ValueType::String) {
                parser.reportOperand(token, *argument,
                                     "Arguments to the 'commandpipe' filter must be strings");
                return nullptr;
            }
            arguments.push_back(std::move(argument));
        }
        if (arguments.empty()) {
            parser.report(token.begin, MessageLevel::Error,
                          "Missing command argument for 'commandpipe' filter");
            return nullptr;
        }
        if (arguments.size() < 2) {
            parser.report(token.begin, MessageLevel::Error,
                          "Missing request argument for 'commandpipe' filter");
            return nullptr;
        }
        parser.nextToken();
        return makeNode<CommandpipeNode>(parser, token, std::move(arguments));
    }
};

}  // namespace

void registerIoHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<ReadfileHandler>(parser));
    parser.registerPrefix(std::make_unique<WritefileHandler>(parser));
    parser.registerPrefix(std::make_unique<CommandpipeHandler>(parser));
}

}  // namespace tarnfold::zmf
