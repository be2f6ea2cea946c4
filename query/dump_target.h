#pragma once
// The writer of the tree dump: one line per node, indented by a tree prefix
// that shows which ancestors still have siblings to come.

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "query/node.h"
#include "query/query_source.h"

namespace tarnfold::zmf {

// A child to dump, with the role its parent gives it; an empty label names
// no role. A null node is an absent optional part and is left out.
struct DumpChild {
    // Implicit, so that a plain list of children needs no wrapping.
    DumpChild(const ZMFNode* node) : node(node) {}
    DumpChild(const ZMFNode* node, std::string_view label) : node(node), label(label) {}
    const ZMFNode* node;
    std::string_view label;
};

class DumpTarget {
public:
    // The source turns offsets into locations; without one, every location
    // reads as the default "???:0:0".
    explicit DumpTarget(const QuerySource* source, bool unicode = true, bool colors = false);

    const QuerySource* source;
    bool unicode;
    bool colors;
    // What to show beyond the parsed tree: the body under each function call,
    // the bound arguments as well, the copies made by each transform.
    bool expandFunctions = false;
    bool expandFuncArgs = false;
    bool expandTransforms = false;
    // Called with every node whose line is written, so that a dump can also
    // serve as a walk over the whole tree.
    std::function<void(const ZMFNode&)> visit;

    // The role of the next node written; used by that node's line only.
    void setLabel(std::string_view label);

    // The line of a node: prefix, `name` (the class's words with its
    // parameters), label, type, location and flags.
    void writeLine(const ZMFNode& node, bool isLast, std::string_view name);

    // Lines written between these two are children of the node whose line
    // came last; `isLast` is that node's own place among its siblings.
    void openLevel(bool isLast);
    void closeLevel();

    // Writes the children one level down, the last present one told so.
    void dumpChildren(bool isLast, std::initializer_list<DumpChild> children);
    void dumpChildren(bool isLast, const std::vector<NodePtr>& children);

    const std::string& text() const { return text_; }
    std::string take() { return std::move(text_); }

private:
    void writePrefix(bool isLast);
    void writeLocation(const ZMFNode& node);
    void writeColored(std::string_view color, std::string_view text);

    // One entry per open level: whether the node of that level was a last child.
    std::vector<bool> levels_;
    std::string label_;
    std::string text_;
};

}  // namespace tarnfold::zmf
