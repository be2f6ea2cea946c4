#pragma once
// The automaton of a line filter: states that test one constituent each,
// with links taken without a test (out, the skips) and links taken once the
// test has held (cout). States are numbered from the end of the line:
// state 0 is the accepting end, the entry is built last.

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tarnfold::zmf {

class LineConstituentNode;
class LineNode;
class ZMFNode;

struct LineState {
    const LineConstituentNode* constituent = nullptr;  // null for the end state
    std::set<std::uint32_t> out;
    std::set<std::uint32_t> cout;
    // Slots the constituent may change; a state that lists any is evaluated
    // atomically, on a version of the variables of its own.
    std::vector<std::uint32_t> writtenSlots;
    bool linearized = false;  // tried once for each move that leaves the position

    bool atomic() const { return !writtenSlots.empty(); }
};

struct LineNfa {
    std::vector<LineState> states;
    std::uint32_t entry = 0;
};

// Compiles the line's constituents, last to first, in front of the end state.
LineNfa buildLineNfa(const LineNode& line);

// The automaton in the DOT language, headed by the line's text.
std::string lineNfaDot(const LineNfa& nfa, std::string_view lineText);
// The same links as text: each state's number and flags, then its targets.
std::string lineNfaText(const LineNfa& nfa);

}  // namespace tarnfold::zmf
