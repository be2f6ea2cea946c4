// Tags and comments of the game: the reading filters date, event,
// eventdate, site, eco, player, elo, year, result, tag, originalcomment,
// and the changing ones settag, removetag, removecomment.
#include <string>
#include <vector>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/handlers/result_text.h"
#include "query/nodes/string_nodes.h"
#include "query/nodes/tag_nodes.h"

namespace tarnfold::zmf {

ResultText readResultText(Parser& parser, bool takeLiteral) {
    ResultText read;
    Token first = parser.peekToken();
    if (first.kind == TokenKind::StringLiteral) {
        if (!takeLiteral) return read;
        parser.nextToken();
        read.present = true;
        read.span = {first.begin, first.end};
        std::string_view text(first.text);
        text = text.substr(1, text.size() - 2);
        for (GameResult result :
             {GameResult::WhiteWins, GameResult::BlackWins, GameResult::Draw, GameResult::Unknown})
            if (text == gameResultText(result)) read.result = result;
        return read;
    }
    if (first.kind == TokenKind::Star) {
        parser.nextToken();
        read.present = true;
        read.span = {first.begin, first.end};
        read.result = GameResult::Unknown;
        return read;
    }
    if (first.kind != TokenKind::IntegerLiteral) return read;
    read.present = true;
    // The unquoted forms, token by token; the first one that fails to
    // follow ends the attempt.
    struct Spelling {
        GameResult result;
        std::vector<std::string_view> tokens;
    };
    static const Spelling spellings[] = {
        {GameResult::WhiteWins, {"1", "-", "0"}},
        {GameResult::BlackWins, {"0", "-", "1"}},
        {GameResult::Draw, {"1", "/", "2", "-", "1", "/", "2"}},
    };
    std::size_t consumed = 0;
    std::vector<const Spelling*> alive;
    for (const Spelling& spelling : spellings) alive.push_back(&spelling);
    Token last = first;
    while (!alive.empty()) {
        Token next = parser.peekToken();
        std::vector<const Spelling*> still;
        for (const Spelling* spelling : alive)
            if (consumed < spelling->tokens.size() && spelling->tokens[consumed] == next.text)
                still.push_back(spelling);
        if (still.empty()) break;
        last = parser.nextToken();
        ++consumed;
        alive = std::move(still);
        for (const Spelling* spelling : alive)
            if (spelling->tokens.size() == consumed) {
                read.result = spelling->result;
                read.span = {first.begin, last.end};
                return read;
            }
    }
    read.span = {first.begin, last.end};
    return read;
}

namespace {

// The string literal that turns a reading filter into a test. Inside the
// arguments of comment and message a literal is an argument of its own.
NodePtr optionalLiteral(Parser& parser) {
    if (parser.noStringArguments || parser.peekToken().kind != TokenKind::StringLiteral) return nullptr;
    Token token = parser.nextToken();
    std::string_view text(token.text);
    text = text.substr(1, text.size() - 2);
    return makeNode<StringNode>(parser, token, makeZmfString(text));
}

// white | black, or neither for both players.
PlayerColor optionalColor(Parser& parser) {
    TokenKind next = parser.peekToken().kind;
    if (next != TokenKind::KwWhite && next != TokenKind::KwBlack) return PlayerColor::Both;
    parser.nextToken();
    return next == TokenKind::KwWhite ? PlayerColor::White : PlayerColor::Black;
}

// keyword "text"? for date, event, eventdate, site, eco, originalcomment
template <class Node>
class ReadingHandler : public PrefixHandler {
public:
    using PrefixHandler::PrefixHandler;
    NodePtr parse(const Token& token) override {
        NodePtr literal = optionalLiteral(parser);
        return makeNode<Node>(parser, token, std::move(literal));
    }
};

// player white|black? "text"?
class PlayerHandler : public PrefixHandler {
public:
    PlayerHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwPlayer) {}
    NodePtr parse(const Token& token) override {
        PlayerColor color = optionalColor(parser);
        NodePtr literal = optionalLiteral(parser);
        return makeNode<PlayerNode>(parser, token, color, std::move(literal));
    }
};

// elo white|black?
class EloHandler : public PrefixHandler {
public:
    EloHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwElo) {}
    NodePtr parse(const Token& token) override {
        PlayerColor color = optionalColor(parser);
        return makeNode<EloNode>(parser, token, color);
    }
};

// result (1-0 | 0-1 | 1/2-1/2 | *)?
class ResultHandler : public PrefixHandler {
public:
    ResultHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwResult) {}
    NodePtr parse(const Token& token) override {
        ResultText read = readResultText(parser, !parser.noStringArguments);
        if (read.present && !read.result) {
            parser.report(token.begin, MessageLevel::Error,
                          "Argument to 'result' filter must be one of: 1-0, 0-1, 1/2-1/2, or *", {read.span});
            return nullptr;
        }
        return makeNode<ResultNode>(parser, token, read.result);
    }
};

// tag T | removetag T
template <class Node>
class TagNameHandler : public PrefixHandler {
public:
    TagNameHandler(Parser& parser, TokenKind kind, bool extension)
        : PrefixHandler(parser, kind), extension_(extension) {}
    NodePtr parse(const Token& token) override {
        if (extension_) reportExtension(parser, token, token.text);
        NodePtr operand = parser.parseExpression(backquoteOperand);
        if (!operand) return nullptr;
        if (operand->valueType != ValueType::String) {
            parser.reportOperand(token, *operand, operandMessage(token.text, "string"));
            return nullptr;
        }
        return makeNode<Node>(parser, token, std::move(operand));
    }

private:
    bool extension_;
};

// settag ( T T )
class SettagHandler : public PrefixHandler {
public:
    SettagHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwSettag) {}
    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen) {
            parser.report(token.begin, MessageLevel::Error, "Missing open parenthesis after 'settag' filter");
            return nullptr;
        }
        parser.nextToken();
        NodePtr name = parseString(token);
        if (!name) return nullptr;
        NodePtr value = parseString(token);
        if (!value) return nullptr;
        if (parser.peekToken().kind != TokenKind::RightParen) {
            parser.report(token.begin, MessageLevel::Error,
                          "Missing closing parenthesis after 'settag' filter");
            return nullptr;
        }
        parser.nextToken();
        return makeNode<SettagNode>(parser, token, std::move(name), std::move(value));
    }

private:
    NodePtr parseString(const Token& token) {
        NodePtr argument = parser.parseExpression(0);
        if (!argument) return nullptr;
        if (argument->valueType != ValueType::String) {
            parser.reportOperand(token, *argument,
                                 "The arguments to the 'settag' filter must be a string filter");
            return nullptr;
        }
        return argument;
    }
};

}  // namespace

void registerTagHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<ReadingHandler<DateNode>>(parser, TokenKind::KwDate));
    parser.registerPrefix(std::make_unique<ReadingHandler<EventNode>>(parser, TokenKind::KwEvent));
    parser.registerPrefix(std::make_unique<ReadingHandler<EventdateNode>>(parser, TokenKind::KwEventdate));
    parser.registerPrefix(std::make_unique<ReadingHandler<SiteNode>>(parser, TokenKind::KwSite));
    parser.registerPrefix(std::make_unique<ReadingHandler<EcoNode>>(parser, TokenKind::KwEco));
    parser.registerPrefix(
        std::make_unique<ReadingHandler<OriginalcommentNode>>(parser, TokenKind::KwOriginalcomment));
    parser.registerPrefix(std::make_unique<PlayerHandler>(parser));
    parser.registerPrefix(std::make_unique<EloHandler>(parser));
    parser.registerPrefix(std::make_unique<BareFilterHandler<YearNode>>(parser, TokenKind::KwYear));
    parser.registerPrefix(std::make_unique<ResultHandler>(parser));
    parser.registerPrefix(std::make_unique<TagNameHandler<TagNode>>(parser, TokenKind::KwTag, false));
    parser.registerPrefix(
        std::make_unique<TagNameHandler<RemovetagNode>>(parser, TokenKind::KwRemovetag, true));
    parser.registerPrefix(std::make_unique<SettagHandler>(parser));
    parser.registerPrefix(
        std::make_unique<BareFilterHandler<RemovecommentNode>>(parser, TokenKind::KwRemovecomment));
}

}  // namespace tarnfold::zmf
