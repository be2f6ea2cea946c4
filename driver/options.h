#pragma once
// Every setting of a run in one record: defaults here, filled from the
// command line, completed from the query's header, read-only once games run.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "chess/variant.h"
#include "query/query_source.h"

namespace tarnfold::zmf {

struct ZMFDriverOptions {
    std::uint32_t gameNumberFirst = 0;  // 0: all games
    std::uint32_t gameNumberLast = 0;
    QuerySource querySource;
    std::string inputFile;
    std::string queryFile;
    std::string outputFile;
    std::string matchString = "ZMF";
    bool appendOutput = false;
    bool hasMatchCount = false;
    bool hasResultFilter = false;
    std::uint32_t matchCountMin = 0;
    std::uint32_t matchCountMax = 0;
    std::uint32_t lineIncrement = 10000;
    // 0 runs the single-threaded loop: the pool is only used on request.
    std::uint32_t threads = 0;
    bool showHelp = false;
    bool showVersion = false;
    bool showLicense = false;
    bool noHeader = false;
    bool showMatches = false;
    bool silent = false;
    bool quiet = false;
    bool processVariations = false;
    bool sortByMatchCount = false;
    bool parseOnly = false;
    bool smartComments = true;
    bool commitLog = true;
    bool removeCommentAllowed = true;
    bool removeTagAllowed = true;
    bool setTagAllowed = true;
    std::uint32_t resultFilter = 0;
    bool variationsGiven = false;
    bool gameNumberGiven = false;
    bool matchStringGiven = false;
    bool uniqueComments = true;
    std::uint32_t warnLevel = 2;
    std::uint32_t limit = 0;  // 0: no limit
    bool omitElidedAuxNodes = false;
    bool omitElidedBraces = false;
    bool omitElidedParens = false;
    bool coalesceComments = false;
    bool keepAllBest = false;
    std::uint32_t pgnLineWidth = 79;
    bool compactMoves = true;
    bool compactVariations = true;
    bool compactComments = true;
    bool nestedComments = false;
    bool emitComments = true;
    bool emitNags = true;
    bool emitVariations = true;
    bool moveNumberAfterComment = true;
    bool moveNumberAfterNag = true;
    bool splitMoves = true;
    bool moveNumbers = true;
    bool secure = false;
    bool showDictionaries = false;
    bool ansiColors = true;
    bool consoleUnicode = true;
    std::uint32_t pipeTimeoutFirst = 1000;
    std::uint32_t pipeTimeoutLater = 1000;
    bool asyncMessages = true;
    bool asyncErrors = true;
    bool skipUnknownVariants = false;
    std::map<std::string, Variant> variantAliases;
    bool dumpNfaDiagrams = false;
    bool expandTransforms = false;
    bool expandFunctions = false;
    bool expandFuncArgs = false;
};

// Which option brought a piece of query text in, so that a diagnostic
// inside that piece can point the user back to the command line.
struct InjectedText {
    std::size_t argumentIndex = 0;  // among the arguments after the program name
    std::string option;             // as typed
    std::vector<std::string> arguments;
};

// Keyed by the index of the query-source segment holding the injected text.
extern std::map<std::size_t, InjectedText> injectedTextMap;

}  // namespace tarnfold::zmf
