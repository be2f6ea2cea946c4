#pragma once

// One finding of the legality analysis: a message id and its arguments,
// turned into text only on demand.

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/analysis_argument.h"

namespace tarnfold {

struct AnalysisFinding {
    uint32_t id = 0;
    std::vector<AnalysisArgument> arguments;
    // An information line that says why, beside the findings that decide.
    bool explainsOnly = false;

    bool operator==(const AnalysisFinding&) const = default;
};

// The message of the finding's id with its placeholders filled in. Without
// values the arguments are not read and each placeholder names its type, so
// that the table can be listed; an id not in the table gives "Uknown message".
std::string renderAnalysisFinding(const AnalysisFinding& finding, bool withValues);

}  // namespace tarnfold
