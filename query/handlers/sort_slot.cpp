#include "query/handlers/sort_slot.h"

#include <algorithm>

namespace tarnfold::zmf {

std::optional<std::uint32_t> claimSortSlot(Parser& parser, const Token& token,
                                           const std::optional<std::string>& label, SortDirection direction,
                                           ValueType valueType) {
    std::string key;
    if (label) {
        key.append("\"").append(*label);
    } else {
        key.append("@").append(token.begin ? std::to_string(*token.begin) : std::string("?"));
    }
    std::vector<SortSlot>& slots = parser.sortSlots;
    auto found =
        std::find_if(slots.begin(), slots.end(), [&](const SortSlot& slot) { return slot.key == key; });
    if (found == slots.end()) {
        SortSlot slot;
        slot.id = static_cast<std::uint32_t>(slots.size());
        slot.key = key;
        slot.label = label;
        slot.direction = direction;
        slot.valueType = valueType;
        slot.location = token.begin;
        slots.push_back(std::move(slot));
        return slots.back().id;
    }
    const char* conflict = nullptr;
    if (found->direction != direction)
        conflict = "Inconsistent sorting order between 'sort' filters with the same description";
    else if (found->valueType != valueType)
        conflict = "Inconsistent types (string vs numeric) between 'sort' filters with the same description";
    if (!conflict) return found->id;
    OptionalOffset earlier = found->location;
    parser.report(token.begin, MessageLevel::Error, conflict);
    parser.report(earlier, MessageLevel::Note, "Conflicting 'sort' filter is here");
    return std::nullopt;
}

}  // namespace tarnfold::zmf
