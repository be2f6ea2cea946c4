// Literals, and the declarations that did their work while the query was
// parsed.

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

Value ZMFEngine::eval(const IntegerNode& node) { return Value::numeric(node.value); }

Value ZMFEngine::eval(const StringNode& node) { return Value::string(node.value); }

Value ZMFEngine::eval(const BackslashLiteralNode& node) { return Value::string(node.value); }

Value ZMFEngine::eval(const TrueNode&) { return Value::boolean(true); }

Value ZMFEngine::eval(const FalseNode&) { return Value::boolean(false); }

Value ZMFEngine::eval(const CurrentTransformNode& node) { return Value::string(makeZmfString(node.text)); }

Value ZMFEngine::eval(const DictionaryNode&) { return Value::boolean(true); }

Value ZMFEngine::eval(const FunctionNode&) { return Value::boolean(true); }

Value ZMFEngine::eval(const ZmfHeaderNode&) { return Value::boolean(true); }

}  // namespace tarnfold::zmf
