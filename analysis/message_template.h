#pragma once

// The small template language of the analysis messages:
//   %%             a '%'
//   %wordN         the text of argument N (one digit) as the word reads it:
//                  color, squarecolor, count, square, fileset, bitboard,
//                  piece, piecetype, lateral, and s for a plural ending
//   %choose{a|b}N  the alternative that argument N picks, itself a template
// A word without its digit gives nothing and an unknown word gives "???".

#include <span>
#include <string>
#include <string_view>

#include "analysis/analysis_argument.h"

namespace tarnfold {

// Without values the arguments are not read: a placeholder shows its type
// ("'Color'", "(s)"), and a choice quotes all its alternatives.
std::string renderAnalysisTemplate(std::string_view text, std::span<const AnalysisArgument> arguments,
                                   bool withValues);

}  // namespace tarnfold
