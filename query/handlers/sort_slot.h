#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "query/parser.h"

namespace tarnfold::zmf {

// The slot of a sort filter: one for each description; a sort without one
// has a slot of its own, found again by its place in the text when that is
// read again. Sorts that share a slot must agree on order and type, or the
// values gathered in it could not be compared: otherwise an error (with a
// note at the first of them) and nothing.
std::optional<std::uint32_t> claimSortSlot(Parser& parser, const Token& token,
                                           const std::optional<std::string>& label, SortDirection direction,
                                           ValueType valueType);

}  // namespace tarnfold::zmf
