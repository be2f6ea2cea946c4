// Filters that read the table of positions: what a row is, which rows are
// related how, and find, which evaluates a filter at other rows. Nothing
// moves on the tree or on a board; `current` changes and comes back.

#include <cinttypes>
#include <cstdio>

#include "chess/variant.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"
#include "query/nodes/structure_nodes.h"

namespace tarnfold::zmf {

namespace {

std::string hexKey(uint64_t key) {
    char text[17];
    std::snprintf(text, sizeof text, "%" PRIx64, key);
    return text;
}

// The first six fields, without a pocket or the checks still to give.
std::string plainFen(const Board& board) {
    FenOptions options;
    options.pocketStyle = 2;
    options.checkStyle = 1;
    std::string fen = board.toFen(options);
    size_t end = 0;
    for (int field = 0; field < 6 && end != std::string::npos; ++field) end = fen.find(' ', end + (field > 0));
    if (end != std::string::npos) fen.resize(end);
    return fen;
}

}  // namespace

Value ZMFEngine::eval(const PlyNode&) { return Value::numeric(board().plyCount); }

Value ZMFEngine::eval(const MoveNumberNode&) { return Value::numeric(board().fullmoveNumber); }

Value ZMFEngine::eval(const HalfmoveclockNode&) { return Value::numeric(board().halfmoveClock); }

Value ZMFEngine::eval(const PositionIDNode&) { return Value::numeric(current); }

Value ZMFEngine::eval(const CurrentPositionNode&) { return Value::position(currentRef()); }

Value ZMFEngine::eval(const InitialpositionNode&) { return Value::position(rowRef(0)); }

Value ZMFEngine::eval(const DepthNode&) { return Value::numeric(positions[current].depth); }

Value ZMFEngine::eval(const MainlineNode&) { return Value::boolean(positions[current].depth == 0); }

Value ZMFEngine::eval(const VariationNode&) { return Value::boolean(positions[current].depth != 0); }

Value ZMFEngine::eval(const VirtualMainlineNode&) { return Value::boolean(positions[current].virtualMainline); }

Value ZMFEngine::eval(const InitialNode&) { return Value::boolean(positions[current].node->parentNode == nullptr); }

// Read from the tree, not the table: a position whose continuation was
// left out of the walk is not terminal.
Value ZMFEngine::eval(const TerminalNode&) { return Value::boolean(positions[current].node->children.empty()); }

Value ZMFEngine::eval(const ZobristkeyNode&) { return Value::string(makeZmfString(hexKey(board().key))); }

Value ZMFEngine::eval(const CurrentFenNode&) { return Value::string(makeZmfString(board().toFen())); }

Value ZMFEngine::eval(const StandardFenNode&) { return Value::string(makeZmfString(plainFen(board()))); }

Value ZMFEngine::eval(const VariantNode&) { return Value::boolean(board().variant != Standard); }

Value ZMFEngine::eval(const VariantendNode&) { return Value::boolean(board().isVariantEnd()); }

Value ZMFEngine::eval(const VariantwinNode&) { return Value::boolean(mutableBoard().isVariantWin()); }

Value ZMFEngine::eval(const VariantdrawNode&) { return Value::boolean(mutableBoard().isVariantDraw()); }

Value ZMFEngine::eval(const VariantlossNode&) { return Value::boolean(mutableBoard().isVariantLoss()); }

// Without a result the game's result as text; with one, whether it is
// the game's.
Value ZMFEngine::eval(const ResultNode& node) {
    const uint32_t result = game_ ? game_->result : uint32_t(PGN::UnknownResult);
    if (!node.result) return Value::string(makeZmfString(std::string(PGN::resultText(result))));
    return Value::boolean(uint32_t(*node.result) == result);
}

Value ZMFEngine::eval(const FenNode& node) {
    const Board& here = board();
    if (node.sideToMove && *node.sideToMove != here.sideToMove) return Value::boolean(false);
    if ((~here.occupied & node.emptySquares) != node.emptySquares) return Value::boolean(false);
    for (Color color : {White, Black})
        for (int type = 0; type < 6; ++type) {
            const Bitboard wanted = node.pieces[color][type];
            if ((here.pieces[color][type] & wanted) != wanted) return Value::boolean(false);
        }
    return Value::boolean(true);
}

Value ZMFEngine::eval(const ParentNode&) {
    const PGN::AnnotatedGameTreeNode* parent = positions[current].node->parentAnnotated();
    if (!parent) return Value();
    return Value::position(rowRef(parent->mark));
}

// Child 0 is the main continuation; the others exist only when variations
// are walked.
Value ZMFEngine::eval(const ChildNode& node) {
    const Value index = evaluate(*node.operand);
    if (!index.is(ValueType::Numeric)) return Value();
    const int64_t k = index.asNumeric();
    const PGN::AnnotatedGameTreeNode* here = positions[current].node;
    if (k < 0 || k >= int64_t(here->children.size()) || (k >= 1 && !variations)) return Value();
    return Value::position(rowRef(here->childAnnotated(size_t(k))->mark));
}

Value ZMFEngine::eval(const PositionNode& node) {
    const Value index = evaluate(*node.operand);
    if (!index.is(ValueType::Numeric)) return Value();
    const int64_t id = index.asNumeric();
    if (id < 0 || id >= int64_t(positions.size())) return Value();
    return Value::position(rowRef(uint32_t(id)));
}

// One line of play has its common ancestor at the earlier row.
uint32_t ZMFEngine::quickLca(uint32_t a, uint32_t b) const {
    if (!hasVariations && a <= lastPosition && b <= lastPosition) return std::min(a, b);
    return static_cast<const PGN::AnnotatedGameTreeNode*>(
               PGN::lowestCommonAncestor(positions[a].node, positions[b].node))
        ->mark;
}

bool ZMFEngine::positionPair(const ZMFNode& left, const ZMFNode& right, uint32_t& a, uint32_t& b) {
    const Value first = evaluate(left);
    if (!first.is(ValueType::Position)) return false;
    const Value second = evaluate(right);
    if (!second.is(ValueType::Position)) return false;
    a = first.asPosition().id;
    b = second.asPosition().id;
    return true;
}

Value ZMFEngine::eval(const AncestorNode& node) {
    uint32_t a, b;
    if (!positionPair(*node.left, *node.right, a, b)) return Value();
    return Value::boolean(a != b && quickLca(a, b) == a);
}

Value ZMFEngine::eval(const DescendantNode& node) {
    uint32_t a, b;
    if (!positionPair(*node.left, *node.right, a, b)) return Value();
    return Value::boolean(a != b && quickLca(a, b) == b);
}

Value ZMFEngine::eval(const LCANode& node) {
    uint32_t a, b;
    if (!positionPair(*node.left, *node.right, a, b)) return Value();
    return Value::position(rowRef(quickLca(a, b)));
}

Value ZMFEngine::eval(const DistanceNode& node) {
    uint32_t a, b;
    if (!positionPair(*node.left, *node.right, a, b)) return Value();
    const int64_t common = boards[quickLca(a, b)].plyCount;
    return Value::numeric(int64_t(boards[a].plyCount) + int64_t(boards[b].plyCount) - 2 * common);
}

// Backward through the ancestors, or forward through the subtree, which is
// one run of ids that ends where the ply stops growing.
Value ZMFEngine::eval(const FindNode& node) {
    const uint32_t start = current;
    const bool counting = node.counting();
    std::vector<uint32_t> found;
    auto visit = [&](uint32_t id) {
        current = id;
        if (!evaluate(*node.operand).isTrue()) return true;
        found.push_back(id);
        return counting;
    };
    if (node.reverse) {
        for (const PGN::AnnotatedGameTreeNode* at = positions[start].node; at && !abort; at = at->parentAnnotated())
            if (!visit(at->mark)) break;
    } else if (start <= lastPosition) {
        const uint32_t startPly = boards[start].plyCount;
        for (uint32_t id = start; id <= lastPosition && !abort; ++id) {
            if (id != start && boards[id].plyCount <= startPly) break;
            if (!visit(id)) break;
        }
    }
    current = start;
    const int64_t count = int64_t(found.size());
    if (node.range ? !rangeHolds(*node.range, count) : found.empty()) return Value();
    if (!quiet && !node.quiet)
        for (size_t k = 0; k < found.size(); ++k) {
            std::string text("Found");
            if (counting) text.append(" ").append(std::to_string(k + 1)).append(" of ").append(std::to_string(count));
            addComment(1, makeZmfString(text), rowRef(found[k]));
        }
    if (counting) return Value::numeric(count);
    return Value::position(rowRef(found.front()));
}

}  // namespace tarnfold::zmf
