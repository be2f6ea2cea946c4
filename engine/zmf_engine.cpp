#include "engine/zmf_engine.h"

#include <cstdlib>

#include "engine/node_cast.h"

namespace tarnfold::zmf {

void ZMFEngine::runGame(Game& game, ParsedQuery& query, std::vector<PositionMatch>& matches) {
    prepare(query);
    layOut(game);
    if (query.root) runPositions(*query.root, matches);
}

void ZMFEngine::prepare(ParsedQuery& query) {
    positions.clear();
    errors.clear();
    commentLog.clear();
    commitEntries.clear();
    commentSequence = 0;
    current = 0;
    tagsParsed = false;
    hasVariations = false;
    abort = false;
    if (slotValues.size() != query.variableSlots.size()) slotValues.resize(query.variableSlots.size());
    for (const VariableSlot& slot : query.variableSlots)
        if (!slot.persistent) slotValues[slot.id] = Value();
    variables.reset(&slotValues);
    query_ = &query;
}

// The table holds every position in pre-order, the main continuation before
// the variations at each node, so that a subtree is one run of ids. Piece
// identities never go back down when a move is taken back, so that no
// identity is handed out twice in a game, across sibling lines too.
void ZMFEngine::layOut(Game& game) {
    game.rewind();
    const uint16_t savedCounter = game.board.nextPieceId;
    gamePieceIdCounter_ = savedCounter;
    layOutFrom(game, game.root.get(), 0, true);
    maxPieceId = gamePieceIdCounter_;
    game.board.nextPieceId = savedCounter;
    lastPosition = uint32_t(positions.size()) - 1;
    positionsTotal += positions.size();
}

void ZMFEngine::layOutFrom(Game& game, PGN::AnnotatedGameTreeNode* node, uint16_t depth,
                           bool virtualMainline) {
    const uint32_t id = uint32_t(positions.size());
    positions.push_back({node, id, depth, virtualMainline});
    node->mark = id;
    // A row's board needs no history: the move stack is left out of the copy,
    // which keeps the table linear in the length of the game.
    if (boards.size() <= id) boards.emplace_back();
    std::vector<UndoRecord> history;
    std::swap(history, game.board.moveStack);
    boards[id] = game.board;
    std::swap(history, game.board.moveStack);
    if (node->children.empty()) return;

    auto visit = [&](size_t index, uint16_t childDepth, bool childVirtual) {
        PGN::AnnotatedGameTreeNode* child = node->childAnnotated(index);
        game.board.nextPieceId = gamePieceIdCounter_;
        game.forward(child);
        layOutFrom(game, child, childDepth, childVirtual);
        gamePieceIdCounter_ = std::max(gamePieceIdCounter_, game.board.nextPieceId);
        game.back();
    };
    visit(0, depth, virtualMainline);
    if (!variations) return;
    for (size_t index = 1; index < node->children.size(); ++index) {
        hasVariations = true;
        // Only a variation that Black begins keeps the virtual main line.
        const bool blackBegins = game.board.sideToMove == Black;
        visit(index, uint16_t(depth + 1), virtualMainline && blackBegins);
    }
}

void ZMFEngine::runPositions(const ZMFNode& root, std::vector<PositionMatch>& matches) {
    for (uint32_t id = 0; id <= lastPosition; ++id) {
        current = id;
        Value value = evaluate(root);
        if (value.isTrue() || recordAll) matches.push_back({positions[id].node, std::move(value)});
        if (abort) break;
    }
}

PositionRef ZMFEngine::currentRef() const {
    const PositionRow& row = positions[current];
    return {row.node, row.id, row.depth, row.virtualMainline};
}

void ZMFEngine::addComment(uint32_t kind, ZmfString text, const PositionRef& position) {
    commentLog.push_back({kind, std::move(text), position, commentSequence++});
}

void ZMFEngine::fail(uint32_t kind, std::string text, const ZMFNode& node) {
    errors.push_back({kind, std::move(text), node.location, current, gameNumber});
    abort = true;
}

// Whatever a node gives, a false result takes back the comments and commit
// entries made while it was evaluated: a comment stands only if every filter
// around it held.
Value ZMFEngine::evaluate(const ZMFNode& node) {
    const size_t comments = commentLog.size(), commits = commitEntries.size();
    Value result = dispatch(node);
    if (result.isTrue() || !smartComments) return result;
    commentLog.resize(comments);
    if (commitLog) commitEntries.resize(commits);
    return result;
}

Value ZMFEngine::dispatch(const ZMFNode& node) {
    switch (node.kind) {
        case NodeKind::Abs: return evaluateArithmetic(node);
        case NodeKind::Add: return evaluateArithmetic(node);
        case NodeKind::And: return evaluateLogical(node);
        case NodeKind::Assign: return evaluateAssign(node);
        case NodeKind::Persistent: return evaluatePersistent(node);
        case NodeKind::BackslashLiteral: return Value::string(as<BackslashLiteralNode>(node).value);
        case NodeKind::BitAnd: return evaluateSetOperator(node);
        case NodeKind::BitComplement: return evaluateSetOperator(node);
        case NodeKind::BitOr: return evaluateSetOperator(node);
        case NodeKind::Black: return Value::numeric(-1);
        case NodeKind::BlackToMove: return evaluateBoardState(node);
        case NodeKind::Cardinality: return evaluateSetOperator(node);
        case NodeKind::Check: return evaluateBoardState(node);
        case NodeKind::Colon: return evaluateColon(node);
        case NodeKind::Comment: return evaluateComment(node);
        case NodeKind::Assert: return evaluateAssert(node);
        case NodeKind::Compound: return evaluateCompound(as<CompoundNode>(node).children, node);
        case NodeKind::CurrentTransform:
            return Value::string(makeZmfString(as<CurrentTransformNode>(node).text));
        case NodeKind::Divide: return evaluateArithmetic(node);
        case NodeKind::EqualTo: return evaluateComparison(node);
        case NodeKind::False: return Value::boolean(false);
        case NodeKind::Gamenumber: return Value::numeric(gameNumber);
        case NodeKind::GreaterEqual: return evaluateComparison(node);
        case NodeKind::GreaterThan: return evaluateComparison(node);
        case NodeKind::Identifier: return evaluateVariable(node);
        case NodeKind::Identity: return evaluate(*as<IdentityNode>(node).operand);
        case NodeKind::If: return evaluateIf(node);
        case NodeKind::In: return evaluateSetOperator(node);
        case NodeKind::Integer: return Value::numeric(as<IntegerNode>(node).value);
        case NodeKind::Isbound: return evaluateVariable(node);
        case NodeKind::Isunbound: return evaluateVariable(node);
        case NodeKind::LessEqual: return evaluateComparison(node);
        case NodeKind::LessThan: return evaluateComparison(node);
        case NodeKind::Loop: return evaluateLoop(node);
        case NodeKind::Mate: return evaluateBoardState(node);
        case NodeKind::Modulus: return evaluateArithmetic(node);
        case NodeKind::Multiply: return evaluateArithmetic(node);
        case NodeKind::Negate: return evaluateArithmetic(node);
        case NodeKind::Not: return evaluateLogical(node);
        case NodeKind::NotEqual: return evaluateComparison(node);
        case NodeKind::Or: return evaluateLogical(node);
        case NodeKind::Paren: return evaluate(*as<ParenNode>(node).operand);
        case NodeKind::PieceDesignator: return evaluatePieceDesignator(node);
        case NodeKind::PositionToNumericConversion: return evaluateSetOperator(node);
        case NodeKind::QueryContainer: return evaluateCompound(as<QueryContainer>(node).children, node);
        case NodeKind::SetToNumericConversion: return evaluateSetOperator(node);
        case NodeKind::Sqrt: return evaluateArithmetic(node);
        case NodeKind::Stalemate: return evaluateBoardState(node);
        case NodeKind::SideToMove: return evaluateBoardState(node);
        case NodeKind::String: return Value::string(as<StringNode>(node).value);
        case NodeKind::Subtract: return evaluateArithmetic(node);
        case NodeKind::True: return Value::boolean(true);
        case NodeKind::While: return evaluateLoop(node);
        case NodeKind::White: return Value::numeric(1);
        case NodeKind::WhiteToMove: return evaluateBoardState(node);
        // Declarations did their work while the query was parsed.
        case NodeKind::Dictionary:
        case NodeKind::Function:
        case NodeKind::ZmfHeader: return Value::boolean(true);
        // Parts of other filters, never evaluated on their own.
        case NodeKind::Range:
        case NodeKind::ImaginePiece:
        case NodeKind::ImagineSidetomove:
        case NodeKind::ImagineSwap:
        case NodeKind::LineConstituent:
        case NodeKind::LineGroup: return Value();
        // Filters whose evaluation is not built yet give None, so a query
        // using them parses and runs but does not match through them.
        case NodeKind::Ancestor:
        case NodeKind::Ascii:
        case NodeKind::AttackedBy:
        case NodeKind::Attacks:
        case NodeKind::Between:
        case NodeKind::CapturedGroupIndex:
        case NodeKind::CapturedGroupString:
        case NodeKind::Child:
        case NodeKind::Colortype:
        case NodeKind::Commandpipe:
        case NodeKind::Consecutivemoves:
        case NodeKind::CurrentFen:
        case NodeKind::CurrentMutation:
        case NodeKind::CurrentPosition:
        case NodeKind::Dark:
        case NodeKind::Date:
        case NodeKind::Depth:
        case NodeKind::Descendant:
        case NodeKind::DictionaryAccess:
        case NodeKind::DictionaryIterator:
        case NodeKind::Direction:
        case NodeKind::Distance:
        case NodeKind::Echo:
        case NodeKind::Eco:
        case NodeKind::Elo:
        case NodeKind::Event:
        case NodeKind::Eventdate:
        case NodeKind::Fen:
        case NodeKind::File:
        case NodeKind::Find:
        case NodeKind::FunctionCall:
        case NodeKind::Halfmoveclock:
        case NodeKind::Originalcomment:
        case NodeKind::HHDB:
        case NodeKind::Imagine:
        case NodeKind::Indexof:
        case NodeKind::Initial:
        case NodeKind::Initialposition:
        case NodeKind::Int:
        case NodeKind::LCA:
        case NodeKind::Legalposition:
        case NodeKind::Light:
        case NodeKind::Line:
        case NodeKind::Lower:
        case NodeKind::Mainline:
        case NodeKind::Makesquare:
        case NodeKind::Max:
        case NodeKind::Message:
        case NodeKind::Min:
        case NodeKind::Move:
        case NodeKind::MoveNumber:
        case NodeKind::Parent:
        case NodeKind::PatternMatch:
        case NodeKind::PawnQuery:
        case NodeKind::Piece:
        case NodeKind::Pieceid:
        case NodeKind::PieceIDToSetConversion:
        case NodeKind::PieceAssign:
        case NodeKind::Pin:
        case NodeKind::Player:
        case NodeKind::Ply:
        case NodeKind::Position:
        case NodeKind::PositionID:
        case NodeKind::Power:
        case NodeKind::Promotedpieces:
        case NodeKind::Rank:
        case NodeKind::Ray:
        case NodeKind::Readfile:
        case NodeKind::Removecomment:
        case NodeKind::Removetag:
        case NodeKind::Result:
        case NodeKind::SavePosition:
        case NodeKind::Settag:
        case NodeKind::Site:
        case NodeKind::Slice:
        case NodeKind::Sort:
        case NodeKind::Square:
        case NodeKind::StandardFen:
        case NodeKind::Str:
        case NodeKind::StringIterator:
        case NodeKind::Tag:
        case NodeKind::Terminal:
        case NodeKind::Transform:
        case NodeKind::Type:
        case NodeKind::Unbind:
        case NodeKind::Upper:
        case NodeKind::Validposition:
        case NodeKind::Variant:
        case NodeKind::Variantdraw:
        case NodeKind::Variantend:
        case NodeKind::Variantloss:
        case NodeKind::Variantwin:
        case NodeKind::Variation:
        case NodeKind::VirtualMainline:
        case NodeKind::Writefile:
        case NodeKind::XRay:
        case NodeKind::Year:
        case NodeKind::Zobristkey: return Value();
        case NodeKind::Count: break;
    }
    std::abort();
}

}  // namespace tarnfold::zmf
