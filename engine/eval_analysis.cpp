// The two position filters of the legality analysis: whether the position
// could stand at all (legalposition) and whether it could have come from the
// start position (reachableposition). The findings are numbers until a
// comment or str asks for their text.

#include "analysis/position_analysis.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

// The analysis makes and takes back moves on the row's board.
Value ZMFEngine::eval(const LegalpositionNode&) {
    return Value::boolean(analyzePosition(mutableBoard(), analysisReport_, true));
}

Value ZMFEngine::eval(const ValidpositionNode&) {
    return Value::boolean(analyzePosition(mutableBoard(), analysisReport_, false));
}

// "<Illegal position: A; B [why]>": findings that decide are separated by
// ';', those that only explain follow in brackets.
std::string ZMFEngine::analysisText(bool basicOnly) {
    if (analyzePosition(mutableBoard(), analysisReport_, basicOnly))
        return basicOnly ? "<Legal position>" : "<Reachable position>";
    std::string text = basicOnly ? "<Illegal position:" : "<Unreachable position:";
    bool first = true;
    for (const AnalysisFinding& finding : analysisReport_.findings) {
        if (!first && !finding.explainsOnly) text += ';';
        first = false;
        text += ' ';
        if (finding.explainsOnly) text += '[';
        text += renderAnalysisFinding(finding, true);
        if (finding.explainsOnly) text += ']';
    }
    text += '>';
    return text;
}

}  // namespace tarnfold::zmf
