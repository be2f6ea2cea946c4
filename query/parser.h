#pragma once
// The parser frame: a Pratt loop over prefix and infix handler tables, with
// types checked while parsing. An infix operator whose left operand does not
// suit may decline it: the operator goes back into the stream with a
// deferred message, and an outer level may take it (precedence vitiation).

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "query/handler.h"
#include "query/message_sink.h"
#include "query/node.h"
#include "query/parsed_query.h"
#include "query/query_source.h"
#include "query/sort_slots.h"
#include "query/symbols.h"
#include "query/token.h"
#include "query/token_reader.h"
#include "query/transform.h"

namespace tarnfold::zmf {

// Function definitions and the header do their work while being parsed; the
// final pass leaves them out of the tree.
bool doneWhileParsing(const ZMFNode& node);

// Everything an abandoned attempt must give back.
struct ParserSnapshot {
    ReaderState reader;
    std::size_t slotCount = 0;
    std::size_t sortSlotCount = 0;
    bool voidCopyFlag = false;
    std::vector<std::size_t> transformMarks;
};

class Parser {
public:
    Parser();
    ~Parser();
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    // The whole query: a sequence of expressions until the end of the text.
    ParsedQuery parseQuery(const QuerySource& source);
    // Resets the parser and installs the text, as the start of parseQuery
    // does; lets a test drive single parse rules.
    void beginParse(const QuerySource& source);

    // --- for handlers ---------------------------------------------------
    NodePtr parseExpression(BindingPower minimumPower);
    // Reads an expression as a look ahead, silently, and gives the reading
    // state back: the type of what stands here, if anything does.
    std::optional<ValueType> peekExpressionType(BindingPower minimumPower);
    // A right operand that may be missing (after + and *), tried silently.
    // `before` is the state ahead of the attempt. The node is null when
    // there is none, or when an earlier try at this place found an operand
    // of another type than `wanted`: then `otherType` tells which.
    struct TriedOperand {
        NodePtr node;
        std::optional<ValueType> otherType;
        SourceSpan otherSpan;
    };
    TriedOperand tryOperand(BindingPower minimumPower, ParserSnapshot& before, ValueType wanted);
    // An optional range of integer literals (and numeric variables when
    // allowed); null, with nothing consumed and nothing said, when there is none.
    NodePtr parseRange(bool allowVariables);

    Token nextToken() { return reader_.next(); }
    Token peekToken(std::size_t skip = 0) { return reader_.peek(skip); }
    // Reads one token; reports "Unexpected token" when it is not of the kind.
    Token expectToken(TokenKind kind);
    const Token& lastToken() const { return reader_.lastToken(); }
    // The raw text from the cursor, after blanks, up to the next blank, ')'
    // or the end, read directly and not as tokens, so that a bare file name
    // may hold dots and slashes. Consumed like a token (kind Identifier);
    // empty when no such text stands there, or inside a function body,
    // which has tokens only.
    Token readRawWord();

    void report(OptionalOffset location, MessageLevel level, std::string_view text,
                std::vector<SourceSpan> spans = {});
    // Reports an error at a token (or keyword) with the operand underlined.
    void reportOperand(const Token& at, const ZMFNode& operand, std::string_view text);
    // A wrong left operand: not reported now, but handed back with the
    // operator so that an outer level may still take it.
    void deferTypeError(std::string text, const ZMFNode& operand) {
        deferTypeError(std::move(text), spanOf(operand));
    }
    void deferTypeError(std::string text, SourceSpan operand);

    static SourceSpan spanOf(const ZMFNode& node);

    // Forgets a deferred message. A handler that reads a token as its own
    // separator (the `:` of a slice) calls it when an operand before the
    // separator declined that token as an operator.
    void clearPending();

    ParserSnapshot snapshot() const;
    void restore(const ParserSnapshot& snapshot, bool discard = false);

    // The node ends where the last consumed token ends.
    void finish(ZMFNode& node) const;

    const QuerySource& source() const { return source_; }
    const MessageSink& messages() const { return sink_; }
    bool errorReported() const { return sink_.hasError(); }

    void registerPrefix(std::unique_ptr<PrefixHandler> handler);
    void registerInfix(std::unique_ptr<InfixHandler> handler);

    // Switches of a parse, set by the driver between passes.
    bool keepParens = true;
    bool keepCompounds = true;
    bool finalPass = false;
    bool secureMode = false;
    bool dumpNfaDiagrams = false;

    // Variables, scopes and functions of the query being parsed.
    SymbolTable symbols;
    // The sort descriptions met so far, numbered in order, and the number
    // of best-value slots handed out.
    std::vector<SortSlot> sortSlots;
    std::uint32_t bestValueSlotCount = 0;
    // Function bodies being expanded, innermost last.
    const std::vector<ReplayRecord>& instantiations() const { return reader_.state().replays; }
    void pushReplay(ReplayRecord record) { reader_.state().replays.push_back(std::move(record)); }
    void popReplay() { reader_.state().replays.pop_back(); }

    // State that handlers read and set.
    bool silent = false;    // no "Unexpected ..." while a right operand is only tried
    bool declined = false;  // an infix handler found no right operand
    bool rangeOnly = false;
    bool noStringArguments = false;

    // The line constituents being read, innermost last: whether assignments
    // in it are tracked (not under nonatomic) and the slots they write.
    struct LineContext {
        bool active = true;
        std::set<std::uint32_t> slots;
    };
    std::vector<LineContext> lineContexts;
    // Whether a filter read since the innermost constituent began depends on
    // the move played next, such as a move filter over the game's moves.
    bool inducerSeen = false;
    // An assignment's slot, entered in the innermost constituent when that
    // tracks them; true when it does, so that the caller can warn.
    bool inTrackedLineConstituent() const { return !lineContexts.empty() && lineContexts.back().active; }
    bool noteLineWrite(std::uint32_t slot) {
        if (!inTrackedLineConstituent()) return false;
        lineContexts.back().slots.insert(slot);
        return true;
    }
    // The automata of the line filters read, for --dump-nfa-diagrams: in
    // the DOT language, and as text; each line once, however often it is
    // read.
    std::string nfaDiagrams;
    std::string nfaTexts;
    std::set<Offset> nfaDiagramsDumped;

    // The transforms whose bodies are being read, innermost last. Beside
    // each, the greatest stack depth at which a designator with squares was
    // read since the entry was pushed: a shift that no designator saw
    // cannot change anything.
    std::vector<TransformEntry> transformStack;
    std::vector<std::size_t> transformMarks;
    // Raised by a designator that a transform emptied or cut under restrict:
    // the copy being read is void.
    bool voidCopyFlag = false;
    // The enclosing rotate45, while its body is read: squares do not turn.
    OptionalOffset rotate45Location;
    void noteSquareDesignator() {
        for (std::size_t& mark : transformMarks) mark = std::max(mark, transformStack.size());
    }
    bool realRead() const { return reader_.peekDepth() == 0; }
    // The exact text of what was read between two states at the same
    // replay depth: the source slice, or inside a function body its tokens.
    std::string textBetween(const ReaderState& from, const ReaderState& to) const;

    // What the query's zmf(...) header set; parseQuery hands it on.
    QueryHeaderSettings header;

    // A last guard against texts that would take too long: no real query
    // comes near this many expressions.
    std::uint64_t expressionBudget = 1000000;

private:
    void reportPendingAt(const Token& token);

    TokenReader reader_;
    QuerySource source_;
    MessageSink sink_;
    std::array<std::unique_ptr<PrefixHandler>, static_cast<std::size_t>(TokenKind::Count)> prefix_;
    std::array<std::unique_ptr<InfixHandler>, static_cast<std::size_t>(TokenKind::Count)> infix_;

    // Deeply nested text would otherwise exhaust the stack.
    static constexpr unsigned maximumDepth = 400;
    unsigned depth_ = 0;
    std::uint64_t expressions_ = 0;
    // What operands tried after + and * turned out to be, by text position
    // and power: an operator given back is often offered the same operand
    // again, and parsing it anew each time makes some texts take
    // exponential time. Absent type: there was no operand.
    struct TryOutcome {
        std::optional<ValueType> type;
        SourceSpan span;
    };
    std::map<std::pair<std::size_t, BindingPower>, TryOutcome> tries_;

    std::string pendingMessage_;
    bool pendingTypeError_ = false;
    std::optional<SourceSpan> pendingSpan_;
};

}  // namespace tarnfold::zmf
