#include "driver/header_defaults.h"

namespace tarnfold::zmf {

void applyHeaderDefaults(const QueryHeaderSettings& header, ZMFDriverOptions& options) {
    // The first input named is the one read; a header cannot name several files to run over.
    if (!header.input.empty() && options.inputFile.empty()) options.inputFile = header.input.front();
    if (header.output && options.outputFile.empty()) {
        options.outputFile = *header.output;
        options.appendOutput = false;
    }
    if (header.matchCount && !options.hasMatchCount) {
        options.hasMatchCount = true;
        options.matchCountMin = header.matchCount->first;
        options.matchCountMax = header.matchCount->last;
    }
    if (header.gameNumber && !options.gameNumberGiven) {
        options.gameNumberFirst = header.gameNumber->first;
        options.gameNumberLast = header.gameNumber->last;
    }
    // A --quiet or --silent on the command line shuts out both header items.
    if (!options.quiet) {
        if (header.silent) options.silent = options.quiet = true;
        if (header.quiet) options.quiet = true;
    }
    if (header.variations && !options.variationsGiven) options.processVariations = true;
    if (header.matchString && !options.matchStringGiven) options.matchString = *header.matchString;
    if (header.sortMatchCount) {
        options.sortByMatchCount = true;
        if (!options.hasMatchCount) {
            options.hasMatchCount = true;
            options.matchCountMin = header.sortMatchCount->first;
            options.matchCountMax = header.sortMatchCount->last;
        }
    }
    if (header.result && !options.hasResultFilter) {
        options.hasResultFilter = true;
        options.resultFilter = *header.result;
    }
}

}  // namespace tarnfold::zmf
