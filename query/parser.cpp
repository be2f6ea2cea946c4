#include "query/parser.h"

#include "query/handlers/registry.h"
#include "query/nodes/arithmetic_nodes.h"

namespace tarnfold::zmf {

namespace {
std::size_t slot(TokenKind kind) { return static_cast<std::size_t>(kind); }

// A negative literal is a negation of a literal.
const ZMFNode& peelNegation(const ZMFNode& node) {
    if (node.kind == NodeKind::Negate) return *static_cast<const NegateNode&>(node).operand;
    return node;
}
}  // namespace

Parser::Parser() { registerAllHandlers(*this); }

Parser::~Parser() = default;

void Parser::registerPrefix(std::unique_ptr<PrefixHandler> handler) {
    TokenKind kind = handler->tokenKind();
    prefix_[slot(kind)] = std::move(handler);
}

void Parser::registerInfix(std::unique_ptr<InfixHandler> handler) {
    TokenKind kind = handler->tokenKind();
    infix_[slot(kind)] = std::move(handler);
}

void Parser::beginParse(const QuerySource& source) {
    reader_.reset();
    sink_.reset();
    clearPending();
    silent = declined = rangeOnly = noStringArguments = false;
    lineContexts.clear();
    inducerSeen = false;
    nfaDiagrams.clear();
    nfaTexts.clear();
    nfaDiagramsDumped.clear();
    header = QueryHeaderSettings{};
    depth_ = 0;
    expressions_ = 0;
    symbols.reset();
    sortSlots.clear();
    bestValueSlotCount = 0;
    tries_.clear();
    transformStack.clear();
    transformMarks.clear();
    voidCopyFlag = false;
    rotate45Location.reset();
    source_ = source;
    reader_.setText(source_.text());
}

bool doneWhileParsing(const ZMFNode& node) {
    NodeKind kind = node.unwrapAll().kind;
    return kind == NodeKind::Function || kind == NodeKind::ZmfHeader;
}

ParsedQuery Parser::parseQuery(const QuerySource& source) {
    beginParse(source);

    auto container = std::make_shared<QueryContainer>(OptionalOffset(0));
    ParsedQuery parsed;
    for (Token next = peekToken(); next.kind != TokenKind::EndOfFile; next = peekToken()) {
        if (errorReported()) break;
        NodePtr node = parseExpression(0);
        if (!node) break;
        if (finalPass && doneWhileParsing(*node)) continue;
        container->children.push_back(std::move(node));
    }
    if (!container->children.empty()) {
        container->firstOffset = container->children.front()->firstOffset;
        container->lastOffset = container->children.back()->lastOffset;
    }
    parsed.header = header;
    if (!errorReported()) {
        parsed.root = std::move(container);
        parsed.variableSlots = symbols.slots();
        parsed.sortSlots = sortSlots;
    }
    return parsed;
}

Token Parser::readRawWord() {
    Token word;
    word.kind = TokenKind::Identifier;
    ReaderState& state = reader_.state();
    if (!state.replays.empty()) return word;
    const std::string& text = reader_.text();
    auto isBlank = [](char c) {
        return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
    };
    while (state.cursor < text.size() && isBlank(text[state.cursor])) {
        ++state.cursor;
        ++state.offset;
    }
    std::size_t end = state.cursor;
    // 0xFF marks the end of the query text.
    while (end < text.size() && !isBlank(text[end]) && text[end] != ')' &&
           static_cast<unsigned char>(text[end]) != 0xFF)
        ++end;
    if (end == state.cursor) return word;
    word.text = text.substr(state.cursor, end - state.cursor);
    if (state.offsetValid) {
        word.begin = state.offset;
        word.end = state.offset + (end - state.cursor) - 1;
    }
    state.offset += end - state.cursor;
    state.cursor = end;
    state.lastToken = word;
    return word;
}

namespace {

std::string unexpectedTokenText(const Token& token) {
    return "Unexpected token: '" + token.text + "'";
}

}  // namespace

Token Parser::expectToken(TokenKind kind) {
    Token token = nextToken();
    if (token.kind != kind)
        report(token.begin, MessageLevel::Error, "Unexpected token: '" + token.text + "'");
    return token;
}

void Parser::report(OptionalOffset location, MessageLevel level, std::string_view text,
                    std::vector<SourceSpan> spans) {
    std::vector<FunctionInstantiation> calls;
    for (const ReplayRecord& record : reader_.state().replays)
        calls.push_back({record.functionName, record.callSite});
    ReportContext context;
    context.peekDepth = reader_.peekDepth();
    context.instantiations = calls;
    for (const TransformEntry& entry : transformStack)
        if (!entry.reporting) context.transformReportingOff = true;
    sink_.report(context, location, level, text, std::move(spans));
}

SourceSpan Parser::spanOf(const ZMFNode& node) {
    return SourceSpan{node.firstOffset ? node.firstOffset : node.location, node.lastOffset};
}

void Parser::reportOperand(const Token& at, const ZMFNode& operand, std::string_view text) {
    report(at.begin, MessageLevel::Error, text, {spanOf(operand)});
}

void Parser::deferTypeError(std::string text, SourceSpan operand) {
    pendingMessage_ = std::move(text);
    pendingTypeError_ = true;
    pendingSpan_ = operand;
}

void Parser::clearPending() {
    pendingMessage_.clear();
    pendingTypeError_ = false;
    pendingSpan_.reset();
}

void Parser::reportPendingAt(const Token& token) {
    std::vector<SourceSpan> spans;
    if (pendingSpan_) spans.push_back(*pendingSpan_);
    report(token.begin, MessageLevel::Error, pendingMessage_, std::move(spans));
}

ParserSnapshot Parser::snapshot() const {
    return ParserSnapshot{reader_.state(), symbols.slotCount(), sortSlots.size(), voidCopyFlag, transformMarks};
}

void Parser::restore(const ParserSnapshot& snapshot, bool discard) {
    reader_.state() = snapshot.reader;
    voidCopyFlag = snapshot.voidCopyFlag;
    if (snapshot.transformMarks.size() == transformMarks.size()) transformMarks = snapshot.transformMarks;
    if (discard) {
        symbols.truncateSlots(snapshot.slotCount);
        if (sortSlots.size() > snapshot.sortSlotCount) sortSlots.resize(snapshot.sortSlotCount);
    }
}

std::string Parser::textBetween(const ReaderState& from, const ReaderState& to) const {
    if (from.replays.empty()) {
        if (to.cursor <= from.cursor) return {};
        std::string text = reader_.text().substr(from.cursor, to.cursor - from.cursor);
        // The cursor stands behind any blanks read ahead of the first token.
        std::size_t first = text.find_first_not_of(" \t\r\n\f\v");
        return first == std::string::npos ? std::string() : text.substr(first);
    }
    // Tokens of a replay are stored last first; joined by blanks, they read
    // back as the same tokens.
    const std::vector<Token>& before = from.replays.back().tokens;
    std::size_t remaining = to.replays.size() == from.replays.size() ? to.replays.back().tokens.size() : 0;
    std::string text;
    for (std::size_t i = before.size(); i-- > remaining;) {
        if (!text.empty()) text.push_back(' ');
        text.append(before[i].text);
    }
    return text;
}

void Parser::finish(ZMFNode& node) const {
    if (reader_.lastToken().end) node.lastOffset = reader_.lastToken().end;
}

NodePtr Parser::parseExpression(BindingPower minimumPower) {
    struct DepthGuard {
        unsigned& depth;
        explicit DepthGuard(unsigned& depth) : depth(++depth) {}
        ~DepthGuard() { --depth; }
    } guard(depth_);
    declined = false;
    Token token = nextToken();
    if (depth_ > maximumDepth) {
        report(token.begin, MessageLevel::Error,
               "Expression nested too deeply: more than " + std::to_string(maximumDepth) + " levels");
        return nullptr;
    }
    if (++expressions_ > expressionBudget) {
        if (expressions_ == expressionBudget + 1)
            report(token.begin, MessageLevel::Error, "Query too complex to parse: it would take too long");
        return nullptr;
    }
    if (token.kind == TokenKind::EndOfFile) {
        if (!silent) report(token.begin, MessageLevel::Error, "Unexpected end of file");
        clearPending();
        return nullptr;
    }
    PrefixHandler* prefix = prefix_[slot(token.kind)].get();
    if (!prefix) {
        if (!pendingMessage_.empty())
            reportPendingAt(token);
        else if (!silent)
            report(token.begin, MessageLevel::Error, unexpectedTokenText(token));
        clearPending();
        return nullptr;
    }
    if (rangeOnly && token.kind != TokenKind::Identifier && token.kind != TokenKind::IntegerLiteral &&
        token.kind != TokenKind::Minus && token.kind != TokenKind::Backquote)
        return nullptr;

    clearPending();
    NodePtr left = prefix->parse(token);

    // An inner operator declined its left operand: if an operator here
    // takes the whole prefix filter instead, the grouping was vitiated.
    bool operandLeftBehind = !pendingMessage_.empty();
    pendingMessage_.clear();
    pendingTypeError_ = false;

    for (;;) {
        if (!left) return nullptr;
        Token next = peekToken();
        InfixHandler* infix = next.kind == TokenKind::EndOfFile ? nullptr : infix_[slot(next.kind)].get();
        BindingPower power = infix ? infix->bindingPower() : 0;
        if (power <= minimumPower) return left;
        if (rangeOnly) return nullptr;

        ParserSnapshot before = snapshot();
        Token op = nextToken();
        SourceSpan leftSpan = spanOf(*left);
        NodePtr result = infix->parse(left, op);
        if (pendingTypeError_) {
            pendingTypeError_ = false;
            if (result) {
                restore(before);
                return result;
            }
        }
        if (!result) {
            left = nullptr;
            continue;
        }
        if (declined) {
            declined = false;
            restore(before);
            return result;
        }
        if (operandLeftBehind) {
            report(op.begin, MessageLevel::Info,
                   "Precedence vitiation was employed to obtain suitable LHS operand for '" + op.text +
                       "' filter, parenthesize the highlighted expression to silence this message",
                   {leftSpan});
            result->vitiated = 1;
            operandLeftBehind = false;
        }
        left = std::move(result);
    }
}

std::optional<ValueType> Parser::peekExpressionType(BindingPower minimumPower) {
    ParserSnapshot before = snapshot();
    ++reader_.state().peekDepth;
    NodePtr node = parseExpression(minimumPower);
    restore(before, true);
    if (!node) return std::nullopt;
    return node->valueType;
}

Parser::TriedOperand Parser::tryOperand(BindingPower minimumPower, ParserSnapshot& before, ValueType wanted) {
    before = snapshot();
    // Inside a function body the text position does not say where we are.
    bool memorable = reader_.state().replays.empty();
    std::pair<std::size_t, BindingPower> key{reader_.state().cursor, minimumPower};
    if (auto known = memorable ? tries_.find(key) : tries_.end(); known != tries_.end()) {
        const TryOutcome& outcome = known->second;
        if (!outcome.type) return {};
        if (*outcome.type != wanted) return {nullptr, outcome.type, outcome.span};
    }
    bool wasSilent = silent;
    silent = true;
    NodePtr operand = parseExpression(minimumPower);
    silent = wasSilent;
    if (memorable) tries_[key] = operand ? TryOutcome{operand->valueType, spanOf(*operand)} : TryOutcome{};
    return {std::move(operand), std::nullopt, {}};
}

NodePtr Parser::parseRange(bool allowVariables) {
    ParserSnapshot before = snapshot();
    bool wasSilent = silent, wasRangeOnly = rangeOnly;
    silent = rangeOnly = true;
    auto endpoint = [&]() -> NodePtr {
        ParserSnapshot at = snapshot();
        NodePtr node = parseExpression(0);
        bool fits = node && node->valueType == ValueType::Numeric &&
                    (allowVariables || peelNegation(*node).kind == NodeKind::Integer);
        if (!fits) {
            restore(at, true);
            return nullptr;
        }
        return node;
    };
    NodePtr lower = endpoint();
    NodePtr upper = lower ? endpoint() : nullptr;
    silent = wasSilent;
    rangeOnly = wasRangeOnly;
    if (!lower) {
        restore(before, true);
        return nullptr;
    }
    auto range = std::make_unique<RangeNode>(lower->location, std::move(lower), std::move(upper));
    finish(*range);
    return range;
}

}  // namespace tarnfold::zmf
