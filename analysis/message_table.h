#pragma once

// The texts of the analysis findings, by message id.

#include <cstdint>
#include <string_view>

namespace tarnfold {

// Ids run from 0 to analysisMessageCount - 1.
inline constexpr uint32_t analysisMessageCount = 38;

// The template of the id, placeholders unrendered, or "Uknown message" for
// an id not in the table.
std::string_view analysisMessageTemplate(uint32_t id);

}  // namespace tarnfold
