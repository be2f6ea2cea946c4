#include "engine/zmf_engine.h"

#include <cstdlib>

#include "engine/node_cast.h"

namespace tarnfold::zmf {

void ZMFEngine::runGame(Game& game, ParsedQuery& query, std::vector<PositionMatch>& matches) {
    prepare(query);
    game_ = &game;
    // Its tags are read only if a tag filter asks.
    tagCache.bind(game.tags);
    layOut(game);
    if (query.root) runPositions(*query.root, matches);
}

void ZMFEngine::prepare(ParsedQuery& query) {
    positions.clear();
    errors.clear();
    commentLog.clear();
    commitEntries.clear();
    lineBranch.clear();
    tagChanges.clear();
    sortSlots.assign(query.sortSlots.size(), SlotState());
    bestValueSlots.clear();
    commentRemovals.clear();
    lineMemo_.clear();
    lineDepth_ = 0;
    moveListDepth_ = 0;
    commentSequence = 0;
    current = 0;
    regex.noMatchYet = true;
    hasVariations = false;
    abort = false;
    evaluations_ = 0;
    hhdbFacts_ = {};
    if (slotValues.size() != query.variableSlots.size()) slotValues.resize(query.variableSlots.size());
    for (const VariableSlot& slot : query.variableSlots) {
        if (!slot.persistent)
            slotValues[slot.id] = Value();
        else if (slot.valueType == ValueType::Dictionary && slotValues[slot.id].isNone())
            // A dictionary starts empty and stays a dictionary, so that
            // entries can be written into it from the first game on.
            slotValues[slot.id] = Value::dictionary(std::make_shared<ZmfDictionary>());
    }
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
    layOutFrom(game, game.root.get());
    maxPieceId = gamePieceIdCounter_;
    game.board.nextPieceId = savedCounter;
    lastPosition = uint32_t(positions.size()) - 1;
    positionsTotal += positions.size();
}

// A row's board needs no history: the move stack is left out of the copy,
// which keeps the table linear in the length of the game. A new row is a
// copy too, not a fresh board, which would reserve a move stack that a row
// never fills.
void ZMFEngine::addRow(Game& game, PGN::AnnotatedGameTreeNode* node, uint16_t depth, bool virtualMainline) {
    const uint32_t id = uint32_t(positions.size());
    positions.push_back({node, id, depth, virtualMainline});
    node->mark = id;
    std::vector<UndoRecord> history;
    std::swap(history, game.board.moveStack);
    if (boards.size() <= id)
        boards.push_back(game.board);
    else
        boards[id] = game.board;
    std::swap(history, game.board.moveStack);
}

// The walk keeps its own stack of open nodes instead of recursing, so that a
// game of any length, or variations nested to any depth, fits.
void ZMFEngine::layOutFrom(Game& game, PGN::AnnotatedGameTreeNode* root) {
    addRow(game, root, 0, true);
    layoutStack_.clear();
    layoutStack_.push_back({root, 0, 0, true});
    // The moves of a finished line are taken back only when another line
    // needs the board, so that the last line, the main line of a whole game
    // most often, goes back in one rewind.
    size_t pendingBacks = 0;
    while (!layoutStack_.empty()) {
        LayoutFrame& frame = layoutStack_.back();
        const size_t children = frame.node->children.size();
        if (frame.nextChild >= (variations ? children : std::min<size_t>(children, 1))) {
            layoutStack_.pop_back();
            if (layoutStack_.empty()) break;
            ++pendingBacks;
            // The counter as taking the move back would leave it.
            const std::vector<UndoRecord>& history = game.board.moveStack;
            gamePieceIdCounter_ =
                std::max(gamePieceIdCounter_, history[history.size() - pendingBacks].previousNextPieceId);
            continue;
        }
        for (; pendingBacks > 0; --pendingBacks) game.back();
        const size_t index = frame.nextChild++;
        uint16_t depth = frame.depth;
        bool virtualMainline = frame.virtualMainline;
        if (index > 0) {
            hasVariations = true;
            // Only a variation that Black begins keeps the virtual main line.
            virtualMainline = virtualMainline && game.board.sideToMove == Black;
            ++depth;
        }
        PGN::AnnotatedGameTreeNode* child = frame.node->childAnnotated(index);
        game.board.nextPieceId = gamePieceIdCounter_;
        game.forward(child);
        addRow(game, child, depth, virtualMainline);
        layoutStack_.push_back({child, 0, depth, virtualMainline});
    }
    if (root == game.root.get()) {
        game.rewind();
    } else {
        for (; pendingBacks > 0; --pendingBacks) game.back();
    }
}

void ZMFEngine::runPositions(const ZMFNode& root, std::vector<PositionMatch>& matches) {
    for (uint32_t id = 0; id <= lastPosition; ++id) {
        current = id;
        Value value = evaluate(root);
        if (value.isTrue() || recordAll) matches.push_back({positions[id].node, std::move(value)});
        if (abort) break;
    }
    settleCommits();
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
    deliver(errors.back(), asyncErrors);
    abort = true;
}

void ZMFEngine::deliver(EngineMessage& message, bool asynchronous) {
    if (!asynchronous || !messageSink) return;
    messageSink(message);
    message.delivered = true;
}

// Whatever a node gives, a false result takes back the comments and commit
// entries made while it was evaluated: a comment stands only if every filter
// around it held.
Value ZMFEngine::evaluate(const ZMFNode& node) {
    if (evaluationLimit != 0 && ++evaluations_ > evaluationLimit) {
        abort = true;
        return Value();
    }
    const size_t comments = commentLog.size(), commits = commitEntries.size();
    Value result = dispatch(node);
    if (result.isTrue() || !smartComments) return result;
    commentLog.resize(comments);
    if (commitLog) commitEntries.resize(commits);
    return result;
}

// One case per kind of the list. A filter that is parsed but not evaluated
// yet gives None (the run warned about it before the first game), and so
// does a part of another filter, which its owner reads in place. A kind that
// no class builds cannot be reached.
Value ZMFEngine::dispatch(const ZMFNode& node) {
#define ZMF_DISPATCH_evaluated(Class) return eval(as<Class>(node));
#define ZMF_DISPATCH_pending(Class) return Value();
#define ZMF_DISPATCH_part(Class) return Value();
#define ZMF_DISPATCH_unbuilt(Class) break;
    switch (node.kind) {
#define ZMF_NODE(Kind, Class, family, state, name) \
    case NodeKind::Kind:                           \
        ZMF_DISPATCH_##state(Class)
#include "query/node_kinds.def"
#undef ZMF_NODE
    }
#undef ZMF_DISPATCH_evaluated
#undef ZMF_DISPATCH_pending
#undef ZMF_DISPATCH_part
#undef ZMF_DISPATCH_unbuilt
    std::abort();
}

}  // namespace tarnfold::zmf
