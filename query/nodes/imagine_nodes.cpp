#include "query/nodes/imagine_nodes.h"

#include <algorithm>

#include "chess/names.h"
#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

std::string_view sideWord(ImaginedSide side) {
    switch (side) {
        case ImaginedSide::White: return "white";
        case ImaginedSide::Black: return "black";
        case ImaginedSide::Reverse: return "reverse";
    }
    return "";
}

// A specifier's sets are read from power 0, so a set at the end of a
// specifier must not swallow the `:` or a minus that starts the next set.
void printSpecifier(PrintTarget& target, const ZMFNode& specifier, BindingPower following) {
    switch (specifier.kind) {
        case NodeKind::ImaginePiece: {
            const auto& piece = static_cast<const ImaginePieceNode&>(specifier);
            target << "piece " << piece.text << " --> ";
            printOperand(target, *piece.operand, 0, following);
            break;
        }
        case NodeKind::ImagineSwap: {
            const auto& swap = static_cast<const ImagineSwapNode&>(specifier);
            PrintTarget second = target.sibling();
            printOperand(second, *swap.right, 0, following);
            bool secondIsNegative = !second.text().empty() && second.text().front() == '-';
            target << "swap ";
            printOperand(target, *swap.left, 0, secondIsNegative ? bindingPower(TokenKind::Minus) : 0);
            target << " " << second.text();
            break;
        }
        case NodeKind::ImagineSidetomove:
            target << "sidetomove " << sideWord(static_cast<const ImagineSidetomoveNode&>(specifier).side);
            break;
        default: specifier.print(target); break;
    }
    target.ends = PrintedEnds{closedEnd, specifier.kind == NodeKind::ImagineSidetomove ? closedEnd : 0};
}

}  // namespace

ImagineNode::ImagineNode(OptionalOffset location, std::vector<NodePtr> specifiers, NodePtr body)
    : ZMFNode(kind, body->valueType, location),
      specifiers(std::move(specifiers)),
      body(std::move(body)) {
    spanToOperand(*this, *this->body);
}

void ImagineNode::print(PrintTarget& target) const {
    target << "imagine";
    for (std::size_t i = 0; i < specifiers.size(); ++i) {
        target << " ";
        // The `:` follows the last specifier.
        printSpecifier(target, *specifiers[i],
                       i + 1 == specifiers.size() ? bindingPower(TokenKind::Colon) : 0);
    }
    target << " : ";
    PrintedEnds ends = printOperand(target, *body, 0, 0);
    target.ends = PrintedEnds{closedEnd, std::min<BindingPower>(0, ends.right)};
}

void ImagineNode::dump(DumpTarget& target, bool isLast) const {
    target.writeLine(*this, isLast, "Imagine");
    target.openLevel(isLast);
    for (const NodePtr& specifier : specifiers) specifier->dump(target, false);
    body->dumpLabelled(target, true, "body");
    target.closeLevel();
}

ImaginePieceNode::ImaginePieceNode(OptionalOffset location, Piece piece, std::string text, NodePtr operand)
    : ZMFNode(kind, ValueType::Empty, location),
      piece(piece),
      text(std::move(text)),
      operand(std::move(operand)) {
    spanToOperand(*this, *this->operand);
}

void ImaginePieceNode::print(PrintTarget& target) const { printSpecifier(target, *this, 0); }

void ImaginePieceNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("ImaginePiece (");
    name.append(text).append(") piece: ").push_back(pieceChar(piece));
    dumpNode(*this, target, isLast, name, {operand.get()});
}

ImagineSwapNode::ImagineSwapNode(OptionalOffset location, NodePtr left, NodePtr right)
    : ZMFNode(kind, ValueType::Empty, location),
      left(std::move(left)),
      right(std::move(right)) {
    spanToOperand(*this, *this->right);
}

void ImagineSwapNode::print(PrintTarget& target) const { printSpecifier(target, *this, 0); }

void ImagineSwapNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "ImagineSwap", {left.get(), right.get()});
}

ImagineSidetomoveNode::ImagineSidetomoveNode(OptionalOffset location, ImaginedSide side)
    : ZMFNode(kind, ValueType::Empty, location), side(side) {}

void ImagineSidetomoveNode::print(PrintTarget& target) const { printSpecifier(target, *this, 0); }

void ImagineSidetomoveNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("ImagineSidetomove (");
    name.append(sideWord(side)).append(")");
    dumpNode(*this, target, isLast, name);
}

}  // namespace tarnfold::zmf
