// line: options, an arrow, and constituents joined by arrows of the same
// direction, each a filter or a parenthesised group with a repetition; the
// automaton is compiled as soon as the filter is read.
#include <string>
#include <string_view>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/line_nfa.h"
#include "query/nodes/line_nodes.h"
#include "query/print_target.h"

namespace tarnfold::zmf {

namespace {

constexpr int maximumRepetition = 9999;

bool isArrow(TokenKind kind) { return kind == TokenKind::ForwardArrow || kind == TokenKind::BackwardArrow; }

// Whether the token ends a constituent: the next arrow, or whatever closes
// the text around the line.
bool endsConstituent(TokenKind kind) {
    return isArrow(kind) || kind == TokenKind::RightParen || kind == TokenKind::RightBrace ||
           kind == TokenKind::EndOfFile;
}

// One reading of a line filter; a line inside a constituent has its own.
class LineReader {
public:
    LineReader(Parser& parser, const Token& keyword) : parser(parser), lineKeyword_(keyword.begin) {}

    NodePtr read() {
        Options options;
        options.range = parser.parseRange(true);
        if (!readOptions(options)) return nullptr;
        if (!options.range) options.range = parser.parseRange(true);
        if (parser.errorReported()) return nullptr;
        const Token arrow = parser.peekToken();
        if (!isArrow(arrow.kind)) return fail(arrow, "Missing '<--' or '-->' for 'line' filter");
        options.backward = arrow.kind == TokenKind::BackwardArrow;
        if (options.backward && (options.line->primary || options.line->secondary))
            return fail(arrow, "Cannot specify 'primary' or 'secondary' when searching backwards with '<--'");
        if (options.backward && options.line->nestban)
            return fail(arrow, "Cannot specify 'nestban' when searching backwards with '<--'");
        LineNode& line = *options.line;
        line.backward = options.backward;
        line.range = std::move(options.range);
        if (!readChain(line.constituents, arrow.kind)) return nullptr;
        parser.finish(line);
        line.automaton = buildLineNfa(line);
        if (parser.dumpNfaDiagrams) dumpAutomaton(line);
        return std::move(options.line);
    }

    struct Options {
        std::unique_ptr<LineNode> line;
        NodePtr range;
        bool backward = false;
    };

    bool readOptions(Options& options) {
        bool firstmatch = false, lastposition = false, nestban = false, nolinearize = false,
             nonatomic = false, primary = false, quiet = false, secondary = false, singlecolor = false;
        for (;;) {
            const Token next = parser.peekToken();
            bool* option = nullptr;
            switch (next.kind) {
                case TokenKind::KwFirstmatch: option = &firstmatch; break;
                case TokenKind::KwLastposition: option = &lastposition; break;
                case TokenKind::KwNestban: option = &nestban; break;
                case TokenKind::KwNolinearize: option = &nolinearize; break;
                case TokenKind::KwNonatomic: option = &nonatomic; break;
                case TokenKind::KwPrimary: option = &primary; break;
                case TokenKind::KwQuiet: option = &quiet; break;
                case TokenKind::KwSecondary: option = &secondary; break;
                case TokenKind::KwSinglecolor: option = &singlecolor; break;
                default: break;
            }
            if (!option) break;
            parser.nextToken();
            *option = true;
            if (next.kind == TokenKind::KwNolinearize || next.kind == TokenKind::KwNonatomic)
                remark(next, "Use of '" + next.text + "' keyword in 'line' filter is a ZMFi extension");
        }
        options.line = std::make_unique<LineNode>(lineKeyword_, lastposition);
        LineNode& line = *options.line;
        line.firstmatch = firstmatch;
        line.nestban = nestban;
        line.nolinearize = nolinearize;
        line.nonatomic = nonatomic;
        line.primary = primary;
        line.quiet = quiet;
        line.secondary = secondary;
        line.singlecolor = singlecolor;
        nonatomic_ = nonatomic;
        nolinearize_ = nolinearize;
        return true;
    }

private:
    // A constituent, then more behind arrows like the first. The token in
    // front of each, an arrow or a group's parenthesis, is read here.
    bool readChain(std::vector<NodePtr>& members, TokenKind arrowKind) {
        for (;;) {
            parser.nextToken();
            NodePtr member = readConstituent(arrowKind);
            if (!member) return false;
            members.push_back(std::move(member));
            const Token next = parser.peekToken();
            if (!isArrow(next.kind)) return true;
            if (next.kind != arrowKind) {
                fail(next, "Cannot mix '<--' and '-->' in 'line' filter");
                return false;
            }
        }
    }

    NodePtr readConstituent(TokenKind arrowKind) {
        const Token first = parser.peekToken();
        if (first.kind == TokenKind::LeftParen && readsAsGroup()) return readGroup(first, arrowKind);
        parser.lineContexts.push_back({!nonatomic_, {}});
        parser.inducerSeen = false;
        NodePtr filter = parser.parseExpression(0);
        Parser::LineContext context = std::move(parser.lineContexts.back());
        parser.lineContexts.pop_back();
        if (!filter) return nullptr;
        auto constituent = std::make_unique<LineConstituentNode>(first.begin, std::move(filter));
        constituent->repeat.writtenSlots.assign(context.slots.begin(), context.slots.end());
        constituent->repeat.linearizable = parser.inducerSeen && !nolinearize_;
        if (!readRepetition(constituent->repeat)) return nullptr;
        parser.finish(*constituent);
        return constituent;
    }

    // ( constituent --> ... ) repetition
    NodePtr readGroup(const Token& open, TokenKind arrowKind) {
        auto group = std::make_unique<LineGroupNode>(open.begin);
        group->backward = arrowKind == TokenKind::BackwardArrow;
        if (!readChain(group->children, arrowKind)) return nullptr;
        if (parser.peekToken().kind != TokenKind::RightParen)
            return fail(parser.peekToken(), "Missing closing parenthesis after 'line' group constituent");
        parser.nextToken();
        std::set<std::uint32_t> slots;
        for (const NodePtr& member : group->children) {
            const LineRepeat& repeat = member->kind == NodeKind::LineGroup
                                           ? static_cast<const LineGroupNode&>(*member).repeat
                                           : static_cast<const LineConstituentNode&>(*member).repeat;
            slots.insert(repeat.writtenSlots.begin(), repeat.writtenSlots.end());
            group->repeat.linearizable |= repeat.linearizable;
        }
        group->repeat.writtenSlots.assign(slots.begin(), slots.end());
        if (!readRepetition(group->repeat)) return nullptr;
        parser.finish(*group);
        return group;
    }

    // A parenthesis opens a group, unless the text behind its partner goes
    // on as an expression, as in (x + 1) > 3: then it is a filter's. An
    // arrow inside always makes a group.
    bool readsAsGroup() {
        std::size_t skip = 0;
        int depth = 0;
        for (;; ++skip) {
            const TokenKind kind = parser.peekToken(skip).kind;
            if (kind == TokenKind::EndOfFile) return true;
            if (kind == TokenKind::LeftParen) ++depth;
            if (kind == TokenKind::RightParen && --depth == 0) break;
            if (depth == 1 && isArrow(kind)) return true;
        }
        const TokenKind after = parser.peekToken(skip + 1).kind;
        if (after == TokenKind::Star || after == TokenKind::Plus)
            return endsConstituent(parser.peekToken(skip + 2).kind);
        return !isInfixOperator(after);
    }

    // ? + * {?} {+} {*} {m} {m,} {,n} {m,n}, or nothing.
    bool readRepetition(LineRepeat& repeat) {
        const Token next = parser.peekToken();
        switch (next.kind) {
            case TokenKind::Question: repeat.repetition = LineRepetition::Optional; break;
            case TokenKind::Plus: repeat.repetition = LineRepetition::OneOrMore; break;
            case TokenKind::Star: repeat.repetition = LineRepetition::Any; break;
            case TokenKind::LeftBrace: return readBraces(repeat);
            default: return true;
        }
        parser.nextToken();
        return true;
    }

    bool readBraces(LineRepeat& repeat) {
        const Token open = parser.nextToken();
        const TokenKind inside = parser.peekToken().kind;
        if ((inside == TokenKind::Question || inside == TokenKind::Plus || inside == TokenKind::Star) &&
            parser.peekToken(1).kind == TokenKind::RightBrace) {
            parser.nextToken();
            parser.nextToken();
            repeat.repetition = inside == TokenKind::Question ? LineRepetition::Optional
                                : inside == TokenKind::Plus   ? LineRepetition::OneOrMore
                                                              : LineRepetition::Any;
            return true;
        }
        std::optional<long long> low, high;
        if (!readCount(low)) return false;
        if (parser.peekToken().kind == TokenKind::Comma) {
            parser.nextToken();
            if (!readCount(high)) return false;
        } else {
            high = low;
        }
        if (!low && !high) {
            fail(open, "Repetition for 'line' filter constituent must include at least one numeric bound");
            return false;
        }
        if (parser.expectToken(TokenKind::RightBrace).kind != TokenKind::RightBrace) return false;
        for (const auto& bound : {low, high}) {
            if (bound && *bound < 0) {
                fail(open, "Repetition count for 'line' constituent cannot be a negative value");
                return false;
            }
            if (bound && *bound > maximumRepetition) {
                fail(open,
                     "Repetition count for 'line' filter is out of range, counts must be between 0 and 9999");
                return false;
            }
        }
        if (low && high && *low > *high) {
            fail(open, "Minimum repetition count cannot be greater than the maximum in 'line' constituent");
            return false;
        }
        repeat.repetition = LineRepetition::Counted;
        if (low) repeat.low = int(*low);
        if (high) repeat.high = int(*high);
        return true;
    }

    // An integer literal with an optional minus, if one stands here.
    bool readCount(std::optional<long long>& count) {
        bool negative = false;
        if (parser.peekToken().kind == TokenKind::Minus && parser.peekToken(1).kind == TokenKind::IntegerLiteral) {
            parser.nextToken();
            negative = true;
        }
        if (parser.peekToken().kind != TokenKind::IntegerLiteral) return true;
        const Token number = parser.nextToken();
        // Saturates like any integer literal; far beyond the limit either way.
        long long value = 0;
        for (char digit : number.text) value = value > 100000 ? value : value * 10 + (digit - '0');
        count = negative ? -value : value;
        return true;
    }

    void dumpAutomaton(const LineNode& line) {
        if (!line.location || !parser.nfaDiagramsDumped.insert(*line.location).second) return;
        PrintTarget text;
        line.print(text);
        parser.nfaDiagrams += lineNfaDot(line.automaton, text.text());
        parser.nfaTexts += text.text() + "\n" + lineNfaText(line.automaton);
    }

    std::nullptr_t fail(const Token& at, std::string_view text) {
        parser.report(at.begin, MessageLevel::Error, text);
        return nullptr;
    }

    void remark(const Token& at, const std::string& text) {
        for (const Message& said : parser.messages().messages())
            if (said.level == MessageLevel::Info && said.location == at.begin && messageText(said) == text) return;
        parser.report(at.begin, MessageLevel::Info, text);
    }

    Parser& parser;
    OptionalOffset lineKeyword_;
    bool nonatomic_ = false;
    bool nolinearize_ = false;
};

class LineHandler : public PrefixHandler {
public:
    LineHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwLine) {}

    // line R options R (--> | <--) constituent ((--> | <--) constituent)*
    NodePtr parse(const Token& token) override {
        const bool savedInducer = parser.inducerSeen;
        NodePtr node = LineReader(parser, token).read();
        parser.inducerSeen = savedInducer;
        return node;
    }
};

}  // namespace

void registerLineHandlers(Parser& parser) { parser.registerPrefix(std::make_unique<LineHandler>(parser)); }

}  // namespace tarnfold::zmf
