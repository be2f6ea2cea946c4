#include "query/nodes/geometry_nodes.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "chess/names.h"
#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// "keyword (a b ...)", each argument read with `power` as its minimum. An
// argument whose text starts with a minus is parenthesised unless it comes
// first: the minus would otherwise subtract it from the argument before.
void printArguments(PrintTarget& target, std::string_view head,
                    std::initializer_list<const ZMFNode*> arguments, BindingPower power) {
    target << head << " (";
    bool first = true;
    for (const ZMFNode* argument : arguments) {
        PrintTarget inner = target.sibling();
        printOperand(inner, *argument, power, 0);
        if (!first) target << " ";
        if (!first && !inner.text().empty() && inner.text().front() == '-')
            target << "(" << inner.text() << ")";
        else
            target << inner.text();
        first = false;
    }
    target << ")";
    target.ends = PrintedEnds{};
}

void printArgumentList(PrintTarget& target, std::string_view head, const std::vector<NodePtr>& arguments) {
    target << head << " (";
    printSequence(target, arguments, " ", "");
    target << ")";
    target.ends = PrintedEnds{};
}

}  // namespace

std::string rayDirectionsText(const std::array<bool, rayDirectionCount>& directions) {
    auto all = [&](std::initializer_list<Direction> rays) {
        for (Direction ray : rays)
            if (!directions[ray]) return false;
        return true;
    };
    if (all({Right, Up, NorthEast, NorthWest, Left, Down, SouthWest, SouthEast})) return "";
    std::string text;
    auto add = [&](Direction direction) {
        if (!text.empty()) text += " ";
        text += directionName(direction);
    };
    // A line is named as a whole when both its rays are set, and two lines
    // as their common group.
    auto addPair = [&](Direction group, Direction a, Direction b) {
        if (all({a, b})) {
            add(group);
            return;
        }
        if (directions[a]) add(a);
        if (directions[b]) add(b);
    };
    if (all({Up, Down, Right, Left}))
        add(Orthogonal);
    else {
        addPair(Vertical, Up, Down);
        addPair(Horizontal, Right, Left);
    }
    if (all({NorthEast, SouthWest, NorthWest, SouthEast}))
        add(Diagonal);
    else {
        addPair(MainDiagonal, NorthEast, SouthWest);
        addPair(OffDiagonal, NorthWest, SouthEast);
    }
    return text;
}

BetweenNode::BetweenNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Set, location), left(std::move(left)), right(std::move(right)) {}

void BetweenNode::print(PrintTarget& target) const {
    printArguments(target, "between", {left.get(), right.get()}, squareOperand);
}

void BetweenNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Between", {left.get(), right.get()});
}

ColortypeNode::ColortypeNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void ColortypeNode::print(PrintTarget& target) const {
    printPrefix(target, "colortype", *operand, squareOperand);
}

void ColortypeNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "ColorType", {operand.get()});
}

TypeNode::TypeNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void TypeNode::print(PrintTarget& target) const { printPrefix(target, "type", *operand, squareOperand); }

void TypeNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Type", {operand.get()});
}

DarkNode::DarkNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Set, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void DarkNode::print(PrintTarget& target) const { printPrefix(target, "dark", *operand, colourOperand); }

void DarkNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Dark", {operand.get()});
}

LightNode::LightNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Set, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void LightNode::print(PrintTarget& target) const { printPrefix(target, "light", *operand, colourOperand); }

void LightNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Light", {operand.get()});
}

FileNode::FileNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void FileNode::print(PrintTarget& target) const { printPrefix(target, "file", *operand, squareOperand); }

void FileNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "File", {operand.get()});
}

RankNode::RankNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void RankNode::print(PrintTarget& target) const { printPrefix(target, "rank", *operand, squareOperand); }

void RankNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Rank", {operand.get()});
}

DirectionNode::DirectionNode(OptionalOffset location, Direction direction, NodePtr range, NodePtr operand)
    : ZMFNode(kind, ValueType::Set, location),
      direction(direction),
      range(std::move(range)),
      operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

// The implicit default range has no text and is left out.
void DirectionNode::print(PrintTarget& target) const {
    std::string spelling(directionName(direction));
    if (!range->implicit) {
        PrintTarget inner = target.sibling();
        range->print(inner);
        spelling.append(" ").append(inner.text());
    }
    printPrefix(target, spelling, *operand, 0);
}

void DirectionNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("Direction (");
    name.append(directionName(direction)).append(")");
    dumpNode(*this, target, isLast, name, {range.get(), operand.get()});
}

MakesquareNode::MakesquareNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Set, location),
      left(std::move(left)),
      right(std::move(right)) {}

MakesquareNode::MakesquareNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Set, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void MakesquareNode::print(PrintTarget& target) const {
    if (operand)
        printPrefix(target, "makesquare", *operand, absOperand);
    else
        printArguments(target, "makesquare", {left.get(), right.get()}, 0);
}

void MakesquareNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "MakeSquare",
             {{left.get(), "file"}, {right.get(), "rank"}, operand.get()});
}

PinNode::PinNode(OptionalOffset location, NodePtr from, NodePtr through, NodePtr to)
    : ZMFNode(kind, ValueType::Set, location),
      from(std::move(from)),
      through(std::move(through)),
      to(std::move(to)) {}

// The parameters in a fixed order, the implicit ones left out.
void PinNode::print(PrintTarget& target) const {
    target << "pin";
    PrintedEnds ends;
    for (auto [word, parameter] :
         {std::pair{"from", from.get()}, {"through", through.get()}, {"to", to.get()}}) {
        if (parameter->implicit) continue;
        target << " " << word << " ";
        PrintedEnds operandEnds = printOperand(target, *parameter, pinParameter, 0);
        ends = PrintedEnds{closedEnd, std::min(pinParameter, operandEnds.right)};
    }
    target.ends = ends;
}

void PinNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Pin",
             {{from.get(), "from"}, {through.get(), "through"}, {to.get(), "to"}});
}

RayNode::RayNode(OptionalOffset location, std::array<bool, rayDirectionCount> directions,
                 std::vector<NodePtr> arguments)
    : ZMFNode(kind, ValueType::Set, location),
      arguments(std::move(arguments)),
      directions(directions) {}

void RayNode::print(PrintTarget& target) const {
    std::string head("ray");
    std::string named = rayDirectionsText(directions);
    if (!named.empty()) head.append(" ").append(named);
    printArgumentList(target, head, arguments);
}

void RayNode::dump(DumpTarget& target, bool isLast) const {
    std::string named = rayDirectionsText(directions);
    std::string name("Ray (");
    name.append(named.empty() ? directionName(AnyDirection) : named).append(")");
    target.writeLine(*this, isLast, name);
    target.dumpChildren(isLast, arguments);
}

XRayNode::XRayNode(OptionalOffset location, std::vector<NodePtr> arguments)
    : ZMFNode(kind, ValueType::Set, location), arguments(std::move(arguments)) {}

void XRayNode::print(PrintTarget& target) const { printArgumentList(target, "xray", arguments); }

void XRayNode::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, "XRay");
    target.dumpChildren(isLast, arguments);
}

namespace {

constexpr std::string_view pawnQueryNames[] = {"connectedpawns", "doubledpawns", "isolatedpawns",
                                               "passedpawns"};

}  // namespace

PawnQueryNode::PawnQueryNode(OptionalOffset location, Mode mode)
    : ZMFNode(kind, ValueType::Set, location), mode(mode) {}

void PawnQueryNode::print(PrintTarget& target) const { target << pawnQueryNames[mode]; }

void PawnQueryNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("PawnQuery (");
    name.append(pawnQueryNames[mode]).append(")");
    dumpNode(*this, target, isLast, name);
}

PieceidNode::PieceidNode(OptionalOffset location, NodePtr operand)
    : ZMFNode(kind, ValueType::Numeric, location), operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void PieceidNode::print(PrintTarget& target) const {
    printPrefix(target, "pieceid", *operand, squareOperand);
}

void PieceidNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "PieceId", {operand.get()});
}

PromotedpiecesNode::PromotedpiecesNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Set, location) {}

void PromotedpiecesNode::print(PrintTarget& target) const { target << "promotedpieces"; }

void PromotedpiecesNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "PromotedPieces");
}

DistanceNode::DistanceNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Numeric, location),
      left(std::move(left)),
      right(std::move(right)) {}

void DistanceNode::print(PrintTarget& target) const {
    printArguments(target, "distance", {left.get(), right.get()}, 0);
}

void DistanceNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Distance", {left.get(), right.get()});
}

}  // namespace tarnfold::zmf
