#include "query/nodes/navigation_nodes.h"

#include <algorithm>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// "keyword(left, right)": both are read from power 0 inside the parentheses.
void printPair(PrintTarget& target, std::string_view keyword, const ZMFNode& left, const ZMFNode& right) {
    target << keyword << "(";
    printOperand(target, left, 0, 0);
    target << ", ";
    printOperand(target, right, 0, 0);
    target << ")";
    target.ends = PrintedEnds{};
}

}  // namespace

ParentNode::ParentNode(OptionalOffset location) : ZMFNode(kind, ValueType::Position, location) {}

void ParentNode::print(PrintTarget& target) const { target << "parent"; }

void ParentNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Parent"); }

PositionIDNode::PositionIDNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Numeric, location) {}

void PositionIDNode::print(PrintTarget& target) const { target << "positionid"; }

void PositionIDNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "PositionID");
}

CurrentPositionNode::CurrentPositionNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Position, location) {}

void CurrentPositionNode::print(PrintTarget& target) const { target << "currentposition"; }

void CurrentPositionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "CurrentPosition");
}

InitialNode::InitialNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void InitialNode::print(PrintTarget& target) const { target << "initial"; }

void InitialNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Initial"); }

InitialpositionNode::InitialpositionNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Position, location) {}

void InitialpositionNode::print(PrintTarget& target) const { target << "initialposition"; }

void InitialpositionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "InitialPosition");
}

MainlineNode::MainlineNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void MainlineNode::print(PrintTarget& target) const { target << "mainline"; }

void MainlineNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Mainline");
}

VirtualMainlineNode::VirtualMainlineNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void VirtualMainlineNode::print(PrintTarget& target) const { target << "virtualmainline"; }

void VirtualMainlineNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "VirtualMainline");
}

TerminalNode::TerminalNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void TerminalNode::print(PrintTarget& target) const { target << "terminal"; }

void TerminalNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Terminal");
}

VariationNode::VariationNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void VariationNode::print(PrintTarget& target) const { target << "variation"; }

void VariationNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Variation");
}

StalemateNode::StalemateNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

void StalemateNode::print(PrintTarget& target) const { target << "stalemate"; }

void StalemateNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Stalemate");
}

DepthNode::DepthNode(OptionalOffset location) : ZMFNode(kind, ValueType::Numeric, location) {}

void DepthNode::print(PrintTarget& target) const { target << "depth"; }

void DepthNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Depth"); }

PlyNode::PlyNode(OptionalOffset location) : ZMFNode(kind, ValueType::Numeric, location) {}

void PlyNode::print(PrintTarget& target) const { target << "ply"; }

void PlyNode::dump(DumpTarget& target, bool isLast) const { dumpNode(*this, target, isLast, "Ply"); }

MoveNumberNode::MoveNumberNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Numeric, location) {}

void MoveNumberNode::print(PrintTarget& target) const { target << "movenumber"; }

void MoveNumberNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "MoveNumber");
}

GamenumberNode::GamenumberNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Numeric, location) {}

void GamenumberNode::print(PrintTarget& target) const { target << "gamenumber"; }

void GamenumberNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "GameNumber");
}

SavePositionNode::SavePositionNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Position, location) {}

void SavePositionNode::print(PrintTarget& target) const { target << "saveposition"; }

void SavePositionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "SavePosition");
}

CurrentMutationNode::CurrentMutationNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::String, location) {}

void CurrentMutationNode::print(PrintTarget& target) const { target << "currentmutation"; }

void CurrentMutationNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "CurrentMutation");
}

CurrentTransformNode::CurrentTransformNode(OptionalOffset location, std::string text)
    : ZMFNode(kind, ValueType::String, location), text(std::move(text)) {}

void CurrentTransformNode::print(PrintTarget& target) const { target << "currenttransform"; }

void CurrentTransformNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("CurrentTransform");
    if (!text.empty()) name.append(" (").append(text).append(")");
    dumpNode(*this, target, isLast, name);
}

ChildNode::ChildNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Position, location), operand(std::move(operand)) {}

void ChildNode::print(PrintTarget& target) const {
    target << "child";
    if (operand->implicit) return;
    target << "(";
    printOperand(target, *operand, 0, 0);
    target << ")";
    target.ends = PrintedEnds{};
}

void ChildNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Child", {operand.get()});
}

PositionNode::PositionNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Position, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void PositionNode::print(PrintTarget& target) const { printPrefix(target, "position", *operand, absOperand); }

void PositionNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Position", {operand.get()});
}

AncestorNode::AncestorNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Boolean, location),
      left(std::move(left)),
      right(std::move(right)) {}

void AncestorNode::print(PrintTarget& target) const { printPair(target, "ancestor", *left, *right); }

void AncestorNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Ancestor", {left.get(), right.get()});
}

DescendantNode::DescendantNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Boolean, location),
      left(std::move(left)),
      right(std::move(right)) {}

void DescendantNode::print(PrintTarget& target) const { printPair(target, "descendant", *left, *right); }

void DescendantNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Descendant", {left.get(), right.get()});
}

LCANode::LCANode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Position, location), left(std::move(left)), right(std::move(right)) {}

void LCANode::print(PrintTarget& target) const { printPair(target, "lca", *left, *right); }

void LCANode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "LCA", {left.get(), right.get()});
}

FindNode::FindNode(OptionalOffset location, NodePtr operand, NodePtr range, bool reverse, bool all,
                   bool quiet)
    : ZMFNode(kind, (all || range) ? ValueType::Numeric : ValueType::Position, location),
      operand(std::move(operand)),
      range(std::move(range)),
      reverse(reverse),
      all(all),
      quiet(quiet) {
    spanToOperand(*this, *this->operand);
}

void FindNode::print(PrintTarget& target) const {
    target << "find";
    if (quiet) target << " quiet";
    if (reverse) target << " <--";
    if (all) target << " all";
    if (range) {
        target << " ";
        range->print(target);
    }
    target << " ";
    // A numeric body would be read back as (part of) a range.
    if (operand->valueType == ValueType::Numeric && operand->kind != NodeKind::Paren) {
        target << "(";
        printOperand(target, *operand, 0, 0);
        target << ")";
        target.ends = PrintedEnds{};
        return;
    }
    PrintedEnds ends = printOperand(target, *operand, findBody, 0);
    target.ends = PrintedEnds{closedEnd, std::min(findBody, ends.right)};
}

void FindNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("Find");
    if (quiet) name.append(" quiet");
    if (reverse) name.append(" reverse");
    if (all) name.append(" all");
    dumpNode(*this, target, isLast, name, {{range.get(), "range"}, {operand.get(), "body"}});
}

}  // namespace tarnfold::zmf
