// The line filter: its automaton run along the game tree, forward through
// the variations or backward to the root, keeping the best end and only
// the comments and variable values of the path that reached it.

#include <algorithm>

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"
#include "query/nodes/line_nodes.h"
#include "query/nodes/structure_nodes.h"

namespace tarnfold::zmf {

namespace {

using Ranges = std::vector<std::pair<size_t, size_t>>;

// Ranges of another path that are not yet among these.
void appendRanges(Ranges& to, const Ranges& from) {
    for (const auto& range : from)
        if (std::find(to.begin(), to.end(), range) == to.end()) to.push_back(range);
}

template <class Entry>
void keepRanges(std::vector<Entry>& log, size_t atEntry, const Ranges& ranges) {
    std::vector<Entry> kept;
    for (const auto& [begin, end] : ranges)
        for (size_t index = begin; index < end && index < log.size(); ++index) kept.push_back(log[index]);
    log.resize(atEntry);
    for (Entry& entry : kept) log.push_back(std::move(entry));
}

}  // namespace

// What a path has contributed so far: the log entries its constituents made
// and the variable version it carries.
struct LinePath {
    Ranges comments;
    Ranges commits;
    size_t version = 0;
};

// The active states of the walk, by state and the child the path must take
// next (-1: any), in key order.
struct LineActive {
    struct Entry {
        uint32_t state;
        int32_t child;
        LinePath path;
    };
    std::vector<Entry> entries;

    Entry* find(uint32_t state, int32_t child) {
        for (Entry& entry : entries)
            if (entry.state == state && entry.child == child) return &entry;
        return nullptr;
    }
    void put(uint32_t state, int32_t child, const LinePath& path) {
        if (Entry* entry = find(state, child)) {
            entry->path = path;
            return;
        }
        auto at = std::lower_bound(entries.begin(), entries.end(), std::pair(state, child),
                                   [](const Entry& entry, const std::pair<uint32_t, int32_t>& key) {
                                       return std::pair(entry.state, entry.child) < key;
                                   });
        entries.insert(at, Entry{state, child, path});
    }
};

// A walk still to make: the states that enter a variation, or the main
// continuation that waits for them.
struct LinePending {
    LineActive active;
    uint32_t position;
    int32_t child;
};

// The sets of one nesting of line filters, kept from evaluation to
// evaluation.
struct LineScratch {
    LineActive active;
    LineActive next;
    std::vector<LinePending> pending;
};

// One evaluation of a line filter.
struct LineRun {
    explicit LineRun(const LineNode& node) : node(node) {}
    const LineNode& node;
    int side = 2;  // the side whose positions count, 2 for both
    bool found = false;
    uint32_t bestRow = 0;
    LinePath best;
    std::set<uint32_t> ends;
};

ZMFEngine::ZMFEngine() = default;
ZMFEngine::~ZMFEngine() = default;
ZMFEngine::ZMFEngine(ZMFEngine&&) noexcept = default;
ZMFEngine& ZMFEngine::operator=(ZMFEngine&&) noexcept = default;

// A single number is the range's both ends; an end that is not Numeric
// fails it.
bool ZMFEngine::rangeHolds(const ZMFNode& rangeNode, int64_t value) {
    const RangeNode& range = as<RangeNode>(rangeNode);
    const Value lower = evaluate(*range.lower);
    if (!lower.is(ValueType::Numeric)) return false;
    int64_t high = lower.asNumeric();
    if (range.upper) {
        const Value upper = evaluate(*range.upper);
        if (!upper.is(ValueType::Numeric)) return false;
        high = upper.asNumeric();
    }
    return value >= lower.asNumeric() && value <= high;
}

PositionRef ZMFEngine::rowRef(uint32_t id) const {
    const PositionRow& row = positions[id];
    return {row.node, row.id, row.depth, row.virtualMainline};
}

Value ZMFEngine::eval(const LineNode& node) {
    const uint32_t start = current;
    const size_t savedVersion = variables.currentVersion(), versionCount = variables.versionCount();
    const size_t commentsAtEntry = commentLog.size(), commitsAtEntry = commitEntries.size();
    if (node.nestban && lineMemo_[&node].count(start)) return Value();

    LineRun run(node);
    if (node.singlecolor) run.side = board().sideToMove;
    if (lineDepth_ == lineScratch_.size()) lineScratch_.push_back(std::make_unique<LineScratch>());
    LineScratch& scratch = *lineScratch_[lineDepth_++];
    scratch.active.entries.clear();
    LinePath empty;
    empty.version = savedVersion;
    addLineState(run, scratch.active, node.automaton.entry, -1, empty);
    walkLine(run, scratch);
    --lineDepth_;
    current = start;
    variables.setCurrentVersion(savedVersion);

    int64_t length = 0;
    if (run.found) {
        int64_t plies = int64_t(boards[run.bestRow].plyCount) - int64_t(boards[start].plyCount);
        if (node.backward) plies = -plies;
        length = node.singlecolor ? (plies + 2) / 2 : plies + 1;
    }
    if (!run.found || (node.range && !rangeHolds(*node.range, length))) {
        variables.truncate(versionCount);
        variables.setCurrentVersion(savedVersion);
        return Value();
    }
    if (!node.nonatomic) variables.merge(run.best.version, savedVersion);
    variables.truncate(versionCount);
    variables.setCurrentVersion(savedVersion);

    if (node.nestban) {
        std::set<uint32_t>& covered = lineMemo_[&node];
        for (uint32_t end : run.ends)
            for (PGN::AnnotatedGameTreeNode* at = positions[end].node;; at = at->parentAnnotated()) {
                covered.insert(at->mark);
                if (at->mark == start || !at->parentNode) break;
            }
    }
    if (smartComments) {
        keepRanges(commentLog, commentsAtEntry, run.best.comments);
        if (commitLog) keepRanges(commitEntries, commitsAtEntry, run.best.commits);
    }
    if (!quiet && !node.quiet) {
        const std::string startText = renderValue(Value::position(rowRef(start)), &boards[start]);
        for (uint32_t end : run.ends) {
            addComment(7,
                       makeZmfString("Start line that ends at " +
                                     renderValue(Value::position(rowRef(end)), &boards[end])),
                       rowRef(start));
            addComment(8,
                       makeZmfString("End line of length " + std::to_string(length) + " that starts at " +
                                     startText),
                       rowRef(end));
        }
    }
    if (node.lastposition) return Value::position(rowRef(run.bestRow));
    return Value::numeric(length);
}

// Forward, the walk follows the main line and enters each variation as it
// meets it, the variations first; a stack of walks still to make keeps the
// depth of the tree off the call stack. The sets live in the scratch of
// this nesting of line filters, so that a walk allocates nothing once
// warmed up, apart from the copies a branching takes.
void ZMFEngine::walkLine(LineRun& run, LineScratch& scratch) {
    std::vector<LinePending>& pending = scratch.pending;
    pending.clear();
    uint32_t position = current;
    int32_t child = -1;
    for (bool first = true; first || !pending.empty(); first = false) {
        if (!first) {
            LinePending& walk = pending.back();
            position = walk.position;
            child = walk.child;
            std::swap(scratch.active, walk.active);
            pending.pop_back();
        }
        if (abort) break;
        current = position;
        for (;;) {
            const bool matchesSide = run.side == 2 || int(board().sideToMove) == run.side;
            stepLine(run, scratch.active, scratch.next, child, matchesSide);
            std::swap(scratch.active, scratch.next);
            if (scratch.active.entries.empty() || abort) break;
            PGN::AnnotatedGameTreeNode* here = positions[current].node;
            if (run.node.backward) {
                if (!here->parentNode) break;
                current = here->parentAnnotated()->mark;
                child = -1;
                continue;
            }
            if (here->children.empty()) break;
            const bool branches = here->children.size() > 1 && hasVariations && !run.node.primary;
            if (branches) {
                // The main continuation waits below its variations.
                if (!run.node.secondary) pending.push_back({scratch.active, here->childAnnotated(0)->mark, 0});
                for (size_t index = here->children.size() - 1; index >= 1; --index)
                    pending.push_back({scratch.active, here->childAnnotated(index)->mark, int32_t(index)});
                break;
            }
            if (run.node.secondary) break;
            current = here->childAnnotated(0)->mark;
            child = 0;
        }
    }
}

// Every active state's test at the current position, giving the next set.
void ZMFEngine::stepLine(LineRun& run, const LineActive& active, LineActive& next, int32_t child,
                         bool matchesSide) {
    next.entries.clear();
    for (const LineActive::Entry& entry : active.entries) {
        if (entry.child != -1 && child != -1 && entry.child != child) continue;
        // A position of the other side is passed over; the path keeps going.
        if (!matchesSide) {
            next.put(entry.state, -1, entry.path);
            continue;
        }
        const LineState& state = run.node.automaton.states[entry.state];
        if (!state.constituent) continue;
        if (!state.linearized) {
            tryLineEdge(run, next, state, entry.path, -1, false);
            continue;
        }
        PGN::AnnotatedGameTreeNode* here = positions[current].node;
        const size_t children = here->children.empty() ? 0
                                : (hasVariations && !run.node.primary) ? here->children.size()
                                                                       : 1;
        for (size_t index = 0; index < children; ++index)
            tryLineEdge(run, next, state, entry.path, int32_t(index), true);
    }
}

// The state's constituent on the path's own variables; on success its
// successors join the next set, required to go on with `child`.
void ZMFEngine::tryLineEdge(LineRun& run, LineActive& next, const LineState& state, const LinePath& path,
                            int32_t child, bool restricted) {
    lineBranch.push_back({restricted ? current : 0, child, restricted});
    const size_t restore = variables.currentVersion();
    variables.setCurrentVersion(path.version);
    if (state.atomic()) variables.fork(state.writtenSlots);
    const size_t comments = commentLog.size(), commits = commitEntries.size();
    const bool holds = evaluate(*state.constituent->filter).isTrue();
    const size_t version = variables.currentVersion();
    variables.setCurrentVersion(restore);
    lineBranch.pop_back();
    if (!holds) return;
    LinePath after = path;
    after.version = version;
    if (smartComments && commentLog.size() > comments) {
        after.comments.emplace_back(comments, commentLog.size());
        if (commitLog && commitEntries.size() > commits) after.commits.emplace_back(commits, commitEntries.size());
    }
    for (uint32_t successor : state.cout) addLineState(run, next, successor, child, after);
}

// Enters a state into the next set, judges an accepting one against the
// best end so far, and follows the state's skips.
void ZMFEngine::addLineState(LineRun& run, LineActive& next, uint32_t stateIndex, int32_t child,
                             const LinePath& path) {
    next.put(stateIndex, child, path);
    const LineState& state = run.node.automaton.states[stateIndex];
    if (!state.constituent) acceptLineEnd(run, next.find(stateIndex, child)->path);
    for (uint32_t successor : state.out)
        if (!next.find(successor, child)) addLineState(run, next, successor, child, path);
}

// The current position as an end of the line: the best end is the longest
// (forward) or the one nearest the root (backward), or under firstmatch the
// first reached; of equal plies the lower id.
void ZMFEngine::acceptLineEnd(LineRun& run, LinePath& path) {
    const uint32_t id = current;
    const uint32_t ply = boards[id].plyCount;
    bool better = !run.found, tie = false;
    if (run.found) {
        const uint32_t bestPly = boards[run.bestRow].plyCount;
        tie = ply == bestPly;
        if (run.node.firstmatch)
            better = run.node.backward ? bestPly < ply : id < run.bestRow;
        else
            better = run.node.backward ? ply < bestPly : ply > bestPly;
        if (tie && id < run.bestRow) better = true;
        if (tie && id == run.bestRow) better = false;
    }
    if (better && !(tie && keepAllBest)) run.ends = {id};
    if (tie && keepAllBest) {
        run.ends.insert(id);
        if (smartComments) {
            if (better) {
                appendRanges(path.comments, run.best.comments);
                if (commitLog) appendRanges(path.commits, run.best.commits);
            } else {
                appendRanges(run.best.comments, path.comments);
                if (commitLog) appendRanges(run.best.commits, path.commits);
            }
        }
    }
    if (better) {
        run.found = true;
        run.bestRow = id;
        run.best = path;
    }
}

}  // namespace tarnfold::zmf
