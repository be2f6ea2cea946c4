#pragma once
// The static type of a filter, fixed while parsing. The engine's run-time
// values run parallel to it: Empty holds no value and Piece a piece identity.

#include <cstdint>
#include <string_view>

namespace tarnfold::zmf {

enum class ValueType : std::uint32_t { Empty, Boolean, Numeric, Set, Position, Piece, String, Dictionary };

// "Empty", "Boolean", ... as in messages and dumps; "???" for anything else.
std::string_view printableType(ValueType type);

}  // namespace tarnfold::zmf
