#include "query/convert.h"

#include "query/nodes/conversion_nodes.h"

namespace tarnfold::zmf {

namespace {

template <class Conversion>
void wrap(NodePtr& node) {
    OptionalOffset location = node->location;
    node = std::make_unique<Conversion>(location, std::move(node));
}

bool comparable(ValueType type) {
    return type == ValueType::Set || type == ValueType::Numeric || type == ValueType::Position ||
           type == ValueType::String;
}

}  // namespace

void convertToCommon(NodePtr& a, NodePtr& b) {
    auto convertOther = [](const NodePtr& number, NodePtr& other) {
        if (number->valueType != ValueType::Numeric) return;
        if (other->valueType == ValueType::Set)
            wrap<SetToNumericConversionNode>(other);
        else if (other->valueType == ValueType::Position)
            wrap<PositionToNumericConversionNode>(other);
    };
    convertOther(a, b);
    convertOther(b, a);
}

void convertPieceToSet(NodePtr& node) {
    if (node->valueType == ValueType::Piece) wrap<PieceIDToSetConversionNode>(node);
}

std::optional<std::string> comparisonTypeError(std::string_view op, ValueType left, ValueType right) {
    // Built by append: GCC 12 at -O3 warns falsely about "'" + std::string(...).
    std::string quoted(1, '\'');
    quoted.append(op).push_back('\'');
    if (!comparable(left))
        return "Left operand to " + quoted + " must be a set, numeric, string, or position filter";
    if (!comparable(right))
        return "Right operand to " + quoted + " must be a set, numeric, string, or position filter";
    bool leftPosition = left == ValueType::Position, rightPosition = right == ValueType::Position;
    if (rightPosition && !leftPosition)
        return "Right operand to " + quoted + " is a position but left operand is not";
    if (leftPosition && !rightPosition)
        return "Left operand to " + quoted + " is a position but right operand is not";
    bool leftString = left == ValueType::String, rightString = right == ValueType::String;
    if (rightString && !leftString)
        return "Right operand to " + quoted + " is a string but left operand is not";
    if (leftString && !rightString)
        return "Left operand to " + quoted + " is a string but right operand is not";
    if (left == ValueType::Set && right == ValueType::Set && op != "==" && op != "!=")
        return "Sets cannot be compared using the " + quoted + " filter";
    return std::nullopt;
}

}  // namespace tarnfold::zmf
