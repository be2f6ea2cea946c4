#include "driver/process_game.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <mutex>

#include "engine/collate.h"
#include "query/render_message.h"

namespace tarnfold::zmf {

RunTotals& runTotals() {
    static RunTotals totals;
    return totals;
}

PGN::PGNWriteOptions writeOptionsFrom(const ZMFDriverOptions& options) {
    PGN::PGNWriteOptions write;
    write.comments = options.emitComments;
    write.nags = options.emitNags;
    write.variations = options.emitVariations;
    write.compactMoves = options.compactMoves;
    write.compactVariations = options.compactVariations;
    write.compactComments = options.compactComments;
    write.moveNumbers = options.moveNumbers;
    write.moveNumberAfterNag = options.moveNumberAfterNag;
    write.moveNumberAfterComment = options.moveNumberAfterComment;
    write.lineWidth = options.pgnLineWidth;
    write.coalesceComments = options.coalesceComments;
    write.uniqueComments = options.uniqueComments;
    write.splitMoves = options.splitMoves;
    return write;
}

void listErrors(const std::vector<PGN::PGNError>& errors, uint32_t number) {
    std::lock_guard lock(runTotals().consoleLock);
    std::cout << "There were errors while parsing game #" << number << ":\n";
    for (const PGN::PGNError& error : errors)
        std::cout << "  line " << error.position.line + 1 << ": col " << error.position.column << ": "
                  << error.message << "\n";
    std::cout << std::flush;
}

void showProgress(uint32_t number, const ZMFDriverOptions& options) {
    const uint32_t increment = options.lineIncrement;
    if (increment == 0) return;
    const bool line = number % increment == 0;
    const bool dot = !line && increment >= 10 && number % (increment / 10) == 0;
    // Most games print nothing, and workers should not meet on the lock for them.
    if (!line && !dot) return;
    std::lock_guard lock(runTotals().consoleLock);
    if (line) {
        std::fprintf(stderr, "[%u]\n", number);
        std::fflush(stderr);
    } else {
        std::fputc('.', stderr);
    }
}

namespace {

std::string messageText(const EngineMessage& message, const ZMFDriverOptions& options) {
    if (!message.location) return message.text;
    return renderMessage(options.querySource,
                         makeMessage(MessageLevel::Error, message.text, message.location));
}

// A run-time error ends the process at once: nothing is written.
[[noreturn]] void endOnFatal(const EngineMessage& message, const ZMFEngine& engine,
                             const ZMFDriverOptions& options) {
    const Board& board = engine.boards[message.positionId];
    std::cout << messageText(message, options) << "\n"
              << board.boardDiagram() << "Game " << message.gameNumber << ": move " << board.fullmoveNumber
              << (board.sideToMove == White ? "(wtm)" : "(btm)") << " " << board.toFen() << "\n\n"
              << std::flush;
    std::_Exit(1);
}

// False when the worker should stop because the run has already failed.
bool deliverMessages(const ZMFEngine& engine, const ZMFDriverOptions& options, bool pool) {
    if (engine.errors.empty()) return true;
    RunTotals& totals = runTotals();
    std::lock_guard lock(totals.consoleLock);
    if (pool && totals.fatal) return false;
    for (const EngineMessage& message : engine.errors) {
        if (message.delivered) continue;
        if (message.kind == 0) endOnFatal(message, engine, options);
        std::cout << messageText(message, options) << "\n";
    }
    std::cout << std::flush;
    return true;
}

// Each listed node loses the comments it was read with; the query's own
// come later.
void removeComments(const ZMFEngine& engine) {
    for (const PositionRef& position : engine.commentRemovals) {
        position.node->commentsAfter.clear();
        position.node->commentsBefore.clear();
    }
}

// Each edit acts on the first tag of its name.
void applyTagChanges(const ZMFEngine& engine, const ZMFDriverOptions& options, RunGame& game) {
    for (const TagChange& change : engine.tagChanges) {
        auto found = std::find_if(game.tags.begin(), game.tags.end(),
                                  [&](const PGN::GameTag& tag) { return tag.name == change.name; });
        if (!change.value) {
            if (options.removeTagAllowed && found != game.tags.end()) game.tags.erase(found);
        } else if (options.setTagAllowed) {
            if (found != game.tags.end())
                found->value = *change.value;
            else
                game.tags.push_back({change.name, *change.value});
        }
    }
}

bool matchCountFits(const ZMFDriverOptions& options, size_t count) {
    if (options.hasMatchCount) return count >= options.matchCountMin && count <= options.matchCountMax;
    return count >= 1;
}

// In the pool the games that fill the limit are those that finish first.
bool takeLimitSlot(const ZMFDriverOptions& options) {
    if (options.limit == 0) return true;
    RunTotals& totals = runTotals();
    std::lock_guard lock(totals.limitLock);
    if (totals.limitCount >= options.limit) return false;
    if (++totals.limitCount == options.limit) totals.limitReached = true;
    return true;
}

SortKey numberKey(int64_t value, bool ascending) {
    SortKey key;
    key.value = value;
    key.hasValue = true;
    key.ascending = ascending;
    return key;
}

void addRootComment(RunGame& game, std::string text) {
    game.root->commentsAfter.push_back({PGN::BraceComment, std::move(text)});
}

// A key for each sort of the query, in its order, with the best value the
// game gave it; and, unless silent or the sort is quiet, that value on the
// game's first node.
void addSortKeys(const ParsedQuery& query, const ZMFEngine& engine, const ZMFDriverOptions& options,
                 RunGame& game, OutputGame& output) {
    for (size_t index = 0; index < query.sortSlots.size(); ++index) {
        const SortSlot& slot = query.sortSlots[index];
        const std::optional<Value>& value = engine.sortSlots[index].value;
        SortKey key;
        key.ascending = slot.direction == SortDirection::Minimum;
        std::string shown = "none";
        if (value && value->is(ValueType::Numeric)) {
            key.value = value->asNumeric();
            key.hasValue = true;
            shown = std::to_string(value->asNumeric());
        } else if (value && value->is(ValueType::String)) {
            shown = value->asString()->toUtf8();
            key.value = shown;
            key.hasValue = true;
        }
        output.sortKeys.push_back(std::move(key));
        if (options.silent || slot.quiet) continue;
        std::string label = slot.label ? *slot.label : "<sort-id-" + std::to_string(index) + ">";
        addRootComment(game, label.append(": ").append(shown));
    }
}

}  // namespace

void setUpEngine(ZMFEngine& engine, const ZMFDriverOptions& options) {
    engine.variations = options.processVariations;
    engine.quiet = options.quiet;
    engine.smartComments = options.smartComments;
    engine.commitLog = options.commitLog;
    engine.keepAllBest = options.keepAllBest;
    engine.asyncMessages = options.asyncMessages;
    engine.asyncErrors = options.asyncErrors;
    engine.pipeTimeouts = {options.pipeTimeoutFirst, options.pipeTimeoutLater};
    // A query that may come from elsewhere reaches nothing outside the
    // process; the parser refused its filters already, this is the second
    // lock on the door.
    if (options.secure) {
        engine.pipes = nullptr;
        engine.files = nullptr;
    }
    // Messages shown as they come, under the console lock like all output
    // of the workers.
    engine.messageSink = [&engine, &options](const EngineMessage& message) {
        std::lock_guard lock(runTotals().consoleLock);
        if (message.kind == 0) endOnFatal(message, engine, options);
        std::cout << messageText(message, options) << "\n" << std::flush;
    };
}

bool processGame(const ZMFDriverOptions& options, ParsedQuery& query, ZMFEngine& engine, RunGame& game,
                 uint32_t number, bool pool, GameCounts& counts, OutputGame& output, bool& written) {
    written = false;
    game.rewind();
    engine.gameNumber = number;
    std::vector<PositionMatch> matches;
    engine.runGame(game, query, matches);
    if (!deliverMessages(engine, options, pool)) return false;
    if (!matchCountFits(options, matches.size())) return true;
    if (pool && !takeLimitSlot(options)) return false;
    if (options.showMatches) {
        std::lock_guard lock(runTotals().consoleLock);
        std::fprintf(stderr, "<%u>", number);
    }

    if (options.removeCommentAllowed) removeComments(engine);
    if (!options.noHeader && !options.silent) addRootComment(game, "Game number " + std::to_string(number));
    if (!options.quiet && !options.matchString.empty())
        for (const PositionMatch& match : matches)
            match.node->commentsAfter.push_back({PGN::BraceComment, options.matchString});
    ++counts.matchingGames;
    counts.matchingPositions += uint32_t(matches.size());

    output.sortKeys.clear();
    output.text.clear();
    addSortKeys(query, engine, options, game, output);
    if (options.sortByMatchCount) {
        output.sortKeys.push_back(numberKey(int64_t(matches.size()), false));
        if (!options.silent) addRootComment(game, "matchcount: " + std::to_string(matches.size()));
    }
    if (!options.silent) {
        for (const CommentEntry& entry : engine.commentLog)
            entry.position.node->commentsAfter.push_back({PGN::BraceComment, entry.text->toUtf8()});
        applyTagChanges(engine, options, game);
    }

    game.rewind();
    if (pool) output.sortKeys.push_back(numberKey(number, true));
    // The engine's rows hold the board of every position it laid out: the
    // writer takes those instead of playing the moves once more.
    const PGN::BoardLookup rows = [&engine](const PGN::AnnotatedGameTreeNode& node) -> Board* {
        const uint32_t id = node.mark;
        if (id > engine.lastPosition || id >= engine.positions.size() || engine.positions[id].node != &node)
            return nullptr;
        return &engine.boards[id];
    };
    PGN::appendGameToPgn(writeOptionsFrom(options), game, output.text, &rows);
    written = true;
    if (pool) return true;
    return options.limit == 0 || ++runTotals().limitCount < options.limit;
}

void collectPersistentVariables(const ParsedQuery& query, const ZMFEngine& engine,
                                std::map<std::string, Value>& variables) {
    for (const VariableSlot& slot : query.variableSlots)
        if (slot.persistent && !slot.quiet && slot.id < engine.slotValues.size())
            variables[slot.name] = engine.slotValues[slot.id];
}

namespace {

// A dictionary value that is no whole decimal integer counts as 0.
int64_t wholeNumber(const std::string& text) {
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && !text.empty() ? number : 0;
}

std::string foldEntry(const std::string& held, const std::string& worker, MergeStrategy strategy) {
    switch (strategy) {
        case MergeStrategy::Min:
        case MergeStrategy::Max: {
            const int order =
                collate(icu::UnicodeString::fromUTF8(worker), icu::UnicodeString::fromUTF8(held));
            const bool better = strategy == MergeStrategy::Min ? order < 0 : order > 0;
            return better ? worker : held;
        }
        case MergeStrategy::IntMin: return std::to_string(std::min(wholeNumber(held), wholeNumber(worker)));
        case MergeStrategy::IntMax: return std::to_string(std::max(wholeNumber(held), wholeNumber(worker)));
        case MergeStrategy::IntSum: return std::to_string(wholeNumber(held) + wholeNumber(worker));
        default: return held;
    }
}

// Folds one worker's value S into the value D held for the run.
void foldValue(Value& held, const Value& worker, MergeStrategy strategy) {
    const bool present = !held.isNone();
    if (worker.is(ValueType::Dictionary)) {
        if (!present) {
            held = worker;
            return;
        }
        auto merged = std::make_shared<ZmfDictionary>(*held.asDictionary());
        for (const auto& [key, value] : *worker.asDictionary()) {
            auto found = merged->find(key);
            if (found == merged->end())
                merged->emplace(key, value);
            else
                found->second = foldEntry(found->second, value, strategy);
        }
        held = Value::dictionary(std::move(merged));
        return;
    }
    if (!present) {
        if (strategy == MergeStrategy::Min || strategy == MergeStrategy::Max ||
            strategy == MergeStrategy::Sum)
            held = worker;
        return;
    }
    if (worker.isNone()) return;
    // Ties keep the value held.
    if (strategy == MergeStrategy::Min || strategy == MergeStrategy::Max) {
        int order = 0;
        if (worker.is(ValueType::Numeric))
            order = worker.asNumeric() < held.asNumeric()   ? -1
                    : worker.asNumeric() > held.asNumeric() ? 1
                                                            : 0;
        else if (worker.is(ValueType::String))
            order = collate(worker.asString()->text(), held.asString()->text());
        if (strategy == MergeStrategy::Min ? order < 0 : order > 0) held = worker;
    } else if (strategy == MergeStrategy::Sum) {
        if (worker.is(ValueType::Numeric))
            held = Value::numeric(int64_t(uint64_t(held.asNumeric()) + uint64_t(worker.asNumeric())));
        else if (worker.is(ValueType::Set))
            held = Value::set(held.asSet() | worker.asSet());
    }
}

}  // namespace

void foldPersistentVariables(const ParsedQuery& query, const ZMFEngine& engine,
                             std::map<std::string, Value>& variables) {
    std::vector<const VariableSlot*> slots;
    for (const VariableSlot& slot : query.variableSlots)
        if (slot.persistent && !slot.quiet && slot.id < engine.slotValues.size()) slots.push_back(&slot);
    std::sort(slots.begin(), slots.end(),
              [](const VariableSlot* a, const VariableSlot* b) { return a->name < b->name; });
    for (const VariableSlot* slot : slots)
        foldValue(variables[slot->name], engine.slotValues[slot->id], slot->mergeStrategy);
}

}  // namespace tarnfold::zmf
