// Choosing the best: sort keeps the best value of a game and only its
// comments, max and min keep the comments of the chosen operand, echo
// compares the position with every other.

#include <algorithm>

#include "engine/collate.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

// Numbers as numbers, strings by collation; an absent value is never
// better, and anything is better than an absent one.
bool isBetter(const std::optional<Value>& candidate, const std::optional<Value>& held, bool maximum) {
    if (!candidate) return false;
    if (!held) return true;
    int order = 0;
    if (candidate->is(ValueType::Numeric) && held->is(ValueType::Numeric)) {
        const int64_t a = candidate->asNumeric(), b = held->asNumeric();
        order = a < b ? -1 : a > b ? 1 : 0;
    } else if (candidate->is(ValueType::String) && held->is(ValueType::String)) {
        order = collate(candidate->asString()->text(), held->asString()->text());
    } else {
        std::abort();  // a slot holds one type, checked when the query was read
    }
    return maximum ? order > 0 : order < 0;
}

bool sortable(const Value& value) { return value.is(ValueType::Numeric) || value.is(ValueType::String); }

}  // namespace

// The value goes on as the node's; its comments wait with it in the
// commit log, to reach the game only if the value wins its slot.
Value ZMFEngine::eval(const SortNode& node) {
    const size_t comments = commentLog.size();
    Value value = evaluate(*node.operand);
    if (!sortable(value)) return value;
    CommitEntry entry{1, value, node.slot, node.direction == SortDirection::Maximum, {}};
    if (smartComments) {
        entry.comments.assign(commentLog.begin() + std::ptrdiff_t(comments), commentLog.end());
        commentLog.resize(comments);
    }
    commitEntries.push_back(std::move(entry));
    return value;
}

// After the last position: each entry in order against its slot, then the
// comments of each slot's best value into the game.
void ZMFEngine::settleCommits() {
    for (CommitEntry& entry : commitEntries) {
        std::vector<SlotState>& slots = entry.target == 1 ? sortSlots : bestValueSlots;
        if (entry.slot >= slots.size()) slots.resize(entry.slot + 1);
        SlotState& slot = slots[entry.slot];
        if (isBetter(entry.value, slot.value, entry.maximum)) {
            slot.value = entry.value;
            slot.comments = std::move(entry.comments);
        } else if (keepAllBest && !isBetter(slot.value, entry.value, entry.maximum)) {
            for (CommentEntry& comment : entry.comments) slot.comments.push_back(std::move(comment));
        }
    }
    for (auto* slots : {&sortSlots, &bestValueSlots})
        for (SlotState& slot : *slots)
            for (CommentEntry& comment : slot.comments) commentLog.push_back(std::move(comment));
}

// Keeps the entries of the best operand so far (and of those tied with
// it): a better one drops what came before it, a worse one its own.
void ZMFEngine::keepBest(BestKeeping& keeping, int order) {
    if (order > 0) {
        if (smartComments) {
            commentLog.erase(commentLog.begin() + std::ptrdiff_t(keeping.comments),
                             commentLog.begin() + std::ptrdiff_t(keeping.keptComments));
            if (commitLog)
                commitEntries.erase(commitEntries.begin() + std::ptrdiff_t(keeping.commits),
                                    commitEntries.begin() + std::ptrdiff_t(keeping.keptCommits));
        }
    } else if (order < 0) {
        if (smartComments) {
            commentLog.resize(keeping.keptComments);
            if (commitLog) commitEntries.resize(keeping.keptCommits);
        }
        return;
    }
    keeping.keptComments = commentLog.size();
    keeping.keptCommits = commitEntries.size();
}

Value ZMFEngine::bestOf(const std::vector<NodePtr>& arguments, ValueType type, bool maximum) {
    BestKeeping keeping{commentLog.size(), commitEntries.size(), commentLog.size(), commitEntries.size()};
    std::optional<Value> best;
    for (const NodePtr& argument : arguments) {
        Value value = evaluate(*argument);
        if (!value.is(type)) {
            keepBest(keeping, -1);
            continue;
        }
        const int order = isBetter(value, best, maximum) ? 1 : isBetter(best, value, maximum) ? -1 : 0;
        keepBest(keeping, order);
        if (order > 0) best = std::move(value);
    }
    return best ? *best : Value();
}

Value ZMFEngine::eval(const MaxNode& node) { return bestOf(node.arguments, node.valueType, true); }

Value ZMFEngine::eval(const MinNode& node) { return bestOf(node.arguments, node.valueType, false); }

// Every other position as the target of the body; a numeric echo keeps
// the best value and the comments of its passes, as max does.
Value ZMFEngine::eval(const EchoNode& node) {
    const uint32_t source = current;
    const bool numeric = node.valueType == ValueType::Numeric;
    variables.resolve(node.sourceSlot) = Value::position(currentRef());
    BestKeeping keeping{commentLog.size(), commitEntries.size(), commentLog.size(), commitEntries.size()};
    std::optional<Value> best;
    bool anyTrue = false;
    for (uint32_t id = 0; id <= lastPosition && !abort; ++id) {
        if (id == source && !node.inAll) continue;
        current = id;
        variables.resolve(node.targetSlot) = Value::position(rowRef(id));
        Value value = evaluate(*node.body);
        current = source;
        if (!value.isTrue()) {
            if (numeric) keepBest(keeping, -1);
            continue;
        }
        anyTrue = true;
        if (!quiet && !node.quiet) markEcho(node, source, id);
        if (!numeric) continue;
        const int order = isBetter(value, best, true) ? 1 : isBetter(best, value, true) ? -1 : 0;
        keepBest(keeping, order);
        if (order > 0) best = std::move(value);
    }
    current = source;
    if (numeric) return best ? *best : Value();
    return anyTrue ? Value::boolean(true) : Value();
}

void ZMFEngine::markEcho(const EchoNode& node, uint32_t source, uint32_t target) {
    const std::string sourceText = renderValue(Value::position(rowRef(source)), &boards[source]);
    const std::string targetText = renderValue(Value::position(rowRef(target)), &boards[target]);
    addComment(2, makeZmfString(node.label + " <--" + targetText), rowRef(source));
    addComment(3, makeZmfString(node.label + " -->" + sourceText), rowRef(target));
    for (uint32_t id : {source, target})
        if (positions[id].depth != 0)
            addComment(10, makeZmfString("id:" + std::to_string(id)), rowRef(id));
    const uint32_t common = quickLca(source, target);
    if (common != source && common != target) addComment(4, makeZmfString("LCA"), rowRef(common));
}

namespace {

// A move as the same move in any position: origin, target and piece.
constexpr uint32_t contextFreeBits = 0xF0000FFF;

struct LineMove {
    uint32_t move;
    uint32_t row;  // the position the move leads to
};

// The moves from the common ancestor down to the position, in order.
void movesDownTo(const PositionRow& row, uint32_t ancestor, std::vector<LineMove>& moves) {
    moves.clear();
    for (const PGN::AnnotatedGameTreeNode* at = row.node; at && at->mark != ancestor; at = at->parentAnnotated())
        moves.push_back({at->move.value & contextFreeBits, at->mark});
    std::reverse(moves.begin(), moves.end());
}

struct CommonRun {
    size_t length = 0, left = 0, right = 0;  // the run ends before these indices
};

// The longest run of equal moves in both lists, by the table of common
// suffix lengths; of runs of one length the first found row by row.
CommonRun longestCommonRun(const std::vector<LineMove>& left, const std::vector<LineMove>& right) {
    CommonRun best;
    std::vector<size_t> above(right.size() + 1, 0), row(right.size() + 1, 0);
    for (size_t i = 0; i < left.size(); ++i) {
        for (size_t j = 0; j < right.size(); ++j) {
            row[j + 1] = left[i].move == right[j].move ? above[j] + 1 : 0;
            if (row[j + 1] > best.length) best = {row[j + 1], i + 1, j + 1};
        }
        std::swap(above, row);
    }
    return best;
}

}  // namespace

// The longest sequence of moves that the lines to two positions play alike
// after they part; the game's longest run and its move comments are kept
// in the node's best-value slot.
Value ZMFEngine::eval(const ConsecutivemovesNode& node) {
    const size_t comments = commentLog.size();
    uint32_t p, q;
    if (!positionPair(*node.left, *node.right, p, q)) return Value();
    const uint32_t common = quickLca(p, q);
    if (common == p || common == q) return Value();
    std::vector<LineMove> left, right;
    movesDownTo(positions[p], common, left);
    movesDownTo(positions[q], common, right);
    const CommonRun run = longestCommonRun(left, right);
    const int64_t length = int64_t(run.length);
    if (node.range && !rangeHolds(*node.range, length)) return Value();
    CommitEntry entry{0, Value::numeric(length), node.bestValueSlot, true, {}};
    if (smartComments) {
        entry.comments.assign(commentLog.begin() + std::ptrdiff_t(comments), commentLog.end());
        commentLog.resize(comments);
    }
    if (length > 0 && !node.quiet && !quiet)
        for (size_t k = 1; k <= run.length; ++k) {
            const ZmfString text = makeZmfString("-move[" + std::to_string(k) + "]");
            for (const auto& [moves, end] : {std::pair(&left, run.left), std::pair(&right, run.right)}) {
                const uint32_t row = (*moves)[end - run.length + k - 1].row;
                entry.comments.push_back({10, text, rowRef(row), commentSequence++});
            }
        }
    commitEntries.push_back(std::move(entry));
    if (length == 0) return Value();
    return Value::numeric(length);
}

}  // namespace tarnfold::zmf
