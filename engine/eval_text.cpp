// comment and assert: text for the game, and a run-time check.

#include "chess/variant.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

// A string literal is its text, a bare variant its name; anything else is
// evaluated, and a position shows as its move number and side to move.
std::string ZMFEngine::renderArgument(const ZMFNode& node) {
    const ZMFNode& inner = unwrapParens(node);
    if (inner.kind == NodeKind::String) return as<StringNode>(inner).value->toUtf8();
    if (inner.kind == NodeKind::Variant) return std::string(variantName(board().variant));
    const Value value = evaluate(inner);
    if (value.is(ValueType::Position)) return renderValue(value, &boards[value.asPosition().id]);
    return renderValue(value, &board());
}

Value ZMFEngine::eval(const CommentNode& node) {
    std::string text;
    for (const NodePtr& argument : node.arguments) text += renderArgument(*argument);
    addComment(9, makeZmfString(text), currentRef());
    return Value::boolean(true);
}

// A false assertion stops the game's evaluation and, through the driver,
// the run.
Value ZMFEngine::eval(const AssertNode& node) {
    const Value operand = evaluate(*node.operand);
    if (operand.is(ValueType::Piece) || operand.isTrue()) return Value::boolean(true);
    fail(0,
         "assert condition failed at game number " + std::to_string(gameNumber) + " positionid " +
             std::to_string(current),
         node);
    return Value();
}

}  // namespace tarnfold::zmf
