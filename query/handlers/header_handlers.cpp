// The query header zmf(...): the input and output files and the limits of
// the run. Its settings go to the parser, which hands them on with the
// parsed query.
#include <string>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/handlers/result_text.h"
#include "query/nodes/arithmetic_nodes.h"
#include "query/nodes/header_nodes.h"
#include "query/nodes/literal_nodes.h"
#include "query/nodes/structure_nodes.h"

namespace tarnfold::zmf {

namespace {

// The value of a range endpoint, which parseRange keeps to integer
// literals, possibly negated.
std::int64_t endpointValue(const ZMFNode& node) {
    if (node.kind == NodeKind::Negate)
        return -static_cast<const IntegerNode&>(*static_cast<const NegateNode&>(node).operand).value;
    return static_cast<const IntegerNode&>(node).value;
}

// zmf ( keyword... ), the keywords in any order
class ZmfHeaderHandler : public PrefixHandler {
public:
    ZmfHeaderHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwZmf) {}

    NodePtr parse(const Token& token) override {
        if (parser.peekToken().kind != TokenKind::LeftParen) {
            parser.report(token.begin, MessageLevel::Error, "Missing opening parenthesis in 'zmf' header");
            return nullptr;
        }
        parser.nextToken();
        auto node = std::make_unique<ZmfHeaderNode>(token.begin);
        for (TokenKind next = parser.peekToken().kind;
             next != TokenKind::RightParen && next != TokenKind::EndOfFile; next = parser.peekToken().kind)
            if (!parseSetting(*node)) return nullptr;
        if (parser.expectToken(TokenKind::RightParen).kind != TokenKind::RightParen) return nullptr;
        parser.finish(*node);
        store(*node);
        return node;
    }

private:
    bool parseSetting(ZmfHeaderNode& node) {
        Token keyword = parser.nextToken();
        switch (keyword.kind) {
            case TokenKind::KwInput: {
                std::optional<std::string> name = parseFileName(keyword);
                if (!name) return false;
                if (!node.input) node.input.emplace();
                if (!parser.secureMode) node.input->push_back(std::move(*name));
                return true;
            }
            case TokenKind::KwOutput: {
                std::optional<std::string> name = parseFileName(keyword);
                if (!name) return false;
                if (!parser.secureMode) node.output = std::move(name);
                return true;
            }
            case TokenKind::KwMatchcount: return parseRange(keyword, node.matchcount);
            case TokenKind::KwSort: {
                Token matchcount = parser.nextToken();
                if (matchcount.kind != TokenKind::KwMatchcount) {
                    parser.report(keyword.begin, MessageLevel::Error,
                                  "Expected 'matchcount' keyword to follow 'sort' in zmf header");
                    return false;
                }
                return parseRange(matchcount, node.sortMatchcount);
            }
            case TokenKind::KwGamenumber: return parseRange(keyword, node.gamenumber);
            case TokenKind::KwResult: {
                ResultText read = readResultText(parser, true);
                if (!read.result) {
                    parser.report(keyword.begin, MessageLevel::Error,
                                  "Expected one of the following after 'result' keyword in zmf header: 1-0, "
                                  "0-1, 1/2-1/2, or *");
                    return false;
                }
                node.result = read.result;
                return true;
            }
            case TokenKind::KwMatchstring: {
                if (parser.peekToken().kind != TokenKind::StringLiteral) {
                    parser.report(keyword.begin, MessageLevel::Error,
                                  "Expected a quoted string following 'matchstring' in zmf header");
                    return false;
                }
                Token literal = parser.nextToken();
                node.matchstring = literal.text.substr(1, literal.text.size() - 2);
                return true;
            }
            case TokenKind::KwSilent: node.silent = 1; return true;
            case TokenKind::KwQuiet: node.quiet = 1; return true;
            case TokenKind::KwVariations: node.variations = 1; return true;
            default:
                parser.report(keyword.begin, MessageLevel::Error, "Invalid argument in zmf header");
                return false;
        }
    }

    // A string literal, or the raw text up to a blank or ')' so that a name
    // needs no quotes for its dots and slashes. In secure mode the name is
    // still read, and then ignored.
    std::optional<std::string> parseFileName(const Token& keyword) {
        std::string name;
        if (parser.peekToken().kind == TokenKind::StringLiteral) {
            Token literal = parser.nextToken();
            name = literal.text.substr(1, literal.text.size() - 2);
        } else {
            name = parser.readRawWord().text;
        }
        if (name.empty()) {
            parser.report(keyword.begin, MessageLevel::Error,
                          joinPieces({"Missing filename after '", keyword.text, "' keyword in zmf header"}));
            return std::nullopt;
        }
        if (parser.secureMode)
            parser.report(keyword.begin, MessageLevel::Warning,
                          joinPieces({"'", keyword.text, "' parameter ignored in secure mode"}));
        return name;
    }

    bool parseRange(const Token& keyword, std::optional<HeaderRange>& into) {
        NodePtr range = parser.parseRange(false);
        if (!range) {
            parser.report(
                keyword.begin, MessageLevel::Error,
                joinPieces({"Expected constant range following '", keyword.text, "' keyword in zmf header"}));
            return false;
        }
        const auto& bounds = static_cast<const RangeNode&>(*range);
        std::int64_t first = endpointValue(*bounds.lower);
        std::int64_t last = bounds.upper ? endpointValue(*bounds.upper) : first;
        if (first < 0 || last < 0) {
            parser.report(keyword.begin, MessageLevel::Error,
                          joinPieces({"Range following '", keyword.text,
                                      "' keyword must consist of non-negative values"}),
                          {Parser::spanOf(*range)});
            return false;
        }
        if (last < first) {
            parser.report(keyword.begin, MessageLevel::Error,
                          joinPieces({"Second value in range following '", keyword.text,
                                      "' keyword may not be less than first value"}),
                          {Parser::spanOf(*range)});
            return false;
        }
        into = HeaderRange{static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(last)};
        return true;
    }

    // Into the parser's settings: every input file is added, and a later
    // header overrides what an earlier one set.
    void store(const ZmfHeaderNode& node) {
        QueryHeaderSettings settings = node.settings();
        QueryHeaderSettings& header = parser.header;
        header.input.insert(header.input.end(), settings.input.begin(), settings.input.end());
        if (settings.output) header.output = settings.output;
        if (settings.matchCount) header.matchCount = settings.matchCount;
        if (settings.sortMatchCount) header.sortMatchCount = settings.sortMatchCount;
        if (settings.gameNumber) header.gameNumber = settings.gameNumber;
        if (settings.result) header.result = settings.result;
        if (settings.matchString) header.matchString = settings.matchString;
        header.silent = header.silent || settings.silent;
        header.quiet = header.quiet || settings.quiet;
        header.variations = header.variations || settings.variations;
    }
};

}  // namespace

void registerHeaderHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<ZmfHeaderHandler>(parser));
}

}  // namespace tarnfold::zmf
