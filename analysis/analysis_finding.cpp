#include "analysis/analysis_finding.h"

#include "analysis/message_table.h"
#include "analysis/message_template.h"

namespace tarnfold {

std::string renderAnalysisFinding(const AnalysisFinding& finding, bool withValues) {
    return renderAnalysisTemplate(analysisMessageTemplate(finding.id), finding.arguments, withValues);
}

}  // namespace tarnfold
