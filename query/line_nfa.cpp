#include "query/line_nfa.h"

#include "query/nodes/line_nodes.h"
#include "query/print_target.h"

namespace tarnfold::zmf {

namespace {

class NfaBuilder {
public:
    NfaBuilder(LineNfa& nfa, bool noAtomic, bool noLinearize)
        : nfa_(nfa), noAtomic_(noAtomic), noLinearize_(noLinearize) {}

    // The entry of `node` with `next` behind it.
    std::uint32_t build(const ZMFNode& node, std::uint32_t next) {
        const LineRepeat& repeat = repeatOf(node);
        if (repeat.repetition == LineRepetition::Counted) return buildCounted(node, repeat, next);
        return buildOnce(node, repeat.repetition, next);
    }

private:
    static const LineRepeat& repeatOf(const ZMFNode& node) {
        if (node.kind == NodeKind::LineGroup) return static_cast<const LineGroupNode&>(node).repeat;
        return static_cast<const LineConstituentNode&>(node).repeat;
    }

    std::uint32_t buildOnce(const ZMFNode& node, LineRepetition repetition, std::uint32_t next) {
        if (node.kind == NodeKind::LineGroup)
            return buildGroup(static_cast<const LineGroupNode&>(node), repetition, next);
        return buildConstituent(static_cast<const LineConstituentNode&>(node), repetition, next);
    }

    std::uint32_t buildConstituent(const LineConstituentNode& node, LineRepetition repetition,
                                   std::uint32_t next) {
        const auto self = std::uint32_t(nfa_.states.size());
        LineState state;
        state.constituent = &node;
        if (!noAtomic_) state.writtenSlots = node.repeat.writtenSlots;
        state.linearized = node.repeat.linearizable && !noLinearize_;
        state.cout.insert(next);
        if (repetition == LineRepetition::Optional || repetition == LineRepetition::Any) state.out.insert(next);
        if (repetition == LineRepetition::OneOrMore || repetition == LineRepetition::Any)
            state.cout.insert(self);
        nfa_.states.push_back(std::move(state));
        return self;
    }

    // The members from last to first; `first` is the state of the last
    // member, the first one built, which the loop links go back from.
    std::uint32_t buildGroup(const LineGroupNode& group, LineRepetition repetition, std::uint32_t next) {
        const auto first = std::uint32_t(nfa_.states.size());
        std::uint32_t entry = next;
        for (auto member = group.children.rbegin(); member != group.children.rend(); ++member)
            entry = build(**member, entry);
        if (entry == next) return entry;  // every member repeated zero times
        if (repetition == LineRepetition::Optional || repetition == LineRepetition::Any)
            nfa_.states[entry].out.insert(next);
        if (repetition == LineRepetition::OneOrMore || repetition == LineRepetition::Any) {
            LineState& last = nfa_.states[first];
            last.cout.insert(entry);
            if (!last.out.empty()) last.out.insert(entry);
        }
        return entry;
    }

    // The optional rounds behind the mandatory ones, each a copy of its own.
    std::uint32_t buildCounted(const ZMFNode& node, const LineRepeat& repeat, std::uint32_t next) {
        const int low = repeat.low.value_or(0);
        if (repeat.high) {
            for (int round = low; round < *repeat.high; ++round) {
                const std::uint32_t copy = buildOnce(node, LineRepetition::None, next);
                if (copy != next) nfa_.states[copy].out.insert(next);
                next = copy;
            }
        } else {
            next = buildOnce(node, LineRepetition::Any, next);
        }
        for (int round = 0; round < low; ++round) next = buildOnce(node, LineRepetition::None, next);
        return next;
    }

    LineNfa& nfa_;
    bool noAtomic_;
    bool noLinearize_;
};

std::string escapeQuotes(std::string_view text) {
    std::string escaped;
    for (char c : text) {
        if (c == '"' || c == '\\') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::string stateLabel(const LineNfa& nfa, std::uint32_t index) {
    const LineState& state = nfa.states[index];
    std::string label;
    if (state.constituent) {
        PrintTarget target;
        state.constituent->filter->print(target);
        label = target.text();
    } else {
        label = "End";
    }
    if (state.atomic()) label += "\n[atomic]";
    if (state.linearized) label += "\n[linearized]";
    return label;
}

}  // namespace

LineNfa buildLineNfa(const LineNode& line) {
    LineNfa nfa;
    nfa.states.emplace_back();
    NfaBuilder builder(nfa, line.nonatomic, line.nolinearize);
    std::uint32_t next = 0;
    for (auto constituent = line.constituents.rbegin(); constituent != line.constituents.rend(); ++constituent)
        next = builder.build(**constituent, next);
    nfa.entry = next;
    return nfa;
}

std::string lineNfaDot(const LineNfa& nfa, std::string_view lineText) {
    std::string text =
        "digraph finite_state_machine {\n    rankdir=LR;\n    size=\"5,2\"\n    graph "
        "[fontsize=\"12\";fontname=\"mono\";label=\"";
    text += escapeQuotes(lineText);
    text +=
        "\"]\n    edge [fontsize=\"8\"]\n    node [shape = "
        "doublecircle,width=.4;height=.4,fixedsize=true];\n    node "
        "[fontsize=\"5\",width=.5,height=.5,fixedsize=true]\n    node [shape = circle];\n    weight=0\n\n";
    for (std::uint32_t index = 0; index < nfa.states.size(); ++index) {
        const std::string label = stateLabel(nfa, index);
        std::string escaped;
        for (char c : escapeQuotes(label)) escaped += c == '\n' ? std::string("\\n") : std::string(1, c);
        text += "    NODE_" + std::to_string(index) + " [label=\"" + escaped + "\"";
        if (index == 0) text += ";shape=doublecircle,width=.4;height=.4,fixedsize=true;fontsize=8";
        text += "]\n";
    }
    for (std::uint32_t index = 0; index < nfa.states.size(); ++index) {
        const LineState& state = nfa.states[index];
        for (std::uint32_t target : state.out)
            text += "    NODE_" + std::to_string(index) + " -> NODE_" + std::to_string(target) + " [label=\"0,1\"]\n";
        for (std::uint32_t target : state.cout)
            text += "    NODE_" + std::to_string(index) + " -> NODE_" + std::to_string(target) + " [label=\"\"]\n";
    }
    return text + "}\n";
}

std::string lineNfaText(const LineNfa& nfa) {
    std::string text;
    for (std::uint32_t index = 0; index < nfa.states.size(); ++index) {
        const LineState& state = nfa.states[index];
        text += std::to_string(index);
        if (state.atomic()) text += "[atomic]";
        if (state.linearized) text += "[linearized]";
        text += ": out nodes:\n";
        for (std::uint32_t target : state.out) text += "    " + std::to_string(target) + "\n";
        text += "cout nodes:\n";
        for (std::uint32_t target : state.cout) text += "    " + std::to_string(target) + "\n";
    }
    return text;
}

}  // namespace tarnfold::zmf
