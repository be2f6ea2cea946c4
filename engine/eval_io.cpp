// Outside contact: programs behind pipes, files read and written, and the
// annotations of a study database. A program or a file that fails ends the
// run, as a failed assertion does.

#include <string_view>

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"
#include "external/hhdb.h"
#include "query/nodes/hhdb_nodes.h"
#include "query/nodes/io_nodes.h"

namespace tarnfold::zmf {

namespace {

std::optional<std::string> text(const ZmfString& tag) {
    if (!tag) return std::nullopt;
    return tag->toUtf8();
}

Value optionalString(const std::optional<std::string>& value) {
    return value ? Value::string(makeZmfString(*value)) : Value();
}

bool commentHolds(const PGN::AnnotatedGameTreeNode& node, std::string_view marker) {
    for (const auto* list : {&node.commentsBefore, &node.commentsAfter})
        for (const PGN::GameComment& comment : *list)
            if (comment.text.find(marker) != std::string::npos) return true;
    return false;
}

// Every position from this one up to the first move is marked as the main
// line of the study.
bool onMarkedMainLine(const PGN::AnnotatedGameTreeNode* node) {
    for (; node->parentNode; node = node->parentAnnotated())
        if (!commentHolds(*node, "<main>")) return false;
    return true;
}

// The first comment of the game as it is written: at each move the main
// continuation's own comments come first, then the variations, each in
// full, then the rest of the main line. An explicit stack, so that a game
// of any length fits.
std::optional<std::string> firstWrittenComment(const PGN::AnnotatedGameTreeNode& root) {
    if (!root.commentsAfter.empty()) return root.commentsAfter.front().text;
    auto firstOf = [](const PGN::AnnotatedGameTreeNode& node) -> const std::string* {
        for (const auto* list : {&node.commentsBefore, &node.commentsAfter})
            if (!list->empty()) return &list->front().text;
        return nullptr;
    };
    // Each entry is a node whose move is written; `own` says that its
    // comments are still to come.
    struct Entry {
        const PGN::AnnotatedGameTreeNode* node;
        bool own;
    };
    std::vector<Entry> pending{{&root, false}};
    while (!pending.empty()) {
        const Entry entry = pending.back();
        pending.pop_back();
        if (entry.own) {
            if (const std::string* comment = firstOf(*entry.node)) return *comment;
            pending.push_back({entry.node, false});
            continue;
        }
        const size_t children = entry.node->children.size();
        if (children == 0) continue;
        const PGN::AnnotatedGameTreeNode* main = entry.node->childAnnotated(0);
        if (const std::string* comment = firstOf(*main)) return *comment;
        pending.push_back({main, false});
        for (size_t index = children - 1; index >= 1; --index)
            pending.push_back({entry.node->childAnnotated(index), true});
    }
    return std::nullopt;
}

}  // namespace

// The program is every argument but the last, which is the request.
Value ZMFEngine::eval(const CommandpipeNode& node) {
    std::vector<std::string> arguments;
    for (const NodePtr& argument : node.arguments) {
        const Value value = evaluate(*argument);
        if (!value.is(ValueType::String)) return Value();
        arguments.push_back(value.asString()->toUtf8());
    }
    const std::string request = std::move(arguments.back());
    arguments.pop_back();
    std::string response;
    if (!pipes)
        response = programStartRefused(arguments);
    else if (pipes->send(arguments, request, pipeTimeouts, response))
        return Value::string(makeZmfString(response));
    fail(0, std::move(response), node);
    return Value();
}

Value ZMFEngine::eval(const ReadfileNode& node) {
    const Value name = evaluate(*node.operand);
    if (!name.is(ValueType::String)) {
        fail(0, "filename expresssion failed to match while evaluating 'readfile' filter", node);
        return Value();
    }
    const std::string path = name.asString()->toUtf8();
    std::string content, error;
    if (!files)
        error = fileAccessRefused(path, false);
    else if (readWholeFile(path, content, error))
        return Value::string(makeZmfString(content));
    fail(0, std::move(error), node);
    return Value();
}

// A text without a value writes nothing, and the filter fails.
Value ZMFEngine::eval(const WritefileNode& node) {
    const Value name = evaluate(*node.left);
    const Value content = evaluate(*node.right);
    if (!name.is(ValueType::String)) {
        fail(0, "filename expresssion failed to match while evaluating 'writefile' filter", node);
        return Value();
    }
    if (!content.is(ValueType::String)) return Value::boolean(false);
    const std::string path = name.asString()->toUtf8();
    std::string error;
    if (!files)
        error = fileAccessRefused(path, true);
    else if (files->write(path, content.asString()->toUtf8(), node.noclobber != 0, error))
        return Value::boolean(true);
    fail(0, std::move(error), node);
    return Value();
}

bool ZMFEngine::hhdbCooked() {
    if (!hhdbFacts_.cooked) {
        bool cooked = false;
        // Every node of the game counts, walked or not: a cook usually
        // stands in a variation.
        std::vector<const PGN::AnnotatedGameTreeNode*> pending{game_->root.get()};
        while (!pending.empty() && !cooked) {
            const PGN::AnnotatedGameTreeNode* node = pending.back();
            pending.pop_back();
            cooked = commentHolds(*node, "<cook");
            for (size_t index = 0; index < node->children.size(); ++index)
                pending.push_back(node->childAnnotated(index));
        }
        hhdbFacts_.cooked = cooked;
    }
    return *hhdbFacts_.cooked;
}

const std::optional<std::string>& ZMFEngine::hhdbFirstComment() {
    if (!hhdbFacts_.firstCommentRead) {
        hhdbFacts_.firstComment = firstWrittenComment(*game_->root);
        hhdbFacts_.firstCommentRead = true;
    }
    return hhdbFacts_.firstComment;
}

Value ZMFEngine::eval(const HHDBNode& node) {
    const PGN::AnnotatedGameTreeNode& here = *positions[current].node;
    const TagValues& tags = tagCache.values();
    const uint32_t code = node.code;
    if (code <= 4) return Value::boolean(commentHolds(here, hhdbMarker(code)));
    if (code >= 23 && code <= 38) {
        const std::optional<std::string> black = text(tags.black);
        return Value::boolean(black && black->find(hhdbStatusCode(code)) != std::string::npos);
    }
    auto field = [&](std::string_view name) -> std::optional<std::string> {
        const std::optional<std::string>& comment = hhdbFirstComment();
        return comment ? hhdbCommentField(*comment, name) : std::nullopt;
    };
    switch (code) {
        case 5: return Value::boolean(onMarkedMainLine(&here));
        case 6: return Value::boolean(!onMarkedMainLine(&here));
        case 7: return Value::boolean(hhdbCooked());
        case 8: {
            const std::optional<std::string> black = text(tags.black);
            // The tree is searched for a cook only when the tag asks.
            return Value::boolean(hhdbSound(black, black && hhdbHasUnsoundMark(*black, "12") && hhdbCooked()));
        }
        case 9: return Value::boolean(hhdbUnsound(text(tags.black), hhdbCooked()));
        case 10: {
            const std::optional<std::string> black = text(tags.black);
            return Value::boolean(black && hhdbHasUnsoundMark(*black, "12"));
        }
        case hhdbAwardCode: {
            if (!tags.event) return Value();
            HHDBAwardForm form;
            form.special = node.special != 0;
            form.nonspecial = node.nonspecial != 0;
            form.sortable = node.sortable != 0;
            form.max = node.max != 0;
            form.kind = uint32_t(node.awardKind);
            const std::optional<int64_t> award = hhdbAward(tags.event->toUtf8(), form);
            return award ? Value::numeric(*award) : Value();
        }
        case 12: return optionalString(hhdbFirstComment());
        case 13: return optionalString(field("diagram"));
        case 14: {
            const std::optional<std::string> number = field("egdiagram");
            const std::optional<int64_t> value = number ? hhdbNumber(*number) : std::nullopt;
            return value ? Value::numeric(*value) : Value();
        }
        case 15:
        case 16:
        case 17:
        case 18:
        case 19: {
            const std::optional<std::string> gbr = field("gbr");
            return optionalString(gbr ? hhdbGbrSection(*gbr, code) : std::nullopt);
        }
        case 20: return optionalString(hhdbComposer(text(tags.white), text(tags.black), hhdbFirstComment()));
        case 21: return optionalString(field("search"));
        case 22: return optionalString(field("stipulation"));
    }
    // A code above the table (the parser makes none) gives nothing.
    return Value();
}

}  // namespace tarnfold::zmf
