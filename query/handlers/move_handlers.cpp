// Moves: the move filter, whose parameters may come in any order, and
// consecutivemoves, which compares the moves of two lines.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "query/convert.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/move_nodes.h"
#include "query/nodes/piece_designator_node.h"
#include "query/piece_designator.h"

namespace tarnfold::zmf {

namespace {

// The piece letters proper, without A, a and _.
constexpr std::uint16_t pieceTypeBits = 0x0FFF;
constexpr std::uint16_t anyColourBits = (1u << anyWhitePieceBit) | (1u << anyBlackPieceBit);

bool fail(Parser& parser, const Token& at, std::string_view text, std::vector<SourceSpan> spans = {}) {
    parser.report(at.begin, MessageLevel::Error, text, std::move(spans));
    return false;
}

// A remark on a construct beyond the base language whose text is not of the
// form "The 'X' filter ...". Like those, it is said once for a place that is
// read again after an abandoned attempt.
void remark(Parser& parser, OptionalOffset at, const std::string& text, std::vector<SourceSpan> spans = {}) {
    for (const Message& said : parser.messages().messages())
        if (said.level == MessageLevel::Info && said.location == at && messageText(said) == text) return;
    parser.report(at, MessageLevel::Info, text, std::move(spans));
}

struct ParameterOperand {
    NodePtr node;
    bool missing = false;  // nothing that could start an operand stands here
};

// The operand of a parameter. Whether one stands here at all is found out
// silently, so that the caller can name the parameter that lacks it instead
// of complaining about the token that follows. A failure further inside is
// read once more aloud, to have it reported where it lies.
ParameterOperand parseParameterOperand(Parser& parser, BindingPower power) {
    Token first = parser.peekToken();
    if (first.kind == TokenKind::EndOfFile) return {nullptr, true};
    if (parser.errorReported()) return {parser.parseExpression(power), false};
    ParserSnapshot before = parser.snapshot();
    bool wasSilent = parser.silent;
    parser.silent = true;
    NodePtr node = parser.parseExpression(power);
    parser.silent = wasSilent;
    if (node || parser.errorReported()) return {std::move(node), false};
    bool onlyFirstRead = parser.lastToken().begin == first.begin;
    parser.restore(before, true);
    if (onlyFirstRead) return {nullptr, true};
    node = parser.parseExpression(power);
    bool missing = !node && !parser.errorReported();
    return {std::move(node), missing};
}

std::string quoted(std::string_view before, std::string_view name, std::string_view after) {
    return joinPieces({before, "'", name, "'", after});
}

// The state of one move filter while its parameters are read.
class MoveParameters {
public:
    MoveParameters(Parser& parser, const Token& keyword)
        : parser_(parser), node_(std::make_unique<MoveNode>(keyword.begin)) {}

    // Reads parameters up to a token that is none; false after a message.
    bool read() {
        for (;;) {
            Token next = parser_.peekToken();
            bool ok = true;
            switch (next.kind) {
                case TokenKind::KwFrom: ok = setParameter(next, &MoveNode::from, "from", true); break;
                case TokenKind::KwTo: ok = setParameter(next, &MoveNode::to, "to", false); break;
                case TokenKind::KwCapture:
                    ok = setParameter(next, &MoveNode::capture, "capture", true);
                    break;
                case TokenKind::KwEnpassantsquare:
                    ok = setParameter(next, &MoveNode::enpassantsquare, "enpassantsquare", true);
                    break;
                case TokenKind::KwPromote: ok = promote(next); break;
                case TokenKind::KwDrop: ok = drop(next); break;
                case TokenKind::KwCastle: ok = castle(next, MoveCastle::Either); break;
                case TokenKind::ShortCastle: ok = castle(next, MoveCastle::Kingside); break;
                case TokenKind::LongCastle: ok = castle(next, MoveCastle::Queenside); break;
                case TokenKind::KwEnpassant: ok = enpassant(next); break;
                case TokenKind::KwNull: ok = null(next); break;
                case TokenKind::KwPrimary: ok = variation(next, MoveVariation::Primary, "primary"); break;
                case TokenKind::KwSecondary:
                    ok = variation(next, MoveVariation::Secondary, "secondary");
                    break;
                case TokenKind::KwPrevious: ok = source(next, MoveSource::Previous); break;
                case TokenKind::KwLegal: ok = source(next, MoveSource::Legal); break;
                case TokenKind::KwPseudolegal: ok = source(next, MoveSource::Pseudolegal); break;
                case TokenKind::KwReverse: ok = reverse(next); break;
                case TokenKind::KwCount: ok = count(next); break;
                case TokenKind::KwComment:
                case TokenKind::KwMessage:
                    // A second comment is a filter of its own after this one.
                    if (node_->commentBody) return true;
                    ok = comment();
                    break;
                case TokenKind::Colon: return speculative(next);
                default: return true;
            }
            if (!ok) return false;
        }
    }

    // Checks what needs all parameters and completes the node.
    NodePtr finish() {
        if (node_->reverse && node_->source != MoveSource::Legal &&
            node_->source != MoveSource::Pseudolegal) {
            fail(parser_, reverseToken_,
                 "The 'reverse' parameter of the 'move' filter can only be used with 'legal' or "
                 "'pseudolegal'");
            return nullptr;
        }
        // Over the game's moves the filter depends on the move played next,
        // so a line tries such a constituent once for each continuation.
        if (node_->source == MoveSource::Game) {
            node_->atomicInducer = 1;
            parser_.inducerSeen = true;
        }
        if (!node_->from) node_->from = allSquares();
        if (!node_->to) node_->to = allSquares();
        if (node_->count)
            node_->valueType = ValueType::Numeric;
        else if (node_->resultKind != MoveResultKind::Boolean)
            node_->valueType = ValueType::Set;
        parser_.finish(*node_);
        return std::move(node_);
    }

private:
    // Reads the parameter's token; the very first parameter written decides
    // which set a filter without `count` answers with.
    void take(MoveResultKind kindIfFirst = MoveResultKind::Boolean) {
        parser_.nextToken();
        if (first_) node_->resultKind = kindIfFirst;
        first_ = false;
    }

    // A designator of every square, for a `from` or `to` that was not written.
    static NodePtr allSquares() {
        auto all = std::make_unique<PieceDesignatorNode>(std::nullopt, std::nullopt, std::nullopt, ".");
        all->implicit = 1;
        return all;
    }

    bool given(const NodePtr& operand) const { return operand && !operand->implicit; }

    // from, to, capture, enpassantsquare S
    bool setParameter(const Token& keyword, NodePtr MoveNode::*field, std::string_view name,
                      bool notWithDrop) {
        MoveResultKind kind = MoveResultKind::Boolean;
        if (field == &MoveNode::from) kind = MoveResultKind::From;
        if (field == &MoveNode::to) kind = MoveResultKind::To;
        if (field == &MoveNode::capture) kind = MoveResultKind::Capture;
        take(kind);
        if (given(node_.get()->*field))
            return fail(parser_, keyword,
                        quoted("The 'move' filter may contain at most one ", name, " specification"));
        if (notWithDrop && node_->drop)
            return fail(parser_, keyword, quoted("Cannot combine ", name, " with 'drop' in 'move' filter"));
        if (field == &MoveNode::enpassantsquare && node_->enpassant)
            return fail(parser_, keyword,
                        "Cannot use both 'enpassantsquare' and 'enpassant' in a 'move' filter");
        ParameterOperand operand = parseParameterOperand(parser_, pinParameter);
        if (operand.missing)
            return fail(parser_, keyword,
                        quoted("Missing argument to ", name, " specification of 'move' filter"));
        if (!operand.node) return false;
        convertPieceToSet(operand.node);
        if (operand.node->valueType != ValueType::Set) {
            parser_.reportOperand(
                keyword, *operand.node,
                quoted("The ", name, " specification of the 'move' filter requires a Set argument"));
            return false;
        }
        node_.get()->*field = std::move(operand.node);
        return true;
    }

    // The designator of promote or drop: piece types only, no squares.
    NodePtr pieceOperand(const Token& keyword, std::string_view name) {
        if (parser_.peekToken().kind != TokenKind::PieceDesignator) {
            fail(parser_, keyword,
                 quoted("Missing piece designator for ", name, " specification of 'move' filter"));
            return nullptr;
        }
        NodePtr operand = parser_.parseExpression(pieceParameter);
        if (!operand) return nullptr;
        if (operand->kind != NodeKind::PieceDesignator) {
            fail(parser_, keyword,
                 quoted("Missing piece designator for ", name, " specification of 'move' filter"));
            return nullptr;
        }
        const auto& designator = static_cast<const PieceDesignatorNode&>(*operand);
        if (designator.squares) {
            parser_.reportOperand(keyword, *operand,
                                  quoted("The piece designator for the ", name,
                                         " specification may not contain a square designator"));
            return nullptr;
        }
        // A or a stands for every piece type of its colour.
        if (!designator.pieceMask || (*designator.pieceMask & (pieceTypeBits | anyColourBits)) == 0) {
            parser_.reportOperand(keyword, *operand,
                                  quoted("The piece designator for the ", name,
                                         " specification must contain at least one piece type"));
            return nullptr;
        }
        return operand;
    }

    // promote designator
    bool promote(const Token& keyword) {
        take();
        if (node_->promote)
            return fail(parser_, keyword,
                        "The 'move' filter may contain at most one 'promote' specification");
        if (node_->drop)
            return fail(parser_, keyword, "Cannot combine 'promote' with 'drop' in 'move' filter");
        node_->promote = pieceOperand(keyword, "promote");
        return node_->promote != nullptr;
    }

    // drop designator
    bool drop(const Token& keyword) {
        take();
        if (node_->drop)
            return fail(parser_, keyword, "The 'move' filter may contain at most one 'drop' specification");
        if (node_->reverse || node_->null || given(node_->from) || node_->capture || node_->promote ||
            node_->enpassant || node_->enpassantsquare || node_->castle != MoveCastle::None)
            return fail(
                parser_, keyword,
                "Cannot combine 'drop' with 'reverse', 'null', 'from', 'capture', 'promote', 'enpassant', "
                "'enpassantsquare', or castling specification");
        node_->drop = pieceOperand(keyword, "drop");
        return node_->drop != nullptr;
    }

    // castle, o-o, o-o-o
    bool castle(const Token& keyword, MoveCastle which) {
        take();
        if (node_->castle != MoveCastle::None)
            return fail(parser_, keyword, "The 'move' filter may contain at most one castling specification");
        if (node_->drop)
            return fail(parser_, keyword,
                        "Cannot combine castling specification with 'drop' in 'move' filter");
        node_->castle = which;
        return true;
    }

    // enpassant
    bool enpassant(const Token& keyword) {
        take();
        if (node_->enpassant)
            return fail(parser_, keyword,
                        "The 'move' filter may contain at most one 'enpassant' specification");
        if (node_->enpassantsquare)
            return fail(parser_, keyword,
                        "Cannot use both 'enpassantsquare' and 'enpassant' in a 'move' filter");
        if (node_->drop)
            return fail(parser_, keyword, "Cannot combine 'enpassant' with 'drop' in 'move' filter");
        node_->enpassant = true;
        return true;
    }

    // null
    bool null(const Token& keyword) {
        take();
        if (node_->null)
            return fail(parser_, keyword, "The 'move' filter may contain at most one 'null' specification");
        if (node_->drop) return fail(parser_, keyword, "Cannot combine 'null' with 'drop' in 'move' filter");
        node_->null = true;
        return true;
    }

    bool generated() const {
        return node_->source == MoveSource::Legal || node_->source == MoveSource::Pseudolegal;
    }

    // primary, secondary: which of the moves played count.
    bool variation(const Token& keyword, MoveVariation which, std::string_view name) {
        take();
        if (node_->variation != MoveVariation::Both)
            return fail(parser_, keyword,
                        "The 'move' filter may contain at most one variation specification");
        if (generated())
            return fail(parser_, keyword,
                        quoted("Cannot combine ", name, " with 'legal' or 'pseudolegal' in 'move' filter"));
        node_->variation = which;
        return true;
    }

    // previous, legal, pseudolegal
    bool source(const Token& keyword, MoveSource which) {
        take();
        if (node_->source != MoveSource::Game)
            return fail(parser_, keyword,
                        "The 'move' filter may contain at most one of 'previous', 'legal', or 'pseudolegal'");
        node_->source = which;
        if (generated() && node_->variation != MoveVariation::Both)
            return fail(
                parser_, keyword,
                "Cannot combine 'primary', or 'secondary' with 'legal' or 'pseudolegal' in 'move' filter");
        return true;
    }

    // reverse
    bool reverse(const Token& keyword) {
        take();
        remark(parser_, keyword.begin, "Reverse 'move' filter is a ZMFi extension");
        if (node_->reverse) return fail(parser_, keyword, "Multiple 'reverse' parameters to 'move' filter");
        if (node_->drop)
            return fail(parser_, keyword, "Cannot combine 'reverse' with 'drop' in 'move' filter");
        node_->reverse = true;
        reverseToken_ = keyword;
        return true;
    }

    // count
    bool count(const Token& keyword) {
        take();
        if (node_->count) return fail(parser_, keyword, "Multiple 'count' parameters to 'move' filter");
        node_->count = true;
        return true;
    }

    // comment F or message F: the whole comment filter, which reads its own
    // arguments, is kept and run at the position after each move.
    bool comment() {
        first_ = false;
        node_->commentBody = parser_.parseExpression(0);
        return node_->commentBody != nullptr;
    }

    // : F, which ends the filter.
    bool speculative(const Token& colon) {
        take();
        // An operand before the colon may have declined it as an operator.
        parser_.clearPending();
        remark(parser_, colon.begin, "Speculative 'move' filter is a ZMFi extension");
        if (node_->source == MoveSource::Previous)
            return fail(parser_, colon, "Speculative 'move' filter cannot be used with 'previous'");
        ParameterOperand body = parseParameterOperand(parser_, pinParameter);
        if (body.missing) return fail(parser_, colon, "Missing filter argument to speculative 'move' filter");
        node_->speculativeBody = std::move(body.node);
        return node_->speculativeBody != nullptr;
    }

    Parser& parser_;
    std::unique_ptr<MoveNode> node_;
    bool first_ = true;
    Token reverseToken_;
};

// move parameters*
class MoveHandler : public PrefixHandler {
public:
    MoveHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwMove) {}

    NodePtr parse(const Token& token) override {
        MoveParameters parameters(parser, token);
        if (!parameters.read()) return nullptr;
        return parameters.finish();
    }
};

// consecutivemoves quiet R quiet ( P P )
class ConsecutivemovesHandler : public PrefixHandler {
public:
    ConsecutivemovesHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwConsecutivemoves) {}

    NodePtr parse(const Token& token) override {
        bool quiet = readQuiet();
        NodePtr range = parser.parseRange(true);
        quiet = readQuiet() || quiet;
        if (parser.peekToken().kind != TokenKind::LeftParen) {
            fail(parser, token, "Missing opening parenthesis after 'consecutivemoves' filter");
            return nullptr;
        }
        parser.nextToken();
        NodePtr left = argument(token);
        if (!left) return nullptr;
        NodePtr right = argument(token);
        if (!right) return nullptr;
        if (parser.peekToken().kind != TokenKind::RightParen) {
            fail(parser, token, "Missing closing parenthesis after 'consecutivemoves' filter");
            return nullptr;
        }
        parser.nextToken();
        auto node = makeNode<ConsecutivemovesNode>(parser, token, std::move(range), std::move(left),
                                                   std::move(right), quiet);
        node->bestValueSlot = parser.bestValueSlotCount++;
        return node;
    }

private:
    bool readQuiet() {
        if (parser.peekToken().kind != TokenKind::KwQuiet) return false;
        parser.nextToken();
        return true;
    }

    NodePtr argument(const Token& keyword) {
        NodePtr position = parser.parseExpression(0);
        if (!position) return nullptr;
        if (position->valueType != ValueType::Position) {
            parser.reportOperand(keyword, *position,
                                 "Arguments to 'consecutivemoves' filter must be position filters");
            return nullptr;
        }
        if (position->unwrapAll().kind != NodeKind::Identifier) {
            SourceSpan span = Parser::spanOf(*position);
            remark(parser, span.begin,
                   "Use of non-variable argument to 'consecutivemoves' filter is a ZMFi extension", {span});
        }
        return position;
    }
};

}  // namespace

void registerMoveHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<MoveHandler>(parser));
    parser.registerPrefix(std::make_unique<ConsecutivemovesHandler>(parser));
}

}  // namespace tarnfold::zmf
