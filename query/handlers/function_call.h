#pragma once

#include "query/parser.h"

namespace tarnfold::zmf {

// A call of a defined function, its name already read: the arguments, then
// the body parsed anew with the parameters bound.
NodePtr parseFunctionCall(Parser& parser, const Token& name, const Symbol& function);

}  // namespace tarnfold::zmf
