// Text for the game and for the user: comments, messages, tag edits and
// comment removals that wait for the game to match, the comments the game
// came with, and a run-time check.

#include <charconv>

#include "chess/variant.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

// A string literal is its text, a bare variant its name, a bare legality
// filter its verdict with the reasons; anything else is evaluated. A position shows as its move number and side to move in a
// comment, and as its id in a string made by str.
std::string ZMFEngine::renderArgument(const ZMFNode& node, bool asComment) {
    const ZMFNode& inner = unwrapParens(node);
    if (inner.kind == NodeKind::String) return as<StringNode>(inner).value->toUtf8();
    if (inner.kind == NodeKind::Variant) return std::string(variantName(board().variant));
    if (inner.kind == NodeKind::Legalposition) return analysisText(true);
    if (inner.kind == NodeKind::Validposition) return analysisText(false);
    const Value value = evaluate(inner);
    if (value.is(ValueType::Position))
        return renderValue(value, asComment ? &boards[value.asPosition().id] : nullptr);
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

// "Game N: move M(wtm): " and the arguments. A position in a variation
// is named by its id too, and marked with it in the game, since its move
// number alone does not find it.
Value ZMFEngine::eval(const MessageNode& node) {
    std::string text;
    if (!node.quiet) {
        text.append("Game ").append(std::to_string(gameNumber)).append(": move ");
        text.append(std::to_string(board().fullmoveNumber)).append(board().sideToMove == White ? "(wtm)" : "(btm)");
        if (positions[current].depth != 0) {
            const std::string id = std::to_string(current);
            text.append("[").append(id).append("]");
            addComment(10, makeZmfString(std::string("id:").append(id)), currentRef());
        }
        text.append(": ");
    }
    for (const NodePtr& argument : node.arguments) text += renderArgument(*argument);
    errors.push_back({1, std::move(text), std::nullopt, current, gameNumber});
    deliver(errors.back(), asyncMessages);
    return Value::boolean(true);
}

namespace {

// "$N" stands for the annotation glyph number N.
std::optional<uint8_t> nagNumber(std::string_view text) {
    if (text.size() < 2 || text[0] != '$') return std::nullopt;
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number > 255) return std::nullopt;
    return uint8_t(number);
}

}  // namespace

// The comments the game came with at this position: all of them as one
// string, or whether one holds the literal, or whether the node has the
// glyph the literal names.
Value ZMFEngine::eval(const OriginalcommentNode& node) {
    const PGN::AnnotatedGameTreeNode& here = *positions[current].node;
    if (node.literal) {
        const std::string literal = as<StringNode>(unwrapParens(*node.literal)).value->toUtf8();
        if (const std::optional<uint8_t> nag = nagNumber(literal))
            return Value::boolean(std::find(here.nags.begin(), here.nags.end(), *nag) != here.nags.end());
        for (const auto* list : {&here.commentsAfter, &here.commentsBefore})
            for (const PGN::GameComment& comment : *list)
                if (comment.text.find(literal) != std::string::npos) return Value::boolean(true);
        return Value::boolean(false);
    }
    std::string joined;
    bool any = false;
    for (const auto* list : {&here.commentsAfter, &here.commentsBefore})
        for (const PGN::GameComment& comment : *list) {
            if (any) joined += '\n';
            joined += comment.text;
            any = true;
        }
    if (!any) return Value();
    return Value::string(makeZmfString(joined));
}

// The value of the first tag of the name, as the game has it.
Value ZMFEngine::eval(const TagNode& node) {
    const Value name = evaluate(*node.operand);
    if (!name.is(ValueType::String) || !game_) return Value();
    const std::string wanted = name.asString()->toUtf8();
    for (const PGN::GameTag& tag : game_->tags)
        if (tag.name == wanted) return Value::string(makeZmfString(tag.value));
    return Value();
}

// Tag edits and comment removals are not taken back by a false result:
// they all take effect, in order, if the game matches.
Value ZMFEngine::eval(const SettagNode& node) {
    const Value name = evaluate(*node.left);
    if (!name.is(ValueType::String)) return Value();
    const Value value = evaluate(*node.right);
    if (!value.is(ValueType::String)) return Value();
    tagChanges.push_back({name.asString()->toUtf8(), value.asString()->toUtf8()});
    return Value::boolean(true);
}

Value ZMFEngine::eval(const RemovetagNode& node) {
    const Value name = evaluate(*node.operand);
    if (!name.is(ValueType::String)) return Value();
    tagChanges.push_back({name.asString()->toUtf8(), std::nullopt});
    return Value::boolean(true);
}

Value ZMFEngine::eval(const RemovecommentNode&) {
    commentRemovals.push_back(currentRef());
    return Value::boolean(true);
}

}  // namespace tarnfold::zmf
