#pragma once
// A transform filter: the distinct copies of its body, one for each mapping
// of its family that changed something, tried in order as an `or`, or
// counted with `count`.

#include <string>
#include <vector>

#include "query/node.h"
#include "query/transform.h"

namespace tarnfold::zmf {

struct TransformCopy {
    NodePtr root;
    TransformEntry entry;
};

class TransformNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Transform;

    TransformNode(OptionalOffset location, ValueType valueType, TransformKind transformKind, std::string keyword,
                  bool restrict, bool counting, NodePtr range, std::vector<TransformCopy> copies,
                  std::string bodyText);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    TransformKind transformKind;
    std::string keyword;
    bool restrict;
    bool counting;  // `count`: the number of copies that hold
    NodePtr range;  // the deprecated range of copies that must hold; null when absent
    std::vector<TransformCopy> copies;
    // The body as written, which reading again under the keyword makes the
    // same copies.
    std::string bodyText;
};

}  // namespace tarnfold::zmf
