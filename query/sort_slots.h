#pragma once
// One slot per distinct `sort` description of a query: every sort filter
// with the same description feeds the same sort key of a game.

#include <cstdint>
#include <optional>
#include <string>

#include "query/query_source.h"
#include "query/value_type.h"

namespace tarnfold::zmf {

enum class SortDirection : std::uint8_t { Minimum, Maximum };

struct SortSlot {
    std::uint32_t id = 0;
    // The description, or for a sort without one its place in the text, so
    // that reading the same text again finds the same slot.
    std::string key;
    std::optional<std::string> label;
    SortDirection direction = SortDirection::Maximum;
    ValueType valueType = ValueType::Numeric;
    OptionalOffset location;  // of the first sort filter of this slot
    bool quiet = false;       // the first sort filter of this slot writes no comment
};

}  // namespace tarnfold::zmf
