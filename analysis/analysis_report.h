#pragma once

// The explanation of an analysis as a tree: either the findings that make
// the position illegal where it stands, or, when the verdict depends on the
// move that led here, one subreport per such move.

#include <string>
#include <vector>

#include "analysis/analysis_finding.h"
#include "chess/board.h"
#include "chess/move.h"

namespace tarnfold {

struct AnalysisReport {
    struct AfterMove;

    std::vector<AnalysisFinding> findings;
    // Read only when there are no findings.
    std::vector<AfterMove> afterMoves;
};

struct AnalysisReport::AfterMove {
    Move move;
    AnalysisReport report;
};

// Appends the report's lines to output, each behind indent levels of four
// blanks: a finding per line, or "After move " and the move's SAN with the
// subreport one level deeper. The moves are made on board for the time of
// their subreports, so board must be the position the report is about; it
// comes back as it was.
void renderAnalysisReport(Board& board, const AnalysisReport& report, std::string& output, unsigned indent = 0);

}  // namespace tarnfold
