#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "driver/entry.h"
#include "driver/game_loop.h"
#include "driver/header_defaults.h"
#include "driver/input_stream.h"
#include "driver/output_spool.h"
#include "driver/path_search.h"
#include "driver/print_diagnostics.h"
#include "driver/run_totals.h"
#include "query/dump_target.h"
#include "query/parser.h"
#include "query/print_target.h"
#include "query/unevaluated_filters.h"

namespace tarnfold::zmf {

namespace {

// The elisions tell the parser what to leave out of the tree: function
// definitions and the header (kept out by the final pass), one-filter
// braces, and parentheses.
void setElisions(Parser& parser, bool auxNodes, bool braces, bool parens) {
    parser.finalPass = auxNodes;
    parser.keepCompounds = !braces;
    parser.keepParens = !parens;
}

// Workers can only run a query whose persistent variables can be merged at
// the end.
bool persistentVariablesMergeable(const ParsedQuery& query) {
    for (const VariableSlot& slot : query.variableSlots)
        if (slot.persistent && slot.mergeStrategy == MergeStrategy::None) return false;
    return true;
}

void printParsedQuery(const ParsedQuery& query, const Parser& parser, const ZMFDriverOptions& options) {
    PrintTarget print;
    print.expandTransforms = options.expandTransforms;
    print.expandFunctions = options.expandFunctions;
    print.expandFuncArgs = options.expandFuncArgs;
    query.root->print(print);
    std::cout << print.text();

    DumpTarget dump(&parser.source(), options.consoleUnicode, options.ansiColors);
    dump.expandTransforms = options.expandTransforms;
    dump.expandFunctions = options.expandFunctions;
    dump.expandFuncArgs = options.expandFuncArgs;
    query.root->dump(dump, true);
    std::cout << dump.text() << "\n" << std::flush;
}

}  // namespace

bool runQuery(ZMFDriverOptions& options) {
    auto parser = std::make_unique<Parser>();
    parser->dumpNfaDiagrams = options.dumpNfaDiagrams;
    parser->secureMode = options.secure;
    setElisions(*parser, false, false, false);

    // The first parse is for its diagnostics.
    parser->parseQuery(options.querySource);
    printDiagnostics(parser->messages().messages(), parser->source(), options.warnLevel, std::cout);
    std::cout << std::flush;
    if (parser->errorReported()) return false;
    if (options.dumpNfaDiagrams) {
        // The DOT text alone on standard error, ready for dot -Tpng.
        std::cout << parser->nfaTexts << std::flush;
        std::cerr << parser->nfaDiagrams << std::flush;
        return true;
    }

    if (options.parseOnly) {
        setElisions(*parser, options.omitElidedAuxNodes, options.omitElidedBraces, options.omitElidedParens);
        ParsedQuery shown = parser->parseQuery(options.querySource);
        if (!shown.root) return false;
        printParsedQuery(shown, *parser, options);
        return true;
    }

    // The second parse builds the tree that runs; its diagnostics were
    // all shown by the first.
    setElisions(*parser, true, true, true);
    ParsedQuery query = parser->parseQuery(options.querySource);
    if (!query.root) return false;
    printDiagnostics(unevaluatedFilterWarnings(*query.root, parser->source()), parser->source(),
                     options.warnLevel, std::cout);
    applyHeaderDefaults(query.header, options);

    if (options.inputFile.empty()) {
        std::cout << "No input PGN file provided\n" << std::flush;
        return false;
    }
    const std::string resolved =
        options.inputFile == "stdin" ? options.inputFile : resolveFile(options.inputFile, queryPathList);
    std::string error;
    std::unique_ptr<InputSource> source = openInput(resolved, error);
    if (!source) {
        std::cout << "Failed to open file '" << options.inputFile << "': " << error << "\n" << std::flush;
        return false;
    }
    std::istream& input = source->stream();

    RunTotals& totals = runTotals();
    totals.start = std::chrono::steady_clock::now();
    nameOutput(options);
    outputSpool().reset(!query.sortSlots.empty() || options.sortByMatchCount, outputToReplace(options));
    // Tests shrink the sorted runs to make the merge of many runs happen.
    if (const char* bytes = std::getenv("ZMFI_SPOOL_RUN_BYTES"))
        outputSpool().runBytes = std::strtoull(bytes, nullptr, 10);
    unsigned threadsUsed = 0;
    if (options.threads == 0) {
        threadsUsed = runSingleThreaded(options, query, input);
    } else if (options.threads == 1 || persistentVariablesMergeable(query)) {
        threadsUsed = runWorkers(options, input, options.threads);
    } else {
        std::cout << "Running is single-threaded mode due to presence of non-mergeable persistent variable\n";
        threadsUsed = runSingleThreaded(options, query, input);
    }
    std::cout << "\n" << std::flush;
    // A damaged archive ends the games early: nothing is written.
    if (const std::string damage = source->error(); !damage.empty()) {
        std::cout << "Failed to read file '" << options.inputFile << "': " << damage << "\n" << std::flush;
        return false;
    }
    source.reset();
    if (totals.fatal) return false;
    return writeOutput(options, threadsUsed);
}

}  // namespace tarnfold::zmf
