#pragma once
// line: a regular expression over a path of positions. Its constituents are
// filters, alone or in groups, each with a repetition; the handler compiles
// them into an automaton that the engine walks along the game tree.

#include <cstdint>
#include <optional>
#include <vector>

#include "query/line_nfa.h"
#include "query/node.h"

namespace tarnfold::zmf {

enum class LineRepetition : std::uint8_t { None = 0, Optional = 1, OneOrMore = 2, Any = 3, Counted = 4 };

// What a constituent or a group shares: how often it may stand, and what
// its evaluation can change.
struct LineRepeat {
    LineRepetition repetition = LineRepetition::None;
    std::optional<int> low;   // counted only; absent means 0
    std::optional<int> high;  // counted only; absent means no maximum
    std::uint8_t linearizable = 0;
    std::vector<std::uint32_t> writtenSlots;  // sorted
};

// "?", "+", "*", "{m,n}" and so on, as read back.
std::string repetitionText(const LineRepeat& repeat);

// One filter that must hold at a position of the path.
class LineConstituentNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::LineConstituent;

    LineConstituentNode(OptionalOffset location, NodePtr filter);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr filter;
    LineRepeat repeat;
};

// ( constituent --> constituent ... ) with a repetition of its own.
class LineGroupNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::LineGroup;

    explicit LineGroupNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> children;
    LineRepeat repeat;
    bool backward = false;  // its arrows, which are those of its line
};

// line R options --> constituent --> ... (or <-- throughout). Numeric, the
// length of the best match, or under lastposition the position it ends at.
class LineNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Line;

    LineNode(OptionalOffset location, bool lastposition);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr range;  // null when absent
    bool backward = false;
    bool nestban = false;
    bool firstmatch = false;
    bool lastposition = false;
    bool primary = false;
    bool secondary = false;
    bool quiet = false;
    bool singlecolor = false;
    bool nonatomic = false;
    bool nolinearize = false;
    std::vector<NodePtr> constituents;
    LineNfa automaton;

    // The options as written, in their fixed order.
    std::string optionsText() const;
};

}  // namespace tarnfold::zmf
