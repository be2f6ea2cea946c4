#include "analysis/analysis_report.h"

#include "chess/notation.h"

namespace tarnfold {

void renderAnalysisReport(Board& board, const AnalysisReport& report, std::string& output, unsigned indent) {
    const std::string margin(indent * 4, ' ');
    if (!report.findings.empty()) {
        for (const AnalysisFinding& finding : report.findings)
            output += margin + renderAnalysisFinding(finding, true) + '\n';
        return;
    }
    for (const AnalysisReport::AfterMove& step : report.afterMoves) {
        output += margin + "After move " + moveToText(board, step.move) + '\n';
        board.makeMove(step.move);
        renderAnalysisReport(board, step.report, output, indent + 1);
        board.unmakeMove();
    }
}

}  // namespace tarnfold
