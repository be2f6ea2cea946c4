#pragma once

// Whether a position could stand at all and, in the stronger form, whether it
// could have come from the start position. The reasoning is retrograde and
// deliberately limited: it counts what the pawn structure and the material
// imply (captures made, promotions needed and possible, pieces that can
// never have left or entered a region) and asks whether a check on the board
// could have been given. A finding proves the position impossible; a
// position without findings is merely not refuted.
//
// The reasoning holds for the ordinary rules from the ordinary start. On a
// board of another rule set only the steps that still hold there are taken
// (see analysisScope), so that a position a game really reached is never
// called impossible.

#include <cstdint>

#include "analysis/analysis_argument.h"
#include "analysis/analysis_report.h"
#include "chess/board.h"

namespace tarnfold {

// Which steps apply to a rule set: the rules of play (kings, checks, pawns on
// the edge ranks, the number of checkers), the material counts with the king
// behind a wall, and everything that reasons back to the ordinary start.
struct AnalysisScope {
    bool rulesOfPlay = true;
    bool material = true;
    bool fromStart = true;
};

constexpr AnalysisScope analysisScope(Variant variant) {
    switch (variant) {
        case Standard:
        case ThreeCheck:
        case KingOfTheHill:
        case Losers:
        case Unknown:
            // Ordinary moves from the ordinary start: every position one of
            // these games reaches is a position of ordinary chess.
            return {};
        case Chess960:
            // Ordinary play, but from another start and with other castling.
            return {true, true, false};
        case Crazyhouse:
            // Dropped men break every count and every wall.
            return {true, false, false};
        default:
            // No royal king, explosions, no checks allowed, a horde of pawns:
            // none of the reasoning holds.
            return {false, false, false};
    }
}

// The findings go into report, which is cleared first; true if there are
// none. basicOnly stops after the steps that need no history (the filter
// legalposition); otherwise the position must also be reachable from the
// start (reachableposition). The board is used for moves made and taken
// back, and comes back unchanged. Nothing is allocated unless a finding is
// made, once report has been used.
bool analyzePosition(Board& board, AnalysisReport& report, bool basicOnly);

// The analysis of the position and, while it passes and depth is above 0, of
// every position one legal reverse move earlier, to depth plies: each reverse
// move becomes a child of tree with its own report. True if some line of
// reverse moves reached depth without a finding; with depth 0 it is the plain
// analysis. A position with no reverse move at all gives false.
bool analyzeRetrograde(Board& board, AnalysisReport& tree, unsigned depth);

// The least number of captures that brings the pawns to at most one per
// file, each extra pawn moving to the nearest free file on either side: a
// lower bound of the captures these pawns have made.
unsigned minimalPawnCaptures(Bitboard pawns);

// Whether every pawn of color can be given a start file of its own within its
// reach (a pawn k ranks up from its start rank came from at most k files
// away). On failure offenders holds the pawns looked at up to the one that
// found no file.
bool pawnStructureFeasible(Bitboard pawns, Color color, Bitboard& offenders);

// Captures a pawn starting on file needs to reach its last rank through one
// of promotionFiles, one more where that file is in blockedFiles; 10 when
// there is no promotion file.
unsigned promotionDistance(int file, FileSet promotionFiles, FileSet blockedFiles);

// The least number of captures count promotions of color take on top of what
// the pawns on the board imply. openFiles is set to the files where the other
// side's start-rank pawn is gone and pawnStarts to color's empty pawn start
// squares. False (and cost 0) when either is empty.
bool promotionCaptureCost(const Board& board, Color color, unsigned count, unsigned& cost, FileSet& openFiles,
                          Bitboard& pawnStarts);

// Whether the check on color's king cannot have been given: no legal reverse
// move leads to a position where the side that moved was not itself in a
// check that could have arisen. False when color is not in check. The board
// comes back unchanged.
bool checkIsImpossible(Board& board, Color color);

}  // namespace tarnfold
