#pragma once
// A game result written after `result`, both in a filter and in the query
// header: a string literal, or unquoted as the tokens 1-0, 0-1, 1/2-1/2, *.

#include <optional>

#include "query/nodes/tag_nodes.h"
#include "query/parser.h"

namespace tarnfold::zmf {

struct ResultText {
    bool present = false;              // something that starts a result stands there
    std::optional<GameResult> result;  // absent when it is none of the four
    SourceSpan span;                   // what was read
};

// Reads a result when the next token can start one; `takeLiteral` false
// leaves a string literal alone. Reads nothing when `present` is false.
ResultText readResultText(Parser& parser, bool takeLiteral);

}  // namespace tarnfold::zmf
