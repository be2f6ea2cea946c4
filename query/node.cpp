#include "query/node.h"

#include "query/dump_target.h"

namespace tarnfold::zmf {

ZMFNode::ZMFNode(NodeKind kind, ValueType valueType, OptionalOffset location)
    : kind(kind), location(location), lastOffset(location), firstOffset(location), valueType(valueType) {}

ZMFNode::~ZMFNode() = default;

void ZMFNode::dumpLabelled(DumpTarget& target, bool isLast, std::string_view label) const {
    target.setLabel(label);
    dump(target, isLast);
}

bool ZMFNode::isAssignment() const { return false; }

const ZMFNode& ZMFNode::unwrapParens() const { return *this; }
ZMFNode& ZMFNode::unwrapParens() { return *this; }

const ZMFNode& ZMFNode::unwrapAll() const { return *this; }
ZMFNode& ZMFNode::unwrapAll() { return *this; }

}  // namespace tarnfold::zmf
