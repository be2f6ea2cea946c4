#pragma once
// The few implicit conversions of the language, and the type rules of the
// comparison operators that follow them.

#include <optional>
#include <string>
#include <string_view>

#include "query/node.h"
#include "query/value_type.h"

namespace tarnfold::zmf {

// Brings a number compared with a set or a position to a common type: the
// set becomes its size, the position its id. Any other pair is left as it is.
void convertToCommon(NodePtr& a, NodePtr& b);

// Where a set is needed, a piece becomes the square it stands on. Nodes of
// any other type are left as they are.
void convertPieceToSet(NodePtr& node);

// The message for operands of these types to comparison `op` (after
// convertToCommon), or nothing when they may be compared.
std::optional<std::string> comparisonTypeError(std::string_view op, ValueType left, ValueType right);

}  // namespace tarnfold::zmf
