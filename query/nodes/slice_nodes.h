#pragma once
// Subscripts: a slice of a string, and a member of a dictionary.

#include "query/node.h"

namespace tarnfold::zmf {

// T[i], T[i:j], T[:j], T[i:], T[:]
class SliceNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Slice;

    SliceNode(OptionalOffset location, NodePtr operand, NodePtr lower, NodePtr upper, bool range);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
    NodePtr lower;  // null when absent
    NodePtr upper;  // null when absent
    bool range;     // written with a colon
};

// D[key]
class DictionaryAccessNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::DictionaryAccess;

    DictionaryAccessNode(OptionalOffset location, NodePtr dictionary, NodePtr key);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr dictionary;
    NodePtr key;
};

}  // namespace tarnfold::zmf
