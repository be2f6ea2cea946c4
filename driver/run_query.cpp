#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>

#include "driver/entry.h"
#include "driver/header_defaults.h"
#include "driver/print_diagnostics.h"
#include "driver/source/path_search.h"
#include "query/dump_target.h"
#include "query/parser.h"
#include "query/print_target.h"

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
    if (options.dumpNfaDiagrams) return true;

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
    applyHeaderDefaults(query.header, options);

    if (options.inputFile.empty()) {
        std::cout << "No input PGN file provided\n" << std::flush;
        return false;
    }
    std::string resolved = resolveFile(options.inputFile, queryPathList);
    std::FILE* input = std::fopen(resolved.c_str(), "rb");
    if (!input) {
        std::cout << "Failed to open file '" << options.inputFile << "': " << std::strerror(errno) << "\n"
                  << std::flush;
        return false;
    }
    std::fclose(input);
    // Games are read and the query evaluated over them once the PGN reader
    // and the engine exist; until then say so rather than pretend.
    std::cout << "zmfi: this build cannot run queries over games yet\n" << std::flush;
    return false;
}

}  // namespace tarnfold::zmf
