// Strings: literals, backslash characters, capture groups and the pattern match ~~.
#include <cstdlib>
#include <memory>
#include <string>

#include <unicode/regex.h>
#include <unicode/utf8.h>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/string_nodes.h"

namespace tarnfold::zmf {

namespace {

// "..."
class StringLiteralHandler : public PrefixHandler {
public:
    StringLiteralHandler(Parser& parser) : PrefixHandler(parser, TokenKind::StringLiteral) {}
    NodePtr parse(const Token& token) override {
        // The token keeps its quotes; there are no escapes to undo.
        std::string_view text(token.text);
        text = text.substr(1, text.size() - 2);
        return makeNode<StringNode>(parser, token, makeZmfString(text));
    }
};

// \n \t \r \" \\ (one token each)
class BackslashLiteralHandler : public PrefixHandler {
public:
    BackslashLiteralHandler(Parser& parser) : PrefixHandler(parser, TokenKind::BackslashLiteral) {}
    NodePtr parse(const Token& token) override {
        char character = token.text[1];
        if (character == 'n')
            character = '\n';
        else if (character == 't')
            character = '\t';
        else if (character == 'r')
            character = '\r';
        return makeNode<BackslashLiteralNode>(parser, token, character);
    }
};

// \N (Node = CapturedGroupStringNode) and \-N (Node = CapturedGroupIndexNode)
template <class Node>
class CapturedGroupHandler : public PrefixHandler {
public:
    // `prefix` is the length of "\" or "\-" in front of the digits.
    CapturedGroupHandler(Parser& parser, TokenKind kind, std::size_t prefix)
        : PrefixHandler(parser, kind), prefix_(prefix) {}
    NodePtr parse(const Token& token) override {
        // At most three digits; leading zeros count, so the test is on the length.
        if (token.text.size() > prefix_ + 3) {
            parser.report(token.begin, MessageLevel::Error, "Capture group number must be between 0 and 999");
            return nullptr;
        }
        long group = std::strtol(token.text.c_str() + prefix_, nullptr, 10);
        return makeNode<Node>(parser, token, static_cast<std::uint32_t>(group));
    }

private:
    std::size_t prefix_;
};

// Where in the literal compiling the pattern failed. ICU names the line (from
// 1) and the column in code points (from 1), breaking lines as its compiler
// does. The literal's own bytes are walked, decoded as the string was, so
// that bytes which are no UTF-8 count as the one character they became.
// Without a usable answer the caret goes to the opening quote.
OptionalOffset regexErrorLocation(const QuerySource& source, const ZMFNode& literal,
                                  const UParseError& where) {
    const std::string& text = source.text();
    if (!literal.location || !literal.lastOffset || *literal.lastOffset >= text.size() ||
        *literal.location >= *literal.lastOffset || where.line < 1 || where.offset < 1)
        return literal.location;
    const char* bytes = text.data() + *literal.location + 1;
    const std::int32_t length = static_cast<std::int32_t>(*literal.lastOffset - *literal.location - 1);
    std::int32_t line = 1, column = 0;
    UChar32 previous = 0;
    for (std::int32_t i = 0; i < length;) {
        const std::int32_t at = i;
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c == '\r' || c == 0x85 || c == 0x2028 || (c == '\n' && previous != '\r')) {
            ++line;
            column = 0;
        } else if (c != '\n') {
            ++column;
        }
        if (line == where.line && column == where.offset) return *literal.location + 1 + at;
        previous = c;
    }
    // Past the last character: the closing quote.
    return literal.lastOffset;
}

// An empty match would make the filter true wherever it is tried. Only a
// pattern that matches the empty text is caught: one whose empty matches
// depend on the text around them (a lookahead, \b) is not.
bool matchesEmptyText(const icu::RegexPattern& pattern) {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString empty;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(empty, status));
    if (U_FAILURE(status)) return false;
    bool found = matcher->find(0, status);
    return U_SUCCESS(status) && found;
}

// T ~~ "pattern"
class PatternMatchHandler : public InfixHandler {
public:
    PatternMatchHandler(Parser& parser) : InfixHandler(parser, TokenKind::PatternMatch) {}

    NodePtr parse(NodePtr& left, const Token& token) override {
        if (left->valueType != ValueType::String) {
            parser.deferTypeError(
                joinPieces({"Left operand to binary operator '", token.text, "' must be a string filter"}),
                *left);
            return std::move(left);
        }
        NodePtr right = parser.parseExpression(precedence);
        if (!right) return nullptr;
        // Parentheses around the literal change nothing.
        const ZMFNode& literal = right->unwrapParens();
        if (literal.kind != NodeKind::String) {
            parser.reportOperand(token, *right, "Right operand to regex filter must be a string literal");
            return nullptr;
        }
        const ZmfString& patternText = static_cast<const StringNode&>(literal).value;
        UErrorCode status = U_ZERO_ERROR;
        UParseError where{};
        std::shared_ptr<const icu::RegexPattern> pattern(
            icu::RegexPattern::compile(patternText->text(), 0, where, status));
        if (U_FAILURE(status) || !pattern) {
            std::string text("Invalid regular expression: ");
            text.append(u_errorName(status));
            parser.report(regexErrorLocation(parser.source(), literal, where), MessageLevel::Error, text,
                          {Parser::spanOf(literal)});
            return nullptr;
        }
        if (matchesEmptyText(*pattern))
            parser.report(token.begin, MessageLevel::Warning, "Regular expression can yield empty matches",
                          {Parser::spanOf(literal)});
        return makeNode<PatternMatchNode>(parser, token, std::move(left), patternText->toUtf8(),
                                          std::move(pattern));
    }
};

}  // namespace

void registerStringHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<StringLiteralHandler>(parser));
    parser.registerPrefix(std::make_unique<BackslashLiteralHandler>(parser));
    parser.registerPrefix(std::make_unique<CapturedGroupHandler<CapturedGroupStringNode>>(
        parser, TokenKind::CapturedGroupString, 1));
    parser.registerPrefix(std::make_unique<CapturedGroupHandler<CapturedGroupIndexNode>>(
        parser, TokenKind::CapturedGroupIndex, 2));
    parser.registerInfix(std::make_unique<PatternMatchHandler>(parser));
}

}  // namespace tarnfold::zmf
