#pragma once
// The text form of a message: a head line with the place and the text, then
// the source line and a marker line with the caret and underlines. The caller
// writes the line end after the marker line.

#include <string>

#include "query/message.h"
#include "query/query_source.h"

namespace tarnfold::zmf {

std::string renderMessage(const QuerySource& source, const Message& message);

}  // namespace tarnfold::zmf
