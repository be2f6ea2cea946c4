// The transform filters: flip, flipcolor, fliphorizontal, flipvertical,
// reversecolor, rotate45, rotate90, shift, shifthorizontal, shiftvertical
// and notransform. The body is read once per entry of the keyword's family,
// with the entry on the parser's transform stack, so that each copy has its
// designators, colours and directions already mapped.
#include <unordered_set>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/transform_nodes.h"
#include "query/print_target.h"

namespace tarnfold::zmf {

namespace {

struct TransformKeyword {
    TokenKind token;
    TransformKind kind;
};

constexpr TransformKeyword transformKeywords[] = {
    {TokenKind::KwFlip, TransformKind::Flip},
    {TokenKind::KwFlipcolor, TransformKind::FlipColor},
    {TokenKind::KwFliphorizontal, TransformKind::FlipHorizontal},
    {TokenKind::KwFlipvertical, TransformKind::FlipVertical},
    {TokenKind::KwReversecolor, TransformKind::ReverseColor},
    {TokenKind::KwRotate45, TransformKind::Rotate45},
    {TokenKind::KwRotate90, TransformKind::Rotate90},
    {TokenKind::KwShift, TransformKind::Shift},
    {TokenKind::KwShifthorizontal, TransformKind::ShiftHorizontal},
    {TokenKind::KwShiftvertical, TransformKind::ShiftVertical},
    {TokenKind::KwNotransform, TransformKind::NoTransform},
};

// Copies are told apart by the text they print with their own sets, and
// with the bodies of the functions they call, which differ as well.
std::string copyText(const ZMFNode& copy) {
    PrintTarget target;
    target.expandTransforms = true;
    target.expandFunctions = true;
    copy.print(target);
    return target.take();
}

// The copies of a body, and where reading it ended.
struct Expansion {
    std::vector<TransformCopy> copies;
    ParserSnapshot afterBody;
    std::string bodyText;
};

// keyword restrict? (count | range)? F
class TransformHandler : public PrefixHandler {
public:
    TransformHandler(Parser& parser, TokenKind token, TransformKind kind)
        : PrefixHandler(parser, token), kind_(kind) {}

    NodePtr parse(const Token& token) override {
        bool restrict = false;
        if (parser.peekToken().kind == TokenKind::KwRestrict) {
            Token word = parser.nextToken();
            if (!isShiftKind(kind_)) {
                parser.report(word.begin, MessageLevel::Error,
                              "The 'restrict' keyword can only be used with shift transforms");
                return nullptr;
            }
            parser.report(word.begin, MessageLevel::Info, "Restricted shift filters are a ZMFi extension");
            restrict = true;
        }
        bool counting = takeKeyword(parser, TokenKind::KwCount);
        NodePtr range;
        if (!counting) {
            ParserSnapshot beforeRange = parser.snapshot();
            range = parser.parseRange(false);
            // `flip 1`: a number with no body behind it is the body.
            if (range && !parser.peekExpressionType(transformBody)) {
                parser.restore(beforeRange, true);
                range = nullptr;
            }
        }
        // A body that is there but wrong is read for real below, so that its
        // own error is the one reported.
        TokenKind next = parser.peekToken().kind;
        bool nothingFollows = next == TokenKind::EndOfFile || next == TokenKind::RightBrace ||
                              next == TokenKind::RightParen;
        if (nothingFollows) {
            parser.report(token.begin, MessageLevel::Error, "Missing body to transform filter '" + token.text + "'");
            return nullptr;
        }
        if (range)
            parser.report(token.begin, MessageLevel::Warning,
                          "Range parameters of transform filters are deprecated, consider using 'count' instead");

        OptionalOffset enclosingRotate45 = parser.rotate45Location;
        if (kind_ == TransformKind::Rotate45) parser.rotate45Location = token.begin;
        if (kind_ == TransformKind::NoTransform) parser.rotate45Location.reset();
        std::optional<Expansion> expansion = expand(restrict);
        parser.rotate45Location = enclosingRotate45;
        if (!expansion) return nullptr;
        parser.restore(expansion->afterBody);

        bool keepsOneCopy = kind_ == TransformKind::NoTransform || kind_ == TransformKind::ReverseColor ||
                            kind_ == TransformKind::Rotate90;
        if (expansion->copies.size() == 1 && !keepsOneCopy)
            parser.report(token.begin, MessageLevel::Warning,
                          "Superfluous transform does not modify any filters in the target filter");
        ValueType type = counting ? ValueType::Numeric
                         : range  ? ValueType::Boolean
                                  : expansion->copies.front().root->valueType;
        OptionalOffset end = expansion->copies.front().root->lastOffset;
        auto node = makeNode<TransformNode>(parser, token, type, kind_, token.text, restrict, counting,
                                            std::move(range), std::move(expansion->copies),
                                            std::move(expansion->bodyText));
        // A call's last token may be one of its function's body.
        if (end) node->lastOffset = end;
        return node;
    }

private:
    // Reads the body once per entry. Null after an error in the first copy,
    // which alone reports.
    std::optional<Expansion> expand(bool restrict) {
        const ParserSnapshot start = parser.snapshot();
        const std::vector<TransformEntry> family = transformFamily(kind_);
        Expansion expansion;
        std::unordered_set<std::string> seen;
        for (std::size_t i = 0; i < family.size(); ++i) {
            parser.restore(start, true);
            TransformEntry entry = family[i];
            entry.restrict = restrict;
            entry.reporting = i == 0;
            parser.transformStack.push_back(entry);
            parser.transformMarks.push_back(0);
            const std::size_t depth = parser.transformStack.size();
            parser.voidCopyFlag = false;
            NodePtr copy = parser.parseExpression(transformBody);
            const bool voided = parser.voidCopyFlag;
            const std::size_t mark = parser.transformMarks.back();
            parser.transformStack.pop_back();
            parser.transformMarks.pop_back();
            parser.voidCopyFlag = start.voidCopyFlag;
            if (i == 0) {
                if (!copy) return std::nullopt;
                expansion.afterBody = parser.snapshot();
                expansion.bodyText = parser.textBetween(start.reader, expansion.afterBody.reader);
            }
            if (!copy || (voided && i > 0)) continue;
            // No designator with squares reacted to this shift, so no other
            // shift would change anything either.
            if (entry.isPureShift() && mark < depth) break;
            if (seen.insert(copyText(*copy)).second) expansion.copies.push_back({std::move(copy), entry});
        }
        return expansion;
    }

    TransformKind kind_;
};

}  // namespace

void registerTransformHandlers(Parser& parser) {
    for (const TransformKeyword& keyword : transformKeywords)
        parser.registerPrefix(std::make_unique<TransformHandler>(parser, keyword.token, keyword.kind));
}

}  // namespace tarnfold::zmf
