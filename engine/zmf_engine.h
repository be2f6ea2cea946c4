#pragma once

// Evaluates a parsed query over one game at a time: every position of the
// game is laid out in one table first (a board per row), then the root is
// evaluated once per row in table order. One engine per thread, reused from
// game to game.

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "analysis/analysis_report.h"
#include "chess/board.h"
#include "engine/regex_state.h"
#include "engine/tag_cache.h"
#include "engine/value.h"
#include "engine/variable_store.h"
#include "external/command_pipe.h"
#include "external/file_filters.h"
#include "pgn/game.h"
#include "query/parsed_query.h"

namespace tarnfold::zmf {

struct PositionRow {
    PGN::AnnotatedGameTreeNode* node = nullptr;
    uint32_t id = 0;
    // Variation steps away from the main line; 0 on it.
    uint16_t depth = 0;
    bool virtualMainline = false;
};

// A comment that a filter wants in the game if the whole query holds.
struct CommentEntry {
    uint32_t kind = 0;
    ZmfString text;
    PositionRef position;
    uint32_t sequence = 0;
};

// A deferred update of a sort or best-value slot, with its comments.
struct CommitEntry {
    uint32_t target = 0;  // 0 a best-value slot, 1 a sort slot
    std::optional<Value> value;
    uint32_t slot = 0;
    bool maximum = false;
    std::vector<CommentEntry> comments;
};

// A message or failure raised while a game is evaluated. Kind 0 is a
// failure that ends the run; the message filter's are kind 1.
struct EngineMessage {
    uint32_t kind = 0;
    std::string text;
    OptionalOffset location;
    uint32_t positionId = 0;
    uint32_t gameNumber = 0;
    bool delivered = false;  // already shown through the sink
};

// A tag edit that takes effect if the game matches: a value sets the tag,
// none removes it.
struct TagChange {
    std::string name;
    std::optional<std::string> value;
};

// A line being matched may allow only one continuation at a position: the
// move filter then takes that child alone.
struct LineBranch {
    uint32_t position = 0;
    int32_t child = -1;
    bool restricted = false;
};

struct MoveTests;
struct MoveTally;
struct LinePath;
struct LineActive;
struct LineRun;
struct LineScratch;
struct LineState;

// The best value a sort (or a best-value use) has seen in this game, with
// the comments that came with it.
struct SlotState {
    std::optional<Value> value;
    std::vector<CommentEntry> comments;
};

struct PositionMatch {
    PGN::AnnotatedGameTreeNode* node = nullptr;
    Value value;
};

class ZMFEngine {
public:
    using Game = PGN::Game<PGN::AnnotatedGameTreeNode>;

    // Out of line, where the line filter's scratch type is complete.
    ZMFEngine();
    ~ZMFEngine();
    ZMFEngine(ZMFEngine&&) noexcept;
    ZMFEngine& operator=(ZMFEngine&&) noexcept;

    // Behaviour flags, set once before the first game.
    bool variations = false;
    bool quiet = false;
    bool recordAll = false;
    bool smartComments = true;
    bool commitLog = true;
    bool keepAllBest = false;
    bool asyncMessages = true;
    bool asyncErrors = true;

    // A cap on the evaluations of one game, for callers that must not hang
    // on any query (the fuzz targets); 0 means none. Once it is spent every
    // filter gives None and the game's run ends, as after a failure.
    uint64_t evaluationLimit = 0;
    // Work that one evaluation does not measure, such as building a long
    // string, counts against the cap as well: a unit per 16 characters.
    void chargeWork(std::size_t characters) {
        if (evaluationLimit != 0) evaluations_ += characters / 16;
    }

    // Outside contact: how long a command-pipe program may take to answer,
    // and the tables of programs and written files the query may use. The
    // driver takes both away in secure mode; a filter that needs a missing
    // table fails as if the system had refused it.
    PipeTimeouts pipeTimeouts;
    CommandPipeTable* pipes = &commandPipeTable();
    OpenFileTable* files = &openFileTable();

    uint64_t positionsTotal = 0;
    uint32_t commentSequence = 0;
    uint32_t current = 0;
    uint32_t gameNumber = 0;
    uint32_t lastPosition = 0;
    uint16_t maxPieceId = 0;

    bool hasVariations = false;
    bool abort = false;

    // The game's tags, read for the tag filters on first use in a game.
    TagCache tagCache;
    // The last pattern match, which the capture filters read.
    RegexState regex;

    std::vector<PositionRow> positions;
    std::vector<Board> boards;

    std::vector<EngineMessage> errors;
    std::vector<CommentEntry> commentLog;
    std::vector<CommitEntry> commitEntries;
    std::vector<LineBranch> lineBranch;
    std::vector<TagChange> tagChanges;
    // Settled at the end of the game: the sort slots in the query's order
    // (the driver's sort keys), and the best-value slots.
    std::vector<SlotState> sortSlots;
    std::vector<SlotState> bestValueSlots;
    std::vector<PositionRef> commentRemovals;
    // Where a message goes at once when the run shows them as they come;
    // without one they wait in `errors` for the end of the game.
    std::function<void(const EngineMessage&)> messageSink;

    // Evaluates the query at every position of the game (which must stand at
    // its root, as after rewind) and appends each match.
    void runGame(Game& game, ParsedQuery& query, std::vector<PositionMatch>& matches);
    Value evaluate(const ZMFNode& node);

    uint32_t positionCount() const { return uint32_t(positions.size()); }
    void addComment(uint32_t kind, ZmfString text, const PositionRef& position);
    void fail(uint32_t kind, std::string text, const ZMFNode& node);
    // The board of the current row.
    const Board& board() const { return boards[current]; }
    PositionRef currentRef() const;
    PositionRef rowRef(uint32_t id) const;

    // The query's variable values; persistent ones live on from game to game.
    std::vector<Value> slotValues;
    VariableStore variables;

private:
    void prepare(ParsedQuery& query);
    void layOut(Game& game);
    void layOutFrom(Game& game, PGN::AnnotatedGameTreeNode* root);
    void addRow(Game& game, PGN::AnnotatedGameTreeNode* node, uint16_t depth, bool virtualMainline);
    void runPositions(const ZMFNode& root, std::vector<PositionMatch>& matches);
    Value dispatch(const ZMFNode& node);

    // One evaluation for each kind the list marks evaluated, each in
    // engine/eval_<family>.cpp; a row marked evaluated without its function
    // fails to link.
#define ZMF_EVAL_evaluated(Class) Value eval(const Class& node);
#define ZMF_EVAL_pending(Class)
#define ZMF_EVAL_part(Class)
#define ZMF_EVAL_unbuilt(Class)
#define ZMF_NODE(Kind, Class, family, state, name) ZMF_EVAL_##state(Class)
#include "query/node_kinds.def"
#undef ZMF_NODE
#undef ZMF_EVAL_evaluated
#undef ZMF_EVAL_pending
#undef ZMF_EVAL_part
#undef ZMF_EVAL_unbuilt

    // Braces and the query root: every filter must hold.
    Value evaluateCompound(const std::vector<NodePtr>& children, const ZMFNode& node);
    // The text of an argument of comment, message or str; a position shows
    // as its move and side in a comment, and as its id otherwise.
    std::string renderArgument(const ZMFNode& node, bool asComment = true);
    // Hands a message to the sink when the run shows them as they come.
    void deliver(EngineMessage& message, bool asynchronous);
    // The verdict of legalposition (basicOnly) or reachableposition with its
    // findings, as comment and str write it.
    std::string analysisText(bool basicOnly);
    // Reused from position to position, so that a position without findings
    // costs no allocation.
    AnalysisReport analysisReport_;

    const Game* game_ = nullptr;

    // Assignment into a slice of a string variable.
    Value assignSlice(const SliceNode& slice, const ZMFNode& value);
    Value assignDictionaryEntry(const DictionaryAccessNode& target, const ZMFNode& value);
    // The two loops of StringIteratorNode: over the matches of a pattern,
    // and over the characters of a string.
    Value iterateMatches(const StringIteratorNode& node);
    Value iterateCharacters(const StringIteratorNode& node);

    // Mate and stalemate tests try moves on the row's board and take them back.
    Board& mutableBoard() { return boards[current]; }

    ParsedQuery* query_ = nullptr;
    uint64_t evaluations_ = 0;
    // The nodes of the layout walk still open, with the next child to visit.
    struct LayoutFrame {
        PGN::AnnotatedGameTreeNode* node;
        size_t nextChild;
        uint16_t depth;
        bool virtualMainline;
    };
    std::vector<LayoutFrame> layoutStack_;
    uint16_t gamePieceIdCounter_ = 0;

    // The move filter's sources and its trial of a move.
    Bitboard moveParameter(const NodePtr& parameter, Bitboard otherwise);
    MoveTally gameMoves(const MoveNode& node, const MoveTests& tests);
    MoveTally previousMove(const MoveNode& node, const MoveTests& tests);
    MoveTally generatedMoves(const MoveNode& node, const MoveTests& tests);
    bool speculate(const MoveNode& node, Move move);
    // One generated list per nesting of the move filter in its own
    // speculative body; a deque keeps the outer lists in place as it grows.
    std::deque<MoveList> moveLists_;
    size_t moveListDepth_ = 0;

    // The line filter's walk over the tree, its step at one position, one
    // constituent tried on a path, and the states and ends that follow.
    void walkLine(LineRun& run, LineScratch& scratch);
    void stepLine(LineRun& run, const LineActive& active, LineActive& next, int32_t child, bool matchesSide);
    void tryLineEdge(LineRun& run, LineActive& next, const LineState& state, const LinePath& path, int32_t child,
                     bool restricted);
    void addLineState(LineRun& run, LineActive& next, uint32_t stateIndex, int32_t child, const LinePath& path);
    void acceptLineEnd(LineRun& run, LinePath& path);
    // For each line filter, the positions its matches have covered in this
    // game, which nestban keeps it from starting at again.
    std::map<const ZMFNode*, std::set<uint32_t>> lineMemo_;
    std::vector<std::unique_ptr<LineScratch>> lineScratch_;
    size_t lineDepth_ = 0;

    // The lowest common ancestor of two rows, without a walk when the game
    // is one line; and two operands that must both be positions.
    uint32_t quickLca(uint32_t a, uint32_t b) const;
    bool positionPair(const ZMFNode& left, const ZMFNode& right, uint32_t& a, uint32_t& b);

    // The choosing filters: the marks of log sizes that max, min and a
    // numeric echo keep the best operand's entries by, and the end-of-game
    // settlement of the commit log.
    struct BestKeeping {
        size_t comments, commits;          // at entry
        size_t keptComments, keptCommits;  // the end of what is kept so far
    };
    void keepBest(BestKeeping& keeping, int order);
    Value bestOf(const std::vector<NodePtr>& arguments, ValueType type, bool maximum);
    void markEcho(const EchoNode& node, uint32_t source, uint32_t target);
    void settleCommits();

    // What hhdb reads of the whole game, found on its first use in a game:
    // whether any comment of the tree marks a cook, and the first comment.
    struct HHDBGameFacts {
        std::optional<bool> cooked;
        bool firstCommentRead = false;
        std::optional<std::string> firstComment;
    };
    HHDBGameFacts hhdbFacts_;
    bool hhdbCooked();
    const std::optional<std::string>& hhdbFirstComment();

    // Whether a value lies in a range node's ends.
    bool rangeHolds(const ZMFNode& rangeNode, int64_t value);

    // The target lists of ray and xray being walked, innermost on top; kept
    // from position to position so that it stops growing.
    std::vector<Bitboard> rayTargets_;
    bool stackRayTargets(const std::vector<NodePtr>& arguments);
};

// Text of a value for comments, messages and the end-of-run print; the board
// gives positions and pieces their readable form.
std::string renderValue(const Value& value, const Board* board);

}  // namespace tarnfold::zmf
