#include "query/nodes/transform_nodes.h"

#include "query/binding_power.h"
#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

TransformNode::TransformNode(OptionalOffset location, ValueType valueType, TransformKind transformKind,
                             std::string keyword, bool restrict, bool counting, NodePtr range,
                             std::vector<TransformCopy> copies, std::string bodyText)
    : ZMFNode(kind, valueType, location),
      transformKind(transformKind),
      keyword(std::move(keyword)),
      restrict(restrict),
      counting(counting),
      range(std::move(range)),
      copies(std::move(copies)),
      bodyText(std::move(bodyText)) {}

void TransformNode::print(PrintTarget& target) const {
    std::string head = keyword;
    if (restrict) head.append(" restrict");
    if (counting) head.append(" count");
    if (range) {
        PrintTarget inner = target.sibling();
        range->print(inner);
        head.append(" ").append(inner.text());
    }
    PrintTarget first = target.sibling();
    const PrintedEnds bodyEnds = printOperand(first, *copies.front().root, transformBody, 0);
    if (target.expandTransforms) {
        // What runs: every copy, each in braces, behind the keyword.
        target << head << " {";
        for (const TransformCopy& copy : copies) {
            PrintTarget inner = target.sibling();
            copy.root->print(inner);
            target << " {" << inner.text() << "}";
        }
        target << " }";
        target.ends = PrintedEnds{};
        return;
    }
    target << head << " " << bodyText;
    target.ends = PrintedEnds{closedEnd, std::min(transformBody, bodyEnds.right)};
}

void TransformNode::dump(DumpTarget& target, bool isLast) const {
    std::string name = "Transform (" + keyword + ")";
    if (restrict) name.append(" restrict");
    if (counting) name.append(" count");
    name.append(" copies: ").append(std::to_string(copies.size()));
    target.writeLine(*this, isLast, name);
    std::vector<std::pair<const ZMFNode*, std::string>> children;
    if (range) children.emplace_back(range.get(), "range");
    if (target.expandTransforms) {
        for (const TransformCopy& copy : copies) children.emplace_back(copy.root.get(), transformName(copy.entry));
    } else {
        children.emplace_back(copies.front().root.get(), "body");
    }
    target.openLevel(isLast);
    for (std::size_t i = 0; i < children.size(); ++i)
        children[i].first->dumpLabelled(target, i + 1 == children.size(), children[i].second);
    target.closeLevel();
}

}  // namespace tarnfold::zmf
